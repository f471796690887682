#include "live/request_buffer.h"

#include "live/definition_requests.h"

namespace tarvo {

void RequestBuffer::append(std::string_view bytes)
{
    bytes_.erase(0, begin_);
    begin_ = 0;
    bytes_ += bytes;
}

std::size_t RequestBuffer::find_line_feed()
{
    const std::size_t at = unread().find('\n', searched_);
    searched_ = at == std::string_view::npos ? unread().size() : at;
    return at;
}

std::optional<RequestBuffer::Request> RequestBuffer::next()
{
    const std::size_t line_feed = find_line_feed();
    if (line_feed == std::string_view::npos) {
        if (!ended_ || unread().empty()) return std::nullopt;
        const Request last{unread(), End::closing};
        begin_ = bytes_.size();
        searched_ = 0;
        return last;
    }
    std::string_view text = unread().substr(0, line_feed);
    if (text.ends_with('\r')) text.remove_suffix(1);
    begin_ += line_feed + 1;
    searched_ = 0;
    return Request{text, End::line_feed};
}

bool RequestBuffer::has_request()
{
    return find_line_feed() != std::string_view::npos || (ended_ && !unread().empty());
}

bool RequestBuffer::is_too_long()
{
    const std::size_t line_feed = find_line_feed();
    if (line_feed == std::string_view::npos) {
        const bool line_feed_may_follow = !ended_ && unread().ends_with('\r');
        return unread().size() > kLongestRequest + (line_feed_may_follow ? 1 : 0);
    }
    const bool carriage_return = line_feed > 0 && unread()[line_feed - 1] == '\r';
    return line_feed - (carriage_return ? 1 : 0) > kLongestRequest;
}

} // namespace tarvo

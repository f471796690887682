#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

// The bytes of one sender, cut into requests. A request ends at a line feed, with a carriage return before it dropped,
// or where the sender has ended.
class RequestBuffer {
public:
    enum class End { line_feed, closing };
    struct Request {
        std::string_view text; // holds until the next append
        End end = End::line_feed;
    };

    void append(std::string_view bytes);
    void end() { ended_ = true; } // nothing more will come

    // The next whole request; nullopt: more must come first, or nothing is left.
    std::optional<Request> next();

    bool has_request(); // next() would give one
    bool is_too_long(); // the request at hand is, or already must be, longer than one may be
    bool is_ended() const { return ended_; }

private:
    std::string_view unread() const { return std::string_view(bytes_).substr(begin_); }
    std::size_t find_line_feed();

    std::string bytes_;
    std::size_t begin_ = 0;    // of the request at hand
    std::size_t searched_ = 0; // bytes of it known to hold no line feed
    bool ended_ = false;
};

} // namespace tarvo

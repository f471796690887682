#include "text/line_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace tarvo {

namespace {

constexpr std::size_t kReadSize = std::size_t{1} << 17;
// Room for the longest line with its CR LF, and for one block behind it.
constexpr std::size_t kBufferSize = LineReader::kLongestLine + 2 + kReadSize;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string reason(int error_number)
{
    return std::generic_category().message(error_number);
}

} // namespace

LineReader::LineReader(const std::string& file_name) : file_name_(file_name)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(file_name, ignored)) {
        throw std::runtime_error(file_name + ": a file was expected, this is a folder");
    }
    if (std::filesystem::is_character_file(file_name, ignored)) {
        throw std::runtime_error(file_name + ": a file was expected, this is a device"); // which may have no end
    }
    file_.reset(std::fopen(file_name.c_str(), "rb"));
    if (!file_) throw std::runtime_error(file_name + ": the file cannot be opened: " + reason(errno));
    std::setvbuf(file_.get(), nullptr, _IONBF, 0); // the blocks are large: a second buffer would only copy
    buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
    while (end_ < kByteOrderMark.size() && fill_buffer()) {}
    const std::string_view start(buffer_.get(), end_);
    if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF")) {
        throw std::runtime_error(file_name + ": the text is UTF-16; UTF-8 or plain text was expected");
    }
    if (start.starts_with(kByteOrderMark)) {
        begin_ = kByteOrderMark.size();
        consumed_ = static_cast<std::int64_t>(begin_);
    }
}

LineReader::Outcome LineReader::next_line(std::string_view& line)
{
    line = {};
    std::size_t searched = 0; // bytes from begin_ known to hold no line end
    for (;;) {
        const char* const text = buffer_.get() + begin_;
        const std::size_t held = end_ - begin_;
        if (held > searched) {
            if (const void* const found = std::memchr(text + searched, '\n', held - searched)) {
                const auto length = static_cast<std::size_t>(static_cast<const char*>(found) - text);
                return hand_out(line, length, length + 1);
            }
        }
        searched = held;
        if (held > kLongestLine + 1) return skip_long_line();
        if (!fill_buffer()) return held == 0 ? Outcome::end : hand_out(line, held, held);
    }
}

LineReader::Outcome LineReader::hand_out(std::string_view& line, std::size_t length, std::size_t length_with_end)
{
    const char* const text = buffer_.get() + begin_;
    begin_ += length_with_end;
    consumed_ += static_cast<std::int64_t>(length_with_end);
    ++line_number_;
    if (length > 0 && text[length - 1] == '\r') --length; // also of a last line that was cut within its line end
    if (length > kLongestLine) return Outcome::too_long;
    line = std::string_view(text, length);
    return Outcome::line;
}

LineReader::Outcome LineReader::skip_long_line()
{
    for (;;) {
        const char* const text = buffer_.get() + begin_;
        if (const void* const found = std::memchr(text, '\n', end_ - begin_)) {
            const auto length = static_cast<std::size_t>(static_cast<const char*>(found) - text) + 1;
            begin_ += length;
            consumed_ += static_cast<std::int64_t>(length);
            break;
        }
        consumed_ += static_cast<std::int64_t>(end_ - begin_);
        begin_ = end_;
        if (!fill_buffer()) break;
    }
    ++line_number_;
    return Outcome::too_long;
}

LineReader::Outcome LineReader::next_block(std::string& lines, std::size_t about)
{
    lines.clear();
    while (lines.size() < about) {
        const std::string_view held(buffer_.get() + begin_, end_ - begin_);
        const std::size_t last_end = held.rfind('\n');
        if (last_end != std::string_view::npos) {
            take_lines(lines, held.substr(0, last_end + 1));
        } else if (held.size() > kLongestLine + 1) {
            return lines.empty() ? skip_long_line() : Outcome::line;
        }
        if (lines.size() < about && !fill_buffer()) {
            const std::size_t left = end_ - begin_;
            if (left > 0) take_lines(lines, {buffer_.get() + begin_, left});
            return lines.empty() ? Outcome::end : Outcome::line;
        }
    }
    return Outcome::line;
}

void LineReader::take_lines(std::string& lines, std::string_view taken)
{
    lines += taken;
    begin_ += taken.size();
    consumed_ += static_cast<std::int64_t>(taken.size());
}

// Moves what is unread to the front and reads one block behind it. False at the end of the file.
bool LineReader::fill_buffer()
{
    if (at_end_) return false;
    if (begin_ > 0) {
        std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    const std::size_t read = std::fread(buffer_.get() + end_, 1, kReadSize, file_.get());
    if (read == 0 && std::ferror(file_.get())) {
        throw std::runtime_error(file_name_ + ": reading failed after " + std::to_string(consumed_) +
                                 " bytes of lines: " + reason(errno));
    }
    end_ += read;
    at_end_ = read == 0;
    return read > 0;
}

} // namespace tarvo

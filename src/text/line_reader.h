#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace tarvo {

// Reads a text file line by line through one buffer of fixed size. Lines end with LF or CR LF, the last one also with
// CR or with the end of the file; a UTF-8 byte order mark at the start is skipped.
class LineReader {
public:
    static constexpr std::size_t kLongestLine = std::size_t{1} << 20; // bytes, line end not counted

    enum class Outcome { line, too_long, end };

    // Throws std::runtime_error, naming the file and the reason, when it cannot be opened, is a folder or a device, or
    // holds UTF-16 by its mark.
    explicit LineReader(const std::string& file_name);

    // The next line, without its end; it holds until the next call. A line over kLongestLine is skipped to its end and
    // leaves `line` empty. Throws std::runtime_error when the disk fails.
    Outcome next_line(std::string_view& line);

    // Whole lines with their ends, about so many bytes of them; the file's last one also without an end. The next line
    // where it is too long, by itself, without its text. What next_line would say of each is for the caller to tell,
    // and to count: line_number() stays as it was.
    Outcome next_block(std::string& lines, std::size_t about);

    const std::string& file_name() const { return file_name_; }
    std::int64_t line_number() const { return line_number_; }      // of the line read last, from 1
    std::int64_t characters_consumed() const { return consumed_; } // bytes, line ends included

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    bool fill_buffer();
    Outcome skip_long_line();
    void take_lines(std::string& lines, std::string_view taken);
    Outcome hand_out(std::string_view& line, std::size_t length, std::size_t length_with_end);

    std::string file_name_;
    std::unique_ptr<std::FILE, CloseFile> file_;
    std::unique_ptr<char[]> buffer_;
    std::size_t begin_ = 0; // unread bytes: [begin_, end_) of buffer_
    std::size_t end_ = 0;
    bool at_end_ = false;
    std::int64_t line_number_ = 0;
    std::int64_t consumed_ = 0;
};

} // namespace tarvo

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvo {

// What every file of a recording begins with and has beside it.
struct RecordingTexts {
    std::string header_line;
    std::string definitions;
};

// A data file that grows while its survey goes on, its definitions beside it. Every failure throws std::system_error
// with the file's name and the system's reason.
class RecordingFile {
public:
    // Makes both files in the folder, which is made, too, named by date and time. before: the name of the recording's
    // last file, which is not used again though it may be gone; empty for none.
    RecordingFile(const std::string& folder, const RecordingTexts& texts, const std::string& before);
    RecordingFile(const RecordingFile&) = delete;
    RecordingFile& operator=(const RecordingFile&) = delete;
    ~RecordingFile();

    const std::string& name() const { return name_; } // of the data file

    // Hands whole lines to the system: a crash of this program does not lose them. After a failure none of them is in
    // the file.
    void append(std::string_view lines);
    std::uint64_t length() const { return length_; } // bytes
    void cut_to(std::uint64_t length);

    // These two may be called from another thread while lines are appended.
    bool is_in_place() const; // its name still leads to it
    void flush();             // what was appended before outlasts a power cut

    void remove(); // both files

private:
    [[noreturn]] void refuse() const;
    void write_whole(std::string_view bytes);

    std::string name_;
    int file_ = -1;
    std::uint64_t length_ = 0;
    bool definitions_flushed_ = false;
};

} // namespace tarvo

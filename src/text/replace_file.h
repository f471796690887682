#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvo {

enum class FlushFile {
    now,
    later // by flush_file(); until then a power cut may cost the new content, a crash of this program does not
};

// Writes a file so that whoever opens it, also after a crash, a power cut or a full disk, finds the old content or the
// new one, whole: the bytes go to a temporary name in the same folder, are flushed to the disk and renamed over the old
// file by commit(). Until then the old file is untouched; a replacement that is not committed removes its temporary.
// The new file takes the mode bits of the old one, and a symbolic link stays a link to the file that is replaced.
// Every failure throws std::system_error with the file's name and the system's reason.
class FileReplacement {
public:
    // Refuses at once what could not be replaced: a folder, a device, a write-protected file, a folder that is not
    // there.
    explicit FileReplacement(const std::string& path);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement();

    void write(std::string_view bytes);            // buffered: a full disk may show at a later write or at commit()
    void flush();                                  // to the system: a full disk shows now
    void commit(FlushFile flush = FlushFile::now); // the last call

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::filesystem::path target_;    // links resolved
    std::filesystem::path temporary_; // empty once committed
    std::unique_ptr<std::FILE, CloseFile> file_;
};

// The same in one call.
void replace_file(const std::string& path, std::string_view bytes);

// Makes a file's content and name outlast a power cut, as far as the system can.
void flush_file(const std::string& path);

// Keeps a copy of a file that is about to be replaced though its contents are known to nobody: beside it, as
// NAME.suffix (NAME.suffix2 and so on when there is one already). Returns the copy's name.
std::string keep_copy_aside(const std::string& path, const std::string& suffix);

} // namespace tarvo

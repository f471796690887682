#include "live/recording_file.h"

#include "definitions/definitions_file.h"
#include "text/file_names.h"
#include "text/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

std::string date_and_time()
{
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d_%H-%M-%S", &local);
    return text;
}

struct NewFile {
    std::string name;
    int descriptor = -1;
};

// A new data file without definitions beside it that belong to another.
NewFile create_data_file(const std::string& folder, const std::string& before)
{
    fs::create_directories(folder);
    const std::string base = "live_" + date_and_time();
    for (int copy = 1;; ++copy) {
        const std::string name =
            (fs::path(folder) / (base + (copy == 1 ? "" : "_" + std::to_string(copy)) + ".csv")).string();
        if (name == before || is_there(definitions_file_name_for(name))) continue;
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0) return {name, descriptor};
        if (errno != EEXIST) throw std::system_error(errno, std::generic_category(), "cannot write " + name);
    }
}

} // namespace

RecordingFile::RecordingFile(const std::string& folder, const RecordingTexts& texts, const std::string& before)
{
    const NewFile created = create_data_file(folder, before);
    name_ = created.name;
    file_ = created.descriptor;
    try {
        // Flushed with the first lines: a slow disk does not keep them waiting.
        FileReplacement definitions(definitions_file_name_for(name_));
        definitions.write(texts.definitions);
        definitions.commit(FlushFile::later);
        append(texts.header_line + "\r\n");
    } catch (...) {
        remove();
        close(file_);
        throw;
    }
}

RecordingFile::~RecordingFile()
{
    close(file_);
}

void RecordingFile::refuse() const
{
    throw std::system_error(errno, std::generic_category(), "cannot write " + name_);
}

// A line cut off in a number would be read as another sample.
void RecordingFile::append(std::string_view lines)
{
    try {
        write_whole(lines);
        length_ += lines.size();
    } catch (const std::system_error&) {
        const auto end = static_cast<off_t>(length_); // where this fails, too, the next try cuts first
        if (ftruncate(file_, end) == 0) lseek(file_, end, SEEK_SET);
        throw;
    }
}

void RecordingFile::write_whole(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(file_, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) refuse();
        if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void RecordingFile::cut_to(std::uint64_t length)
{
    const auto end = static_cast<off_t>(length);
    if (ftruncate(file_, end) < 0 || lseek(file_, end, SEEK_SET) < 0) refuse();
    length_ = length;
}

bool RecordingFile::is_in_place() const
{
    struct stat opened = {};
    struct stat named = {};
    if (fstat(file_, &opened) < 0 || stat(name_.c_str(), &named) < 0) return false;
    return opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

void RecordingFile::flush()
{
    if (!definitions_flushed_) flush_file(definitions_file_name_for(name_));
    definitions_flushed_ = true;
    if (fsync(file_) < 0) refuse();
}

void RecordingFile::remove()
{
    std::error_code ignored;
    fs::remove(definitions_file_name_for(name_), ignored);
    fs::remove(name_, ignored);
}

} // namespace tarvo

#include "text/replace_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#if __has_include(<unistd.h>)
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>
#endif

namespace tarvo {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void refuse(const fs::path& path, std::error_code reason)
{
    throw std::system_error(reason, "cannot write " + path.string());
}

std::error_code last_error()
{
    return {errno, std::generic_category()};
}

// Follows the links of the last component, also to a file that is not there yet.
fs::path resolved_links(fs::path path)
{
    constexpr int kMostLinks = 40;
    std::error_code no_link;
    for (int links = 0; fs::is_symlink(path, no_link); ++links) {
        if (links == kMostLinks) refuse(path, std::make_error_code(std::errc::too_many_symbolic_link_levels));
        path = path.parent_path() / fs::read_symlink(path); // an absolute link takes the folder's place
    }
    return path;
}

void refuse_what_cannot_be_replaced(const fs::path& path)
{
    std::error_code reason;
    const fs::file_status status = fs::status(path, reason);
    if (status.type() == fs::file_type::not_found) return;
    if (!fs::exists(status)) refuse(path, reason);
    if (fs::is_directory(status)) refuse(path, std::make_error_code(std::errc::is_a_directory));
    if (!fs::is_regular_file(status)) refuse(path, std::make_error_code(std::errc::operation_not_supported));

    // Renaming needs no right to write the old file, so a write-protected one would be lost without this.
    std::FILE* const writable = std::fopen(path.string().c_str(), "rb+");
    if (writable == nullptr) refuse(path, last_error());
    std::fclose(writable);
}

#if __has_include(<unistd.h>)

std::string process_suffix()
{
    return "." + std::to_string(getpid());
}

bool is_running(long process)
{
    return kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

bool flush_to_disk(std::FILE* file)
{
    return std::fflush(file) == 0 && fsync(fileno(file)) == 0;
}

// Makes the rename outlast a power cut. Some file systems cannot do it; what a crash leaves is whole all the same.
void flush_folder(const fs::path& file)
{
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
}

#else

std::string process_suffix()
{
    return {};
}

bool is_running(long)
{
    return true;
}

bool flush_to_disk(std::FILE* file)
{
    return std::fflush(file) == 0;
}

void flush_folder(const fs::path&) {}

#endif

constexpr std::string_view kTemporaryEnd = ".tmp";

// Two programs that write the same file have a temporary each.
fs::path temporary_name(fs::path target)
{
    target += process_suffix();
    target += kTemporaryEnd;
    return target;
}

// Whether a name is that of a temporary of the target whose process has ended.
bool is_left_behind(std::string_view name, const std::string& target_name)
{
    if (!name.starts_with(target_name + '.') || !name.ends_with(kTemporaryEnd)) return false;
    name.remove_prefix(target_name.size() + 1);
    name.remove_suffix(std::min(name.size(), kTemporaryEnd.size()));
    const bool is_number = !name.empty() && name.find_first_not_of("0123456789") == std::string_view::npos;
    return is_number && name.size() < 10 && !is_running(std::stol(std::string(name)));
}

// What writes left that were killed before their end.
void remove_left_behind(const fs::path& target)
{
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::error_code ignored;
    std::vector<fs::path> found;
    for (fs::directory_iterator entry(folder, ignored); entry != fs::directory_iterator(); entry.increment(ignored)) {
        if (is_left_behind(entry->path().filename().string(), target.filename().string())) {
            found.push_back(entry->path());
        }
    }
    for (const fs::path& temporary : found) fs::remove(temporary, ignored);
}

} // namespace

FileReplacement::FileReplacement(const std::string& path) : target_(resolved_links(path))
{
    refuse_what_cannot_be_replaced(target_);
    remove_left_behind(target_);
    temporary_ = temporary_name(target_);
    std::error_code ignored;
    fs::remove(temporary_, ignored);
    file_.reset(std::fopen(temporary_.string().c_str(), "wbx"));
    if (file_ == nullptr) refuse(target_, last_error());
    constexpr std::size_t kWrittenAtOnce = std::size_t{1} << 18;
    std::setvbuf(file_.get(), nullptr, _IOFBF, kWrittenAtOnce);
}

FileReplacement::~FileReplacement()
{
    if (temporary_.empty()) return;
    file_.reset();
    std::error_code ignored;
    fs::remove(temporary_, ignored);
}

void FileReplacement::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) refuse(target_, last_error());
}

void FileReplacement::flush()
{
    if (std::fflush(file_.get()) != 0) refuse(target_, last_error());
}

void FileReplacement::commit(FlushFile flush)
{
    const bool is_written = flush == FlushFile::now ? flush_to_disk(file_.get()) : std::fflush(file_.get()) == 0;
    if (!is_written) refuse(target_, last_error());
    if (std::fclose(file_.release()) != 0) refuse(target_, last_error());

    std::error_code ignored; // the old file may not exist, a file system may have no mode bits
    const fs::file_status old_status = fs::status(target_, ignored);
    if (fs::exists(old_status)) fs::permissions(temporary_, old_status.permissions(), ignored);

    std::error_code reason;
    fs::rename(temporary_, target_, reason);
    if (reason) refuse(target_, reason);
    temporary_.clear();
    if (flush == FlushFile::now) flush_folder(target_);
}

void flush_file(const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file) flush_to_disk(file.get());
    flush_folder(path);
}

void replace_file(const std::string& path, std::string_view bytes)
{
    FileReplacement replacement(path);
    replacement.write(bytes);
    replacement.commit();
}

std::string keep_copy_aside(const std::string& path, const std::string& suffix)
{
    const std::string first_name = path + '.' + suffix;
    std::string name = first_name;
    for (int number = 2; fs::exists(name); ++number) name = first_name + std::to_string(number);
    std::ifstream source(path, std::ios::binary);
    if (!source) throw std::runtime_error("cannot read " + path);
    FileReplacement copy(name);
    std::string block(std::size_t{1} << 16, '\0');
    while (source.read(block.data(), static_cast<std::streamsize>(block.size())), source.gcount() > 0) {
        copy.write(std::string_view(block).substr(0, static_cast<std::size_t>(source.gcount())));
    }
    if (source.bad()) throw std::runtime_error("cannot read " + path);
    copy.commit();
    return name;
}

} // namespace tarvo

#include "live/live_recording.h"

#include "definitions/definitions_file.h"
#include "live/format_requests.h"
#include "text/file_names.h"
#include "text/replace_file.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#if __has_include(<unistd.h>)
#include <unistd.h>
#endif

namespace tarvo {

namespace fs = std::filesystem;

namespace {

constexpr auto kFlushInterval = std::chrono::milliseconds(500); // half of what may be lost: writing takes time too
constexpr std::size_t kMostWaiting = std::size_t{256} << 20; // bytes: a disk that stands still must not take all memory

bool write_to_disk(std::FILE* file, std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() || std::fflush(file) != 0) return false;
#if __has_include(<unistd.h>)
    return fsync(fileno(file)) == 0;
#else
    return true;
#endif
}

// A line cut off in a number would be read as another sample.
void cut_to_whole_lines(const std::string& file_name, std::uintmax_t length)
{
    std::error_code ignored; // the failure that led here is told
    fs::resize_file(file_name, length, ignored);
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

std::string date_and_time()
{
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d_%H-%M-%S", &local);
    return text;
}

// A new data file without definitions beside it that belong to another.
struct NewFile {
    fs::path path;
    OpenFile file;
};

NewFile create_data_file(const std::string& folder)
{
    fs::create_directories(folder);
    const std::string base = "live_" + date_and_time();
    for (int copy = 1;; ++copy) {
        fs::path path = fs::path(folder) / (base + (copy == 1 ? "" : "_" + std::to_string(copy)) + ".csv");
        if (is_there(definitions_file_name_for(path.string()))) continue;
        OpenFile file(std::fopen(path.string().c_str(), "wbx"));
        if (file) {
            std::setvbuf(file.get(), nullptr, _IONBF, 0); // after a failure nothing is left to be written
            return {path, std::move(file)};
        }
        if (errno != EEXIST) throw std::system_error(errno, std::generic_category(), "cannot write " + path.string());
    }
}

} // namespace

// The thread and the file that it alone touches.
class LiveRecording::Writer {
public:
    Writer(std::string file_name, OpenFile file)
        : file_name_(std::move(file_name)), file_(std::move(file)), thread_([this] { write_until_finished(); })
    {
    }

    ~Writer() { finish(); }

    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void append(std::string_view line)
    {
        const std::lock_guard lock(mutex_);
        if (failed_) return; // nobody would empty the buffer
        waiting_ += line;
        waiting_ += "\r\n";
        if (waiting_.size() > kMostWaiting) fail("the disk does not keep up");
    }

    void finish()
    {
        {
            const std::lock_guard lock(mutex_);
            finished_ = true;
        }
        wake_.notify_one();
        if (thread_.joinable()) thread_.join();
    }

    std::optional<std::string> take_warning()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(warning_, std::nullopt);
    }

    bool has_failed()
    {
        const std::lock_guard lock(mutex_);
        return failed_;
    }

private:
    void write_until_finished()
    {
        std::unique_lock lock(mutex_);
        for (bool last_turn = false; !last_turn && !failed_;) {
            last_turn = wake_.wait_for(lock, kFlushInterval, [this] { return finished_; });
            write_waiting(lock);
        }
    }

    void write_waiting(std::unique_lock<std::mutex>& lock)
    {
        std::string bytes;
        bytes.swap(waiting_);
        lock.unlock();
        const bool written = bytes.empty() || write_to_disk(file_.get(), bytes);
        const std::string reason = written ? "" : std::generic_category().message(errno);
        if (written) {
            length_ += bytes.size();
        } else {
            cut_to_whole_lines(file_name_, length_);
        }
        const std::uintmax_t space = space_left();
        lock.lock();
        if (!written) {
            fail(reason);
        } else if (!failed_ && space < kLittleDiskSpace && !space_warned_) {
            space_warned_ = true;
            warning_ = "Only " + std::to_string(space >> 20) + " MB are left on the disk of " + file_name_;
        }
    }

    void fail(const std::string& reason)
    {
        failed_ = true;
        waiting_.clear();
        warning_ = "Recording has stopped: cannot write " + file_name_ + ": " + reason;
    }

    std::uintmax_t space_left() const
    {
        std::error_code fault;
        const fs::space_info space = fs::space(fs::path(file_name_).parent_path(), fault);
        return fault ? UINTMAX_MAX : space.available;
    }

    const std::string file_name_;
    const OpenFile file_;
    std::uintmax_t length_ = 0; // of the lines that are on the disk
    std::mutex mutex_;
    std::condition_variable wake_;
    std::string waiting_; // this and what follows: under mutex_
    std::optional<std::string> warning_;
    bool finished_ = false;
    bool failed_ = false;
    bool space_warned_ = false;
    std::thread thread_; // last: everything else is there when it starts
};

LiveRecording::LiveRecording() = default;

LiveRecording::~LiveRecording() = default;

void LiveRecording::start(const std::string& folder, const PortableSurvey& survey)
{
    finish();
    NewFile created = create_data_file(folder);
    data_file_name_ = created.path.string();
    try {
        replace_file(definitions_file_name_for(data_file_name_), exact_definitions_text(survey.definitions, 1));
    } catch (...) {
        std::error_code ignored;
        fs::remove(created.path, ignored);
        throw;
    }
    writer_ = std::make_unique<Writer>(data_file_name_, std::move(created.file));
    append(header_line_of(survey.columns, survey.definitions.data_format));
}

bool LiveRecording::is_active() const
{
    return writer_ && !writer_->has_failed();
}

void LiveRecording::append(std::string_view data_line)
{
    if (writer_) writer_->append(data_line);
}

void LiveRecording::finish()
{
    if (!writer_) return;
    if (writer_->has_failed()) { // its disk may never answer
        keep_warning(writer_->take_warning());
        std::thread([writer = std::move(writer_)]() mutable { writer.reset(); }).detach();
        return;
    }
    writer_->finish();
    keep_warning(writer_->take_warning());
    writer_.reset();
}

std::optional<std::string> LiveRecording::take_warning()
{
    if (writer_ && writer_->has_failed()) finish();
    if (writer_) keep_warning(writer_->take_warning());
    return std::exchange(warnings_, std::nullopt);
}

void LiveRecording::keep_warning(const std::optional<std::string>& warning)
{
    if (warning) warnings_ = warnings_ ? *warnings_ + '\n' + *warning : *warning;
}

std::string header_line_of(const std::vector<std::string>& columns, const std::optional<DataFormat>& format)
{
    if (has_named_separator(format)) return line_of_names(columns, format->separator);
    std::string line;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (column > 0) line += ',';
        const std::string& name = columns[column];
        const bool quoted = name.find_first_of(" ;'") != std::string::npos;
        line += quoted ? '"' + name + '"' : name;
    }
    return line;
}

} // namespace tarvo

#include "live/recording_writer.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

// Lets others at what the lock guards while the disk is asked.
class Unlocked {
public:
    explicit Unlocked(std::unique_lock<std::mutex>& lock) : lock_(lock) { lock_.unlock(); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;
    ~Unlocked() { lock_.lock(); }

private:
    std::unique_lock<std::mutex>& lock_;
};

std::uintmax_t space_beside(const std::string& file_name)
{
    std::error_code fault;
    const fs::space_info space = fs::space(fs::path(file_name).parent_path(), fault);
    return fault ? UINTMAX_MAX : space.available;
}

std::string lines_text(std::int64_t lines)
{
    return lines == 1 ? "1 line" : std::to_string(lines) + " lines";
}

} // namespace

RecordingWriter::RecordingWriter(std::string folder, RecordingTexts texts, const RecordingPace& pace)
    : texts_(std::move(texts)), pace_(pace), folder_(std::move(folder)), store_(pace.most_kept)
{
}

void RecordingWriter::begin_writing()
{
    std::thread([self = shared_from_this()] { self->write_until_settled(); }).detach();
    std::thread([self = shared_from_this()] { self->flush_until_settled(); }).detach();
    Lock lock(mutex_);
    progress_.wait_for(lock, pace_.longest_beginning, [this] { return file_ || refused_; });
}

void RecordingWriter::append(std::string_view line)
{
    const std::lock_guard lock(mutex_);
    store_.append(line);
}

bool RecordingWriter::hand_over()
{
    Lock lock(mutex_);
    const auto is_kept = [this] { return refused_ || is_written(); };
    handed_over_ = store_.end();
    if (!is_kept()) {
        work_.notify_one();
        progress_.wait_for(lock, pace_.longest_hand_over, is_kept);
    }
    if (is_kept()) {
        waiting_since_.reset();
        return true;
    }
    const Clock::time_point now = Clock::now();
    if (!waiting_since_) waiting_since_ = now;
    if (now - *waiting_since_ < pace_.patience) return false;
    refuse("the disk of " + folder_ + " does not answer");
    return true;
}

void RecordingWriter::finish()
{
    const std::lock_guard lock(mutex_);
    finished_ = true;
    handed_over_ = store_.end();
    work_.notify_one();
    flush_.notify_one();
}

bool RecordingWriter::wait_until_settled()
{
    Lock lock(mutex_);
    progress_.wait(lock, [this] { return settled_ || refused_; });
    return settled_;
}

void RecordingWriter::give_up()
{
    const std::lock_guard lock(mutex_);
    settle();
}

void RecordingWriter::try_again(const std::string& folder)
{
    const std::lock_guard lock(mutex_);
    if (!refused_) return;
    if (folder != folder_) file_.reset(); // it keeps the lines that it has
    folder_ = folder;
    next_try_ = Clock::now();
    work_.notify_one();
}

bool RecordingWriter::is_refused() const
{
    const std::lock_guard lock(mutex_);
    return refused_;
}

bool RecordingWriter::is_settled() const
{
    const std::lock_guard lock(mutex_);
    return settled_;
}

std::string RecordingWriter::file_name() const
{
    const std::lock_guard lock(mutex_);
    return file_name_;
}

std::optional<std::string> RecordingWriter::take_warning()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(warning_, std::nullopt);
}

void RecordingWriter::write_until_settled()
{
    Lock lock(mutex_);
    while (!settled_) {
        if (refused_) {
            work_.wait_until(lock, next_try_, [this] { return settled_ || Clock::now() >= next_try_; });
        } else {
            work_.wait(lock, [this] { return settled_ || has_work(); });
        }
        if (!settled_) work(lock);
    }
}

bool RecordingWriter::has_work() const
{
    const bool is_empty_and_over = finished_ && store_.end() == 0;
    return !file_ || misplaced_ || refused_ || written_.position < handed_over_ || is_empty_and_over;
}

void RecordingWriter::work(Lock& lock)
{
    try {
        if (finished_ && store_.end() == 0) {
            if (file_) file_->remove();
            settle();
            return;
        }
        if (refused_) find_file(lock);
        if (!file_ || misplaced_) make_file(lock);
        write_lines(lock);
        note_success();
    } catch (const std::exception& fault) {
        refuse(fault.what());
    }
}

// After a refusal the file may have gone, or hold part of what was refused.
void RecordingWriter::find_file(Lock& lock)
{
    if (std::exchange(rewind_, false)) written_ = flushed_;
    if (!file_) return;
    const std::shared_ptr<RecordingFile> file = file_;
    const std::uint64_t length = written_.length;
    bool is_in_place = false;
    {
        const Unlocked others_may(lock);
        is_in_place = file->is_in_place();
        if (is_in_place) file->cut_to(length);
    }
    if (file == file_) misplaced_ = !is_in_place;
}

void RecordingWriter::make_file(Lock& lock)
{
    std::shared_ptr<RecordingFile> file;
    {
        const std::string folder = folder_;
        const std::string before = file_name_;
        const Unlocked others_may(lock);
        file = std::make_shared<RecordingFile>(folder, texts_, before);
    }
    if (std::exchange(misplaced_, false)) {
        const std::int64_t lost = store_.lines_before_begin();
        written_ = {store_.begin(), lost, 0};
        warn(file_name_ + " is gone. The recording goes on in " + file->name() + ", " +
             (lost == 0 ? "which has every line of this run" : "without the first " + lines_text(lost)));
    }
    written_.length = file->length();
    flushed_ = written_;
    flushed_.length = 0; // the header is not on the disk yet
    file_name_ = file->name();
    file_ = std::move(file);
    progress_.notify_all();
}

void RecordingWriter::write_lines(Lock& lock)
{
    const std::shared_ptr<RecordingFile> file = file_;
    while (written_.position < store_.end()) {
        skip_dropped_lines();
        const std::string lines(store_.lines_from(written_.position));
        {
            const Unlocked others_may(lock);
            file->append(lines);
        }
        if (file != file_) return; // another folder was chosen, where these lines go, too
        written_.position += lines.size();
        written_.lines += std::count(lines.begin(), lines.end(), '\n');
        written_.length = file->length();
        if (misplaced_ || rewind_) return;
        progress_.notify_all();
    }
}

void RecordingWriter::skip_dropped_lines()
{
    if (written_.position >= store_.begin()) return;
    lines_lost_ += store_.lines_before_begin() - written_.lines;
    written_.position = store_.begin();
    written_.lines = store_.lines_before_begin();
}

void RecordingWriter::note_success()
{
    if (!is_written()) return;
    const std::int64_t lost = std::exchange(lines_lost_, 0);
    const bool goes_on = std::exchange(refused_, false);
    if (goes_on) warn("The recording goes on in " + file_name_);
    if (lost > 0) warn(lines_text(lost) + " were not kept while the disk took none, and are in no recording");
    if (finished_) flush_.notify_one();
    progress_.notify_all();
}

void RecordingWriter::refuse(const std::string& reason)
{
    next_try_ = Clock::now() + pace_.retry_interval;
    progress_.notify_all();
    if (std::exchange(refused_, true)) return;
    const char* const begin =
        file_name_.empty() ? "An error occurred while starting the recording: " : "Recording has stopped: ";
    warn(begin + reason + ". The lines are kept in memory and written when the disk takes them");
}

void RecordingWriter::flush_until_settled()
{
    Lock lock(mutex_);
    while (!settled_) {
        flush_.wait_for(lock, pace_.flush_interval, [this] { return settled_ || (!refused_ && is_complete()); });
        if (!settled_) flush(lock);
    }
}

void RecordingWriter::flush(Lock& lock)
{
    handed_over_ = store_.end();
    work_.notify_one();
    if (!file_ || misplaced_ || refused_) return;
    const std::shared_ptr<RecordingFile> file = file_;
    const Mark mark = written_;
    bool is_in_place = false;
    std::string fault;
    std::uintmax_t space = 0;
    try {
        const Unlocked others_may(lock);
        is_in_place = file->is_in_place();
        if (is_in_place && mark.length > flushed_.length) file->flush();
        space = space_beside(file->name());
    } catch (const std::exception& failure) {
        fault = failure.what();
    }
    if (file != file_) return;
    if (!is_in_place) {
        misplaced_ = true;
        work_.notify_one();
    } else if (!fault.empty()) {
        rewind_ = true;
        refuse(fault);
        work_.notify_one();
    } else {
        flushed_ = mark;
        warn_of_little_space(space);
        if (is_complete() && flushed_.position == store_.end()) settle();
    }
}

void RecordingWriter::warn_of_little_space(std::uintmax_t space)
{
    if (space >= kLittleDiskSpace || std::exchange(space_warned_, true)) return;
    warn("Only " + std::to_string(space >> 20) + " MB are left on the disk of " + file_name_);
}

void RecordingWriter::settle()
{
    settled_ = true;
    work_.notify_all();
    flush_.notify_all();
    progress_.notify_all();
}

void RecordingWriter::warn(const std::string& text)
{
    warning_ = warning_ ? *warning_ + '\n' + text : text;
}

} // namespace tarvo

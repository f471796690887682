#pragma once

#include "live/line_store.h"
#include "live/recording_file.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

inline constexpr std::uintmax_t kLittleDiskSpace = std::uintmax_t{500} << 20; // bytes: worth a warning below

struct RecordingPace {
    std::size_t most_kept = std::size_t{64} << 20;    // bytes of lines in memory
    std::chrono::milliseconds flush_interval{500};    // half of what may be lost: writing takes time too
    std::chrono::milliseconds retry_interval{5000};   // while the disk takes nothing
    std::chrono::milliseconds patience{10'000};       // with a disk that neither takes lines nor refuses them
    std::chrono::milliseconds longest_hand_over{1};   // that hand_over() waits
    std::chrono::milliseconds longest_beginning{500}; // that begin_writing() waits
};

// One recording on its way to the disk. A thread writes its lines, another flushes them, so that neither the program
// nor the writing waits for a slow disk. When the file has vanished the lines that are in memory go into a new one;
// when the disk refuses lines they are kept in memory, as many as fit, until it takes them again.
class RecordingWriter : public std::enable_shared_from_this<RecordingWriter> {
public:
    RecordingWriter(std::string folder, RecordingTexts texts, const RecordingPace& pace);
    RecordingWriter(const RecordingWriter&) = delete;
    RecordingWriter& operator=(const RecordingWriter&) = delete;

    // Starts the threads, which hold the object as long as they need it, and waits a moment for the file.
    void begin_writing();

    void append(std::string_view line);

    // True when every line is with the system, or kept for a disk that takes none at the time. False: not yet; waits a
    // moment before it says so.
    bool hand_over();

    // No line follows. What there is is written and flushed without anybody waiting; a recording without a line leaves
    // no file.
    void finish();
    bool wait_until_settled(); // after finish(): false, the disk takes no lines
    void give_up();            // the threads end, whatever is left

    // The disk, or another folder, may take lines again. Nothing happens while it does.
    void try_again(const std::string& folder);

    bool is_refused() const; // lines are kept in memory only
    bool is_settled() const; // everything is on the disk and stays there, or given up
    std::string file_name() const;
    std::optional<std::string> take_warning();

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    // How far lines have got.
    struct Mark {
        std::uint64_t position = 0; // of the store
        std::int64_t lines = 0;     // before it
        std::uint64_t length = 0;   // of the file, bytes
    };

    void write_until_settled();
    bool has_work() const;
    void work(Lock& lock);
    void find_file(Lock& lock);
    void make_file(Lock& lock);
    void write_lines(Lock& lock);
    void skip_dropped_lines();
    void note_success();
    void refuse(const std::string& reason);

    void flush_until_settled();
    void flush(Lock& lock);
    void warn_of_little_space(std::uintmax_t space);

    bool is_written() const { return file_ && !misplaced_ && !rewind_ && written_.position == store_.end(); }
    bool is_complete() const { return finished_ && store_.end() > 0 && is_written(); }
    void settle();
    void warn(const std::string& text);

    const RecordingTexts texts_;
    const RecordingPace pace_;

    mutable std::mutex mutex_; // of all that follows
    std::condition_variable work_;
    std::condition_variable flush_;
    std::condition_variable progress_;
    std::string folder_;
    LineStore store_;
    std::shared_ptr<RecordingFile> file_; // null: to be made
    std::string file_name_;               // of the last one
    std::uint64_t handed_over_ = 0;       // position up to which lines are to be written now
    Mark written_;                        // with the system
    Mark flushed_;                        // on the disk
    std::int64_t lines_lost_ = 0;         // dropped before a disk took them, not told yet
    Clock::time_point next_try_;
    std::optional<Clock::time_point> waiting_since_; // somebody waits for the disk
    std::optional<std::string> warning_;
    bool misplaced_ = false; // the file's name does not lead to it any more
    bool rewind_ = false;    // lines that were written may not be on the disk: again from flushed_ on
    bool refused_ = false;   // the disk takes no lines, or does not answer
    bool finished_ = false;
    bool settled_ = false;
    bool space_warned_ = false;
};

} // namespace tarvo

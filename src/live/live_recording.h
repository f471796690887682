#pragma once

#include "live/definition_requests.h"
#include "live/recording_writer.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// A live survey on its way to the disk: a data file with its header and every line appended, the definitions beside it.
// Lines that were handed over outlast a crash of this program, and half a second later one of the computer. Nothing
// here waits for a slow disk, but for the destructor.
class LiveRecording {
public:
    explicit LiveRecording(const RecordingPace& pace = {}) : pace_(pace) {}
    LiveRecording(const LiveRecording&) = delete;
    LiveRecording& operator=(const LiveRecording&) = delete;
    ~LiveRecording(); // finishes; lines that the disk refuses are lost

    // Begins with two files in the folder, named by date and time. Where they cannot be made, lines are kept in memory
    // and it is tried again.
    void start(const std::string& folder, const PortableSurvey& survey);
    void append(std::string_view data_line);
    bool hand_over(); // true: the lines appended so far are with the system, or kept for a disk that takes none now
    void finish();

    // Another folder for lines that the disk refuses, also for those of recordings that are finished; the same one: now
    // is a time to try again.
    void try_again(const std::string& folder);

    bool has_begun() const { return current_ != nullptr; }
    bool is_active() const;             // lines that are appended now reach the disk, as far as is known
    bool is_settled();                  // no recording is on, and all are on the disk
    bool wait_until_settled();          // likewise, after a finish; false: the disk takes no lines
    void give_up();                     // what is not on the disk is lost
    std::string data_file_name() const; // of the recording at hand or the last one; it changes when a file vanishes

    // What the operator must know of since the last call: the disk refuses lines or takes them again, a file has
    // vanished, little space is left.
    std::optional<std::string> take_warning();

private:
    using Writer = std::shared_ptr<RecordingWriter>;

    void keep_warnings_of(RecordingWriter& writer);

    RecordingPace pace_;
    Writer current_;              // null: no recording is on
    std::vector<Writer> closing_; // finished, not settled yet
    std::string last_file_name_;
    std::optional<std::string> warnings_; // not taken yet
};

// The header line of a data file with these columns: a name that holds a separator stands in quotes.
std::string header_line_of(const std::vector<std::string>& columns);

} // namespace tarvo

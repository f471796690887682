#pragma once

#include "live/definition_requests.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

inline constexpr std::uintmax_t kLittleDiskSpace = std::uintmax_t{500} << 20; // bytes: worth a warning below

// A live survey on its way to the disk: a data file with its header and every line appended, the definitions beside it.
// A thread of its own writes and flushes, at least once a second, so that a slow disk holds up neither the sender nor
// the window; a crash or a power cut costs the last second at most.
class LiveRecording {
public:
    LiveRecording();
    ~LiveRecording(); // finishes
    LiveRecording(const LiveRecording&) = delete;
    LiveRecording& operator=(const LiveRecording&) = delete;

    // Creates the two files in the folder, named by date and time. Throws std::runtime_error or std::system_error,
    // naming the file, when that cannot be done.
    void start(const std::string& folder, const PortableSurvey& survey);
    void append(std::string_view data_line);
    void finish(); // everything appended is on the disk afterwards, or a fault tells why not

    bool is_active() const; // lines that are appended now reach the disk, as far as is known
    const std::string& data_file_name() const { return data_file_name_; } // of the recording at hand or the last one

    // What the operator must know of since the last call: writing has failed, or little space is left. A failure leaves
    // the lines that were flushed before.
    std::optional<std::string> take_warning();

private:
    class Writer;

    void keep_warning(const std::optional<std::string>& warning);

    std::unique_ptr<Writer> writer_;
    std::string data_file_name_;
    std::optional<std::string> warnings_; // not taken yet
};

// The header line of a data file with these columns: a name that holds a separator stands in quotes.
std::string header_line_of(const std::vector<std::string>& columns,
                           const std::optional<DataFormat>& format = std::nullopt);

} // namespace tarvo

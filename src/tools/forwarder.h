#pragma once

#include "live/pipe_client.h"
#include "tools/line_source.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

struct ForwardCounts {
    std::int64_t sent = 0;    // answered "OK"
    std::int64_t refused = 0; // answered otherwise, or too long for a request
    std::int64_t lost = 0;    // came in while the monitor was away for long, or were not sent when the run was stopped
};

enum class ForwardEnd { complete, stopped, definitions_refused };

// Sends a survey down the pipe: its definitions, then one line after the other, each when the one before is answered.
// Waits for a monitor that is not there, and begins again with the definitions when it has come back.
class Forwarder {
public:
    // definitions: the requests that describe the survey. rate: lines per second, none: as fast as they are answered.
    // stop_descriptor: becomes readable when the run is to end. say: is given what the user should know.
    Forwarder(std::string pipe_name, std::vector<std::string> definitions, LineSource& lines,
              std::optional<double> rate, int stop_descriptor, std::function<void(const std::string&)> say);

    ForwardEnd run();
    const ForwardCounts& counts() const { return counts_; }
    // Called after every answered line.
    std::function<void(const ForwardCounts&)> on_line;

private:
    using Clock = std::chrono::steady_clock;
    enum class Outcome { done, hung_up, refused };

    bool connect_when_possible();
    void tell_of_losses();
    void pause_before_retry();
    Outcome send_definitions();
    Outcome send_lines();
    bool forward_line(std::string_view line);
    void wait_for_turn();
    std::optional<std::string> exchange(std::string_view request);
    void wait_until(Clock::time_point time);
    ForwardEnd end_run(ForwardEnd how);

    PipeClient pipe_;
    std::vector<std::string> definitions_;
    LineSource& lines_;
    std::optional<double> rate_;
    int stop_descriptor_;
    std::function<void(const std::string&)> say_;
    ForwardCounts counts_;
    Clock::time_point next_turn_;
    std::int64_t losses_told_ = 0;
    bool was_answered_ = false; // on this connection
    bool stopped_ = false;
};

} // namespace tarvo

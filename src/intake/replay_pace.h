#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarvo {

using ReplayClock = std::chrono::steady_clock;

// How a replay keeps time with the data: the gap between two lines is waited for, divided by the pace. A long gap, as
// from one day of a survey to the next, is cut to a second.
class ReplayPace {
public:
    // times: how many times as fast as the data; nullopt: by the slider, nothing is waited for here. Another pace than
    // before counts from the next line on.
    void choose(std::optional<double> times);
    bool keeps_time() const { return times_.has_value(); }

    void restart() { last_time_.reset(); } // at the start of a run, and behind a pause

    // Milliseconds to wait behind a line of this time (ten-thousandths of a second), so that the next one is not early.
    // What takes less than one is made up for later.
    int wait_behind(std::int64_t time, ReplayClock::time_point now);

private:
    std::optional<double> times_;
    std::optional<std::int64_t> last_time_;
    ReplayClock::time_point due_; // when the last line was to be shown
};

// The pace of a setting's text: "1", "2" ... as a number; nullopt for "slider".
std::optional<double> pace_of_text(std::string_view text);

} // namespace tarvo

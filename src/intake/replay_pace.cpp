#include "intake/replay_pace.h"

#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr double kTicksPerSecond = 10'000;
constexpr double kLongestGap = 10;                      // seconds
constexpr double kCutGap = 1;                           // what is left of a longer one
constexpr auto kMostLateness = std::chrono::seconds(1); // what a slow machine loses beyond that is not caught up

} // namespace

void ReplayPace::choose(std::optional<double> times)
{
    if (times == times_) return;
    times_ = times;
    restart();
}

int ReplayPace::wait_behind(std::int64_t time, ReplayClock::time_point now)
{
    if (!times_) return 0;
    if (!last_time_) due_ = now;
    double gap = static_cast<double>(time - last_time_.value_or(time)) / kTicksPerSecond;
    if (gap > kLongestGap) gap = kCutGap;
    last_time_ = time;
    due_ +=
        std::chrono::duration_cast<ReplayClock::duration>(std::chrono::duration<double>(std::max(gap, 0.0) / *times_));
    due_ = std::max(due_, now - kMostLateness);
    return std::max(0, static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(due_ - now).count()));
}

std::optional<double> pace_of_text(std::string_view text)
{
    const std::optional<double> times = numeric_value(text);
    return times && *times > 0 ? times : std::nullopt;
}

} // namespace tarvo

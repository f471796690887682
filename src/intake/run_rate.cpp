#include "intake/run_rate.h"

#include "text/numbers.h"

#include <cmath>

namespace tarvo {

namespace {

std::string minutes_and_seconds(double seconds)
{
    const auto whole = static_cast<std::int64_t>(std::ceil(std::min(seconds, 359999.0)));
    const auto two_digits = [](std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    const std::int64_t hours = whole / 3600;
    const std::int64_t minutes = whole / 60 % 60;
    return (hours > 0 ? std::to_string(hours) + ':' + two_digits(minutes) : std::to_string(minutes)) + ':' +
           two_digits(whole % 60);
}

} // namespace

void RunRate::update(const RunCounters& counters, double seconds)
{
    constexpr double kShortestSpan = 0.5; // seconds
    if (!last_ || counters.lines_read < last_->counters.lines_read) {
        *this = RunRate();
        last_ = Moment{seconds, counters};
        return;
    }
    const double span = seconds - last_->seconds;
    if (span < kShortestSpan) return;
    lines_per_second_ = static_cast<double>(counters.lines_read - last_->counters.lines_read) / span;
    const auto consumed = static_cast<double>(counters.characters_consumed - last_->counters.characters_consumed);
    const auto left = static_cast<double>(counters.file_length - counters.characters_consumed);
    seconds_left_.reset();
    if (consumed > 0 && left >= 0) seconds_left_ = left / consumed * span;
    last_ = Moment{seconds, counters};
}

std::string RunRate::text() const
{
    if (!lines_per_second_) return "";
    const int decimals = *lines_per_second_ < 10 ? 1 : 0;
    std::string text = grouped_digits(format_fixed(*lines_per_second_, decimals)) + " lines/s";
    if (seconds_left_) text += ", " + minutes_and_seconds(*seconds_left_) + " left";
    return text;
}

} // namespace tarvo

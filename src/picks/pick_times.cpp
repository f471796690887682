#include "picks/pick_times.h"

#include "processing/fixed_time.h"
#include "text/numbers.h"

#include <chrono>
#include <cmath>
#include <stdexcept>

namespace tarvo {

namespace {

std::int64_t ticks_of_seconds(double seconds)
{
    const std::optional<std::int64_t> ticks = to_fixed_time(seconds);
    if (!ticks) throw std::range_error("the time " + format_shortest(seconds) + " s is outside the range of times");
    return *ticks;
}

std::string two_digits(std::int64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

struct DayAndSecond {
    std::int64_t day = 0; // since 1970-01-01
    std::int64_t second = 0;
};

DayAndSecond day_and_second(double date_time)
{
    constexpr std::int64_t kDay = 86'400;
    const std::int64_t seconds = whole_seconds_since_1970(date_time);
    const std::int64_t second = (seconds % kDay + kDay) % kDay;
    return {(seconds - second) / kDay, second};
}

} // namespace

std::int64_t whole_seconds_since_1970(double date_time)
{
    // A 64-bit float of days is good to a microsecond in this century: once rounded to ten-thousandths, a whole second
    // never falls to the one before.
    return ticks_of_seconds(seconds_since_1970(date_time)) / static_cast<std::int64_t>(kFixedTimeUnits);
}

double date_time_of_seconds(double seconds)
{
    const auto ticks = static_cast<double>(ticks_of_seconds(seconds));
    return kDaysTo1970 + std::nearbyint(ticks / kFixedTimeUnits) / kSecondsPerDay;
}

std::string time_of_day(double date_time)
{
    const std::int64_t second = day_and_second(date_time).second;
    return two_digits(second / 3600) + ':' + two_digits(second / 60 % 60) + ':' + two_digits(second % 60);
}

std::string iso_date_and_time(double date_time)
{
    using namespace std::chrono;
    const year_month_day date(sys_days(days(day_and_second(date_time).day)));
    return std::to_string(static_cast<int>(date.year())) + '-' + two_digits(static_cast<unsigned>(date.month())) + '-' +
           two_digits(static_cast<unsigned>(date.day())) + 'T' + time_of_day(date_time);
}

} // namespace tarvo

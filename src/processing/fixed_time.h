#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace tarvo {

// Times of data lines are 64-bit counts of ten-thousandths of a second since 1970-01-01 00:00:00.
inline constexpr double kFixedTimeUnits = 10000;
inline constexpr double kDaysTo1970 = 25569; // from 1899-12-30
inline constexpr double kSecondsPerDay = 86400;

// Halves to even; nullopt beyond a 64-bit count.
inline std::optional<std::int64_t> to_fixed_time(double seconds)
{
    const double count = std::nearbyint(seconds * kFixedTimeUnits);
    if (!(count >= -0x1p63 && count < 0x1p63)) return std::nullopt;
    return static_cast<std::int64_t>(count);
}

// An interval: one too long to be counted is longer than any that can elapse.
inline std::int64_t to_fixed_interval(double seconds)
{
    using Limits = std::numeric_limits<std::int64_t>;
    return to_fixed_time(seconds).value_or(seconds > 0 ? Limits::max() : Limits::min());
}

// later - earlier, held at the bounds of the count.
inline std::int64_t elapsed_time(std::int64_t earlier, std::int64_t later)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (earlier < 0 && later > Limits::max() + earlier) return Limits::max();
    if (earlier > 0 && later < Limits::min() + earlier) return Limits::min();
    return later - earlier;
}

// The stored form of a record's time: days since 1899-12-30, and its seconds since 1970 again.
inline double to_date_time(std::int64_t fixed_time)
{
    return kDaysTo1970 + static_cast<double>(fixed_time) / kFixedTimeUnits / kSecondsPerDay;
}
inline double seconds_since_1970(double date_time)
{
    return (date_time - kDaysTo1970) * kSecondsPerDay;
}

} // namespace tarvo

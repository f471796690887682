#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// Times of picks are date-times, days since 1899-12-30 as they stand, without a time zone. Everything here throws
// std::range_error for a time that no 64-bit count of ten-thousandths of a second holds.

// Whole seconds from 1970-01-01 00:00:00; sub-second parts are cut off.
std::int64_t whole_seconds_since_1970(double date_time);

// The date-time that many seconds after 1970-01-01 00:00:00, rounded to a whole second, halves to even.
double date_time_of_seconds(double seconds);

std::string time_of_day(double date_time);       // "12:34:56"
std::string iso_date_and_time(double date_time); // "2024-06-10T12:34:56"

} // namespace tarvo

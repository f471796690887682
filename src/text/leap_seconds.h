#pragma once

#include <cstdint>

namespace tarvo {

// GPS time has no leap seconds and counts from 1980-01-06 00:00:00 UTC.

// GPS time - UTC in whole seconds at a GPS time that is given as if it were a time of day and date in UTC: seconds
// since 1970-01-01 of what a GPS clock shows. 0 before the first leap second that followed 1980.
int leap_seconds_of_gps_clock(std::int64_t gps_seconds_since_1970);

// Seconds since 1970-01-01 that a GPS clock shows at the start of a GPS week.
std::int64_t gps_clock_of_week(std::int64_t week);

} // namespace tarvo

#include "text/leap_seconds.h"

namespace tarvo {

namespace {

struct LeapSecond {
    std::int64_t since; // seconds since 1970-01-01 00:00:00 UTC, the second behind the leap second
    int ahead;          // by how much GPS time is ahead of UTC from then on
};

// All leap seconds since 1980 (IERS Bulletin C; none has followed that of 2016).
constexpr LeapSecond kLeapSeconds[] = {
    {362793600, 1},   // 1981-07-01
    {394329600, 2},   // 1982-07-01
    {425865600, 3},   // 1983-07-01
    {489024000, 4},   // 1985-07-01
    {567993600, 5},   // 1988-01-01
    {631152000, 6},   // 1990-01-01
    {662688000, 7},   // 1991-01-01
    {709948800, 8},   // 1992-07-01
    {741484800, 9},   // 1993-07-01
    {773020800, 10},  // 1994-07-01
    {820454400, 11},  // 1996-01-01
    {867715200, 12},  // 1997-07-01
    {915148800, 13},  // 1999-01-01
    {1136073600, 14}, // 2006-01-01
    {1230768000, 15}, // 2009-01-01
    {1341100800, 16}, // 2012-07-01
    {1435708800, 17}, // 2015-07-01
    {1483228800, 18}, // 2017-01-01
};

constexpr std::int64_t kFirstGpsDay = 3657; // 1980-01-06, in days since 1970-01-01

} // namespace

int leap_seconds_of_gps_clock(std::int64_t gps_seconds_since_1970)
{
    int ahead = 0;
    for (const LeapSecond& leap : kLeapSeconds) {
        if (gps_seconds_since_1970 >= leap.since + leap.ahead) ahead = leap.ahead;
    }
    return ahead;
}

std::int64_t gps_clock_of_week(std::int64_t week)
{
    return (kFirstGpsDay + 7 * week) * 86400;
}

} // namespace tarvo

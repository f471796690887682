#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

// A day of the Gregorian calendar, years 1 to 9999.
struct CivilDate {
    int year = 1970;
    int month = 1;
    int day = 1;

    bool operator==(const CivilDate&) const = default;
};

bool is_leap_year(int year);

// False also for a month or a year out of range.
bool is_date(const CivilDate& date);

// Days since 1970-01-01, negative before it.
std::int64_t days_since_1970(const CivilDate& date);

// The same backwards; for days of the years 1 to 9999.
CivilDate date_of_day(std::int64_t days_since_1970);

// "YYYY-MM-DD" with all its digits; nullopt for anything else and for a day that the calendar does not have.
std::optional<CivilDate> read_civil_date(std::string_view text);
std::string civil_date_text(const CivilDate& date);

} // namespace tarvo

#include "text/civil_date.h"

#include <chrono>
#include <cstddef>

namespace tarvo {

namespace {

std::chrono::year_month_day calendar_day(const CivilDate& date)
{
    return {std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
            std::chrono::day(static_cast<unsigned>(date.day))};
}

// The number that the digits write; -1 when one of them is no digit.
int number_of(std::string_view digits)
{
    int value = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9') return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

std::string padded(int number, std::size_t digits)
{
    const std::string text = std::to_string(number);
    return std::string(digits > text.size() ? digits - text.size() : 0, '0') + text;
}

} // namespace

bool is_leap_year(int year)
{
    return std::chrono::year(year).is_leap();
}

bool is_date(const CivilDate& date)
{
    const bool in_range =
        date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31;
    return in_range && calendar_day(date).ok();
}

std::int64_t days_since_1970(const CivilDate& date)
{
    return std::chrono::sys_days(calendar_day(date)).time_since_epoch().count();
}

CivilDate date_of_day(std::int64_t days_since_1970)
{
    const std::chrono::year_month_day day{std::chrono::sys_days(std::chrono::days(days_since_1970))};
    return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day()))};
}

std::optional<CivilDate> read_civil_date(std::string_view text)
{
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
    const CivilDate date{number_of(text.substr(0, 4)), number_of(text.substr(5, 2)), number_of(text.substr(8, 2))};
    return is_date(date) ? std::optional(date) : std::nullopt;
}

std::string civil_date_text(const CivilDate& date)
{
    return padded(date.year, 4) + '-' + padded(date.month, 2) + '-' + padded(date.day, 2);
}

} // namespace tarvo

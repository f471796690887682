#include "intake/iaga_2002.h"

#include "text/numbers.h"
#include "text/tokens.h"

#include <chrono>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvo {

namespace {

constexpr double kNotRecorded = 88888;
constexpr double kMissing = 99999;
constexpr std::size_t kFirstElement = 3; // behind date, time and day of the year

[[noreturn]] void refuse(const LineReader& file, const std::string& expected)
{
    throw std::runtime_error(file.file_name() + ", line " + std::to_string(file.line_number()) + ": " + expected +
                             " was expected");
}

// The number of `digits` characters from `at` on; -1 when they are none.
int whole_number(std::string_view text, std::size_t at, std::size_t digits)
{
    if (text.size() < at + digits) return -1;
    int number = 0;
    for (const char c : text.substr(at, digits)) {
        if (c < '0' || c > '9') return -1;
        number = 10 * number + (c - '0');
    }
    return number;
}

// Seconds since 1970 of "2014-11-01" and "00:01:00.000".
std::optional<double> reading_time(std::string_view date, std::string_view clock)
{
    using namespace std::chrono;
    if (date.size() != 10 || date[4] != '-' || date[7] != '-') return std::nullopt;
    if (clock.size() < 8 || clock[2] != ':' || clock[5] != ':') return std::nullopt;
    const int year_number = whole_number(date, 0, 4);
    const int month_number = whole_number(date, 5, 2);
    const int day_number = whole_number(date, 8, 2);
    const int hour = whole_number(clock, 0, 2);
    const int minute = whole_number(clock, 3, 2);
    const std::optional<double> second = numeric_value(clock.substr(6));
    if (year_number < 0 || month_number < 0 || day_number < 0 || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        !second || !(*second >= 0 && *second < 61)) {
        return std::nullopt;
    }
    const year_month_day calendar(year{year_number}, month{static_cast<unsigned>(month_number)},
                                  day{static_cast<unsigned>(day_number)});
    if (!calendar.ok()) return std::nullopt;
    const auto days = static_cast<double>(sys_days(calendar).time_since_epoch().count());
    return days * 86400.0 + hour * 3600.0 + minute * 60.0 + *second;
}

// The token of a line that holds the total field.
std::size_t field_column(const std::vector<std::string>& names, const LineReader& file)
{
    for (std::size_t column = kFirstElement; column < names.size(); ++column) {
        if (names[column].ends_with('F') || names[column].ends_with('f')) return column;
    }
    refuse(file, "a column of the total field, its name ending in F,");
}

bool is_fill(double value)
{
    return std::floor(value) == kNotRecorded || std::floor(value) == kMissing;
}

} // namespace

bool is_iaga_2002(std::string_view first_line)
{
    std::string_view text = first_line;
    return next_token(text) == "Format" && trimmed(text).starts_with("IAGA-2002");
}

void read_iaga_2002(LineReader& file, BaseStation& base)
{
    std::string_view line;
    std::size_t column = 0; // not known before the line of names
    while (file.next_line(line) != LineReader::Outcome::end) {
        const std::vector<std::string> fields = fields_of_line(line);
        if (fields.empty()) continue;
        if (column == 0) {
            if (fields.front() == "DATE") column = field_column(fields, file);
            continue;
        }
        if (fields.size() <= column) refuse(file, "a line of at least " + std::to_string(column + 1) + " values");
        const std::optional<double> time = reading_time(fields[0], fields[1]);
        if (!time) refuse(file, "a date and a time such as 2014-11-01 00:01:00.000");
        const std::optional<double> field = numeric_value(fields[column]);
        if (!field) refuse(file, "a number for the total field");
        add_base_reading(base, *time, is_fill(*field) ? kNull : *field);
    }
    if (column == 0) refuse(file, "a line of column names that begins with DATE");
}

} // namespace tarvo

#pragma once

#include "text/civil_date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// Times as loggers write them, read by a form such as "YYYY/MM/DD hh:mm:ss". Items: YYYY, YY (00 to 79: 2000s), MM, MMM
// (English, any case), DD, DDD (day of the year), hh, mm, ss; s and ms (counts), week and sow (GPS). A blank or "T" in
// the form matches blanks or a "T", every other character itself. All times here are counts of ten-thousandths of a
// second.
inline constexpr std::int64_t kTimeUnitsPerSecond = 10000;
inline constexpr std::int64_t kTimeUnitsPerDay = 86400 * kTimeUnitsPerSecond;

enum class TimeItem : unsigned char {
    year,
    short_year,
    month,
    month_name,
    day,
    day_of_year,
    hour,
    minute,
    second,
    seconds,
    milliseconds,
    week,
    second_of_week,
    blank,
    character
};

// A form taken apart once, so that a line costs next to nothing.
struct TimeForm {
    struct Step {
        TimeItem item = TimeItem::character;
        char character = 0;          // that a step of that kind matches
        bool takes_fewer = false;    // digits than it has letters: a separator or the end follows
        bool takes_fraction = false; // the smallest unit of the clock, or a count
    };
    std::vector<Step> steps;
    bool has_date = false;      // a day, or a GPS week: the time needs nothing else
    bool is_count = false;      // s or ms alone
    bool is_gps = false;        // week and sow
    bool may_have_zone = false; // "Z" or +hh:mm behind the text

    CivilDate survey_date;        // the day of the first time without a date; its year stands for a missing one
    std::int64_t time_offset = 0; // added to every time

    // A clock without a date, or a count from a given day: what falls by more than 12 hours has begun the next day.
    bool days_run_on() const { return !has_date && (!is_count || survey_date != CivilDate()); }
};

struct TimeFormReading {
    std::optional<TimeForm> form; // none: refused
    std::string refusal;          // why: "a date without its day"
};

// offset: seconds added to every time read.
TimeFormReading compile_time_form(std::string_view text, const CivilDate& survey_date = {}, double offset = 0);

// What one text says, by itself: which day a time without a date belongs to is told by the lines before it.
struct WrittenTime {
    std::int64_t day = 0;   // since 1970-01-01, where the form has a date
    std::int64_t clock = 0; // since midnight of that day, or what a count counts; as written
    std::int64_t zone = 0;  // ahead of UTC
};

// Exact from the digits, halves to even. nullopt when the text does not fit the form.
std::optional<WrittenTime> read_time(const TimeForm& form, std::string_view text);

// The days begun since the first time without a date.
struct RunningDay {
    std::int64_t days = 0;
    std::int64_t last_clock = INT64_MIN; // as written; INT64_MIN: none yet
};

// The time since 1970-01-01 00:00:00 UTC, zone and offset included. To be called in file order, for every line with a
// time.
std::int64_t time_of(const TimeForm& form, const WrittenTime& written, RunningDay& running);

} // namespace tarvo

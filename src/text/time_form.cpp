#include "text/time_form.h"

#include "text/leap_seconds.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

struct ItemWord {
    std::string_view letters;
    TimeItem item;
};

// Longer words before those that they begin with.
constexpr ItemWord kItems[] = {
    {"YYYY", TimeItem::year}, {"YY", TimeItem::short_year},      {"MMM", TimeItem::month_name},
    {"MM", TimeItem::month},  {"DDD", TimeItem::day_of_year},    {"DD", TimeItem::day},
    {"hh", TimeItem::hour},   {"mm", TimeItem::minute},          {"ms", TimeItem::milliseconds},
    {"ss", TimeItem::second}, {"sow", TimeItem::second_of_week}, {"s", TimeItem::seconds},
    {"week", TimeItem::week}};

constexpr std::array<std::string_view, 12> kMonths = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                      "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

constexpr std::int64_t kUnitsPerMinute = 60 * kTimeUnitsPerSecond;
constexpr std::int64_t kUnitsPerHour = 60 * kUnitsPerMinute;
constexpr std::int64_t kUnitsPerMillisecond = kTimeUnitsPerSecond / 1000;

bool is_letter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

bool is_count_item(TimeItem item)
{
    return item >= TimeItem::seconds && item <= TimeItem::second_of_week;
}

// The items of a form, each of them once.
class ItemSet {
public:
    void add(TimeItem item) { items_[static_cast<std::size_t>(item)] = true; }
    bool has(TimeItem item) const { return items_[static_cast<std::size_t>(item)]; }
    bool has_month() const { return has(TimeItem::month) || has(TimeItem::month_name); }
    bool has_year() const { return has(TimeItem::year) || has(TimeItem::short_year); }
    bool has_day() const { return has(TimeItem::day) || has(TimeItem::day_of_year); }
    bool has_date() const { return has_month() || has_year() || has_day(); }
    bool has_gps() const { return has(TimeItem::week) || has(TimeItem::second_of_week); }
    bool has_count() const { return has(TimeItem::seconds) || has(TimeItem::milliseconds) || has_gps(); }
    bool has_clock() const { return has(TimeItem::hour) || has(TimeItem::minute) || has(TimeItem::second); }

private:
    std::array<bool, static_cast<std::size_t>(TimeItem::character) + 1> items_ = {};
};

std::string refusal_of(const ItemSet& items)
{
    using enum TimeItem;
    if (!items.has_date() && !items.has_clock() && !items.has_count()) return "it holds no time";
    if ((items.has(year) && items.has(short_year)) || (items.has(month) && items.has(month_name)) ||
        (items.has(day) && items.has(day_of_year))) {
        return "an item twice";
    }
    if (items.has_date() && !items.has_day()) return "a date without its day";
    if (items.has(day) && !items.has_month()) return "a day of the month without its month";
    if (items.has(day_of_year) && items.has_month()) return "the day of the year beside a month";
    if (items.has(minute) && !items.has(hour)) return "mm without hh";
    if (items.has(second) && !items.has(minute)) return "ss without mm";
    if (items.has_count() && items.has_clock()) return "s, ms, week or sow beside a clock";
    if (items.has(week) != items.has(second_of_week)) return "week and sow need each other";
    if (items.has_gps() && items.has_date()) return "week and sow beside a date";
    const int counts = (items.has(seconds) ? 1 : 0) + (items.has(milliseconds) ? 1 : 0) + (items.has_gps() ? 1 : 0);
    return counts > 1 ? "more than one of s, ms and sow" : "";
}

// Takes the form apart; a refusal for letters that are no item and for one that comes again.
std::string take_apart(std::string_view text, TimeForm& form, ItemSet& items)
{
    while (!text.empty()) {
        TimeForm::Step step;
        std::size_t length = 1;
        if (is_blank(text.front()) || text.front() == 'T') {
            step.item = TimeItem::blank;
            while (length < text.size() && (is_blank(text[length]) || text[length] == 'T')) ++length;
        } else if (is_letter(text.front())) {
            const auto* const word = std::find_if(std::begin(kItems), std::end(kItems), [text](const ItemWord& known) {
                return text.starts_with(known.letters);
            });
            if (word == std::end(kItems)) return "unknown letters \"" + std::string(text) + '"';
            if (items.has(word->item)) return "an item twice: " + std::string(word->letters);
            step.item = word->item;
            items.add(word->item);
            length = word->letters.size();
        } else {
            step.character = text.front();
        }
        form.steps.push_back(step);
        text.remove_prefix(length);
    }
    return {};
}

// Which items end at a separator, and which one may have decimals.
void note_what_follows(TimeForm& form, const ItemSet& items)
{
    const TimeItem smallest = items.has(TimeItem::second)   ? TimeItem::second
                              : items.has(TimeItem::minute) ? TimeItem::minute
                                                            : TimeItem::hour;
    for (std::size_t at = 0; at < form.steps.size(); ++at) {
        TimeForm::Step& step = form.steps[at];
        const TimeForm::Step* const next = at + 1 < form.steps.size() ? &form.steps[at + 1] : nullptr;
        const bool is_separated = next == nullptr || next->item == TimeItem::blank ||
                                  (next->item == TimeItem::character && !is_digit(next->character));
        const bool has_point = next != nullptr && next->character == '.';
        step.takes_fewer = is_separated && step.item != TimeItem::year && step.item != TimeItem::short_year;
        step.takes_fraction = is_separated && !has_point && (step.item == smallest || is_count_item(step.item)) &&
                              step.item != TimeItem::week;
    }
}

// A run of digits and the decimals behind them.
struct Digits {
    std::uint64_t whole = 0;
    std::size_t whole_digits = 0;
    std::uint64_t fraction = 0;
    std::uint64_t fraction_scale = 1; // a power of ten: fraction / fraction_scale
    bool has_more = false;            // digits other than 0 behind those of `fraction`

    bool is_whole() const { return fraction == 0 && !has_more; }
};

constexpr std::size_t kMostFractionDigits = 11; // with the units of an hour they stay within 64 bits

// Takes at most `most` digits, and decimals where they are wanted.
Digits take_digits(const char*& at, const char* end, std::size_t most, bool with_fraction)
{
    Digits digits;
    for (; at != end && is_digit(*at) && digits.whole_digits < most; ++at, ++digits.whole_digits) {
        digits.whole = digits.whole * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    if (!with_fraction || digits.whole_digits == 0 || at == end || *at != '.') return digits;
    std::size_t count = 0;
    for (++at; at != end && is_digit(*at); ++at, ++count) {
        if (count < kMostFractionDigits) {
            digits.fraction = digits.fraction * 10 + static_cast<std::uint64_t>(*at - '0');
            digits.fraction_scale *= 10;
        } else {
            digits.has_more |= *at != '0';
        }
    }
    return digits;
}

// whole and fraction in time units, halves to even. unit: of one whole, an even count.
std::int64_t units_of(const Digits& digits, std::int64_t unit)
{
    const std::uint64_t product = digits.fraction * static_cast<std::uint64_t>(unit);
    const std::uint64_t rest = product % digits.fraction_scale;
    std::uint64_t count = product / digits.fraction_scale;
    const bool above_half = 2 * rest > digits.fraction_scale || (2 * rest == digits.fraction_scale && digits.has_more);
    const bool is_half = 2 * rest == digits.fraction_scale;
    if (above_half || (is_half && count % 2 == 1)) ++count;
    return static_cast<std::int64_t>(digits.whole) * unit + static_cast<std::int64_t>(count);
}

// What has been read of a text so far.
struct Parts {
    CivilDate date;
    int day_of_year = 0; // 0: the date has its month and day
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    bool is_midnight = true; // but for the hours, nothing but zeros in the clock
    std::int64_t week = 0;
    std::int64_t clock = 0;
};

std::size_t most_digits_of(TimeItem item)
{
    switch (item) {
    case TimeItem::year: return 4;
    case TimeItem::day_of_year: return 3;
    case TimeItem::week: return 5;
    case TimeItem::second_of_week: return 6;
    case TimeItem::seconds:
    case TimeItem::milliseconds: return 14;
    default: return 2;
    }
}

bool take_month_name(const char*& at, const char* end, CivilDate& date)
{
    if (end - at < 3) return false;
    const auto* const month = std::find(kMonths.begin(), kMonths.end(), upper_case(std::string_view(at, 3)));
    if (month == kMonths.end()) return false;
    date.month = static_cast<int>(month - kMonths.begin()) + 1;
    at += 3;
    return true;
}

// Notes what an item says; false when it is out of range.
bool take_value(TimeItem item, const Digits& digits, Parts& parts)
{
    const auto whole = static_cast<std::int64_t>(digits.whole);
    const int number = static_cast<int>(std::min<std::int64_t>(whole, 1'000'000));
    switch (item) {
    case TimeItem::year: parts.date.year = number; return number >= 1;
    case TimeItem::short_year: parts.date.year = number < 80 ? 2000 + number : 1900 + number; return true;
    case TimeItem::month: parts.date.month = number; return true; // judged with the whole date
    case TimeItem::day: parts.date.day = number; return true;
    case TimeItem::day_of_year: parts.day_of_year = number; return number >= 1;
    case TimeItem::hour:
        parts.clock += units_of(digits, kUnitsPerHour);
        parts.hours = whole;
        parts.is_midnight &= digits.is_whole();
        return whole <= 24;
    case TimeItem::minute:
        parts.clock += units_of(digits, kUnitsPerMinute);
        parts.is_midnight &= whole == 0 && digits.is_whole();
        return whole < 60;
    case TimeItem::second:
        parts.clock += units_of(digits, kTimeUnitsPerSecond);
        parts.is_midnight &= whole == 0 && digits.is_whole();
        return whole < 61;
    case TimeItem::seconds:
    case TimeItem::second_of_week: parts.clock = units_of(digits, kTimeUnitsPerSecond); return true;
    case TimeItem::milliseconds: parts.clock = units_of(digits, kUnitsPerMillisecond); return true;
    case TimeItem::week: parts.week = whole; return true;
    default: return true;
    }
}

bool take_step(const TimeForm::Step& step, const char*& at, const char* end, Parts& parts)
{
    if (step.item == TimeItem::character) {
        if (at == end || *at != step.character) return false;
        ++at;
        return true;
    }
    if (step.item == TimeItem::blank) {
        const char* const begin = at;
        while (at != end && is_blank(*at)) ++at;
        if (at == begin && at != end && *at == 'T') ++at;
        return at != begin;
    }
    if (step.item == TimeItem::month_name) return take_month_name(at, end, parts.date);
    const std::size_t most = most_digits_of(step.item);
    const Digits digits = take_digits(at, end, most, step.takes_fraction);
    const std::size_t least = step.takes_fewer || is_count_item(step.item) ? 1 : most;
    return digits.whole_digits >= least && take_value(step.item, digits, parts);
}

int two_digits(std::string_view text)
{
    if (text.size() < 2 || !is_digit(text[0]) || !is_digit(text[1])) return INT32_MAX;
    return (text[0] - '0') * 10 + (text[1] - '0');
}

// How far the zone at the end of a text is ahead of UTC; nullopt when the rest is no zone. Nothing is UTC.
std::optional<std::int64_t> zone_of(std::string_view rest)
{
    if (rest.empty() || rest == "Z") return 0;
    if (rest.front() != '+' && rest.front() != '-') return std::nullopt;
    const std::int64_t sign = rest.front() == '-' ? -1 : 1;
    rest.remove_prefix(1);
    const int hours = two_digits(rest);
    int minutes = 0;
    if (rest.size() == 5 && rest[2] == ':') {
        minutes = two_digits(rest.substr(3));
    } else if (rest.size() == 4) {
        minutes = two_digits(rest.substr(2));
    } else if (rest.size() != 2) {
        return std::nullopt;
    }
    if (hours > 23 || minutes > 59) return std::nullopt;
    return sign * (hours * kUnitsPerHour + minutes * kUnitsPerMinute);
}

// The day of what was read; nullopt for one that the calendar does not have.
std::optional<std::int64_t> day_of(const Parts& parts)
{
    if (parts.day_of_year == 0) {
        return is_date(parts.date) ? std::optional(days_since_1970(parts.date)) : std::nullopt;
    }
    if (parts.day_of_year > (is_leap_year(parts.date.year) ? 366 : 365)) return std::nullopt;
    return days_since_1970({parts.date.year, 1, 1}) + parts.day_of_year - 1;
}

std::optional<WrittenTime> gps_time(const Parts& parts)
{
    constexpr std::int64_t kSecondsPerWeek = 7 * 86400;
    if (parts.clock >= kSecondsPerWeek * kTimeUnitsPerSecond) return std::nullopt;
    const std::int64_t since_1970 = gps_clock_of_week(parts.week) + parts.clock / kTimeUnitsPerSecond;
    WrittenTime written;
    written.day = gps_clock_of_week(parts.week) / 86400;
    written.clock = parts.clock - leap_seconds_of_gps_clock(since_1970) * kTimeUnitsPerSecond;
    return written;
}

// A count by itself may have a sign and an exponent, like every number. Seconds are those of the plain form to the bit.
std::optional<WrittenTime> read_count(TimeItem item, std::string_view text)
{
    const char* at = text.data();
    const char* const end = at + text.size();
    WrittenTime written;
    if (item == TimeItem::milliseconds) {
        const Digits digits = take_digits(at, end, most_digits_of(item), true);
        if (digits.whole_digits > 0 && at == end) {
            written.clock = units_of(digits, kUnitsPerMillisecond);
            return written;
        }
    }
    const std::optional<double> number = numeric_value(text);
    if (!number) return std::nullopt;
    const auto unit = static_cast<double>(item == TimeItem::milliseconds ? kUnitsPerMillisecond : kTimeUnitsPerSecond);
    const double count = std::nearbyint(*number * unit);
    if (!(count >= -0x1p61 && count < 0x1p61)) return std::nullopt;
    written.clock = static_cast<std::int64_t>(count);
    return written;
}

// Held at the bounds of the count.
std::int64_t held_sum(std::int64_t one, std::int64_t other)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (other > 0 && one > Limits::max() - other) return Limits::max();
    if (other < 0 && one < Limits::min() - other) return Limits::min();
    return one + other;
}

} // namespace

TimeFormReading compile_time_form(std::string_view text, const CivilDate& survey_date, double offset)
{
    constexpr double kLargestOffset = 1e14; // seconds; more than any time has
    TimeFormReading reading;
    TimeForm form;
    ItemSet items;
    reading.refusal = take_apart(trimmed(text), form, items);
    if (reading.refusal.empty()) reading.refusal = refusal_of(items);
    if (!reading.refusal.empty()) return reading;
    note_what_follows(form, items);
    form.has_date = items.has_date() || items.has_gps();
    form.is_gps = items.has_gps();
    form.is_count = !form.has_date && items.has_count();
    form.may_have_zone = !items.has_count();
    form.survey_date = survey_date;
    form.time_offset = static_cast<std::int64_t>(
        std::nearbyint(std::clamp(offset, -kLargestOffset, kLargestOffset) * static_cast<double>(kTimeUnitsPerSecond)));
    reading.form = std::move(form);
    return reading;
}

std::optional<WrittenTime> read_time(const TimeForm& form, std::string_view text)
{
    text = trimmed(text);
    if (form.is_count && form.steps.size() == 1) return read_count(form.steps.front().item, text);
    Parts parts;
    parts.date.year = form.survey_date.year;
    const char* at = text.data();
    const char* const end = at + text.size();
    for (const TimeForm::Step& step : form.steps) {
        if (!take_step(step, at, end, parts)) return std::nullopt;
    }
    if (parts.hours == 24 && !parts.is_midnight) return std::nullopt;
    const std::string_view rest = trimmed(std::string_view(at, static_cast<std::size_t>(end - at)));
    const std::optional<std::int64_t> zone = form.may_have_zone ? zone_of(rest) : std::nullopt;
    if (!zone && !rest.empty()) return std::nullopt;
    if (form.is_gps) return gps_time(parts);

    WrittenTime written;
    written.clock = parts.clock;
    written.zone = zone.value_or(0);
    if (form.has_date) {
        const std::optional<std::int64_t> day = day_of(parts);
        if (!day) return std::nullopt;
        written.day = *day;
    }
    return written;
}

std::int64_t time_of(const TimeForm& form, const WrittenTime& written, RunningDay& running)
{
    if (form.has_date) {
        return held_sum(written.day * kTimeUnitsPerDay + written.clock - written.zone, form.time_offset);
    }
    if (form.days_run_on()) {
        constexpr std::int64_t kFallOfANewDay = 12 * kUnitsPerHour;
        const bool has_last = running.last_clock != INT64_MIN;
        if (has_last && running.last_clock - written.clock > kFallOfANewDay) ++running.days;
        running.last_clock = written.clock;
    }
    const std::int64_t midnight = (days_since_1970(form.survey_date) + running.days) * kTimeUnitsPerDay;
    return held_sum(held_sum(midnight, written.clock - written.zone), form.time_offset);
}

} // namespace tarvo

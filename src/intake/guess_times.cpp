#include "intake/guess_times.h"

#include "definitions/field_slots.h"
#include "intake/guess_names.h"
#include "text/leap_seconds.h"
#include "text/numbers.h"
#include "text/time_form.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr const char* kDateForms[] = {
    "YYYY-MM-DD", "YYYY/MM/DD", "YYYY.MM.DD", "DD-MMM-YYYY", "DD/MMM/YYYY", "DD.MMM.YYYY", "DD MMM YYYY", "DD-MMM-YY",
    "DD/MMM/YY",  "DDMMMYYYY",  "DDMMMYY",    "MMM DD YYYY", "YYYY-DDD",    "YYYY/DDD",    "DD.MM.YYYY",  "MM.DD.YYYY",
    "DD/MM/YYYY", "MM/DD/YYYY", "DD-MM-YYYY", "MM-DD-YYYY",  "DD.MM.YY",    "MM.DD.YY",    "YY.MM.DD",    "DD/MM/YY",
    "MM/DD/YY",   "YY/MM/DD",   "DD-MM-YY",   "MM-DD-YY",    "YY-MM-DD"};
constexpr const char* kCompactDateForms[] = {"YYYYMMDD", "YYYYDDD"}; // numbers: only where the name speaks of a date

// The forms that fit a column, and whether they say the same.
struct FormChoice {
    std::string form;  // empty: none fits
    std::string other; // another one that fits and gives other days; empty: none
    std::string text;  // that both fit
};

// Whether two forms that fit every text give one time for each.
std::string first_difference(const TimeForm& one, const TimeForm& other, const std::vector<std::string_view>& texts)
{
    for (const std::string_view text : texts) {
        const std::optional<WrittenTime> first = read_time(one, text);
        const std::optional<WrittenTime> second = read_time(other, text);
        if (first && second && (first->day != second->day || first->clock != second->clock)) return std::string(text);
    }
    return {};
}

// A date alone has no zone: "2020-09-28" is no day 9 of the year in a zone.
bool fits(const TimeForm& form, std::string_view text)
{
    const std::optional<WrittenTime> written = read_time(form, text);
    const bool has_clock = std::any_of(form.steps.begin(), form.steps.end(),
                                       [](const TimeForm::Step& step) { return step.item == TimeItem::hour; });
    return written && (has_clock || written->zone == 0);
}

std::size_t fitting_texts(const TimeForm& form, const std::vector<std::string_view>& texts)
{
    return static_cast<std::size_t>(std::count_if(
        texts.begin(), texts.end(), [&form](std::string_view text) { return !text.empty() && fits(form, text); }));
}

// Whether a form fits one of the first texts: most forms are done with then.
bool fits_at_first(const TimeForm& form, const std::vector<std::string_view>& texts)
{
    constexpr int kFirstTexts = 20;
    int seen = 0;
    for (const std::string_view text : texts) {
        if (text.empty()) continue;
        if (fits(form, text)) return true;
        if (++seen == kFirstTexts) return false;
    }
    return false;
}

// The first of the forms that fits most of the texts, at least four in five of those that are there.
FormChoice choose_form(const std::vector<std::string>& forms, const std::vector<std::string_view>& texts)
{
    const auto filled = static_cast<std::size_t>(
        std::count_if(texts.begin(), texts.end(), [](std::string_view text) { return !text.empty(); }));
    std::size_t most = 0;
    std::vector<std::string> best;
    for (const std::string& form : forms) {
        const TimeForm compiled = *compile_time_form(form).form;
        if (!fits_at_first(compiled, texts)) continue;
        const std::size_t fitting = fitting_texts(compiled, texts);
        if (fitting == 0 || 5 * fitting < 4 * filled || fitting < most) continue;
        if (fitting > most) best.clear();
        most = fitting;
        best.push_back(form);
    }
    FormChoice choice;
    if (best.empty()) return choice;
    choice.form = best.front();
    for (std::size_t other = 1; other < best.size() && choice.other.empty(); ++other) {
        choice.text =
            first_difference(*compile_time_form(choice.form).form, *compile_time_form(best[other]).form, texts);
        if (!choice.text.empty()) choice.other = best[other];
    }
    return choice;
}

// Plain numbers are no dates with something between their parts.
bool are_plain_numbers(const GuessColumn& column)
{
    return column.filled > 0 && column.numbers.size() == column.filled && !column.has_units;
}

std::vector<std::string> date_forms(const GuessColumn& column)
{
    std::vector<std::string> forms;
    if (!are_plain_numbers(column)) forms.assign(std::begin(kDateForms), std::end(kDateForms));
    if (has_word(column.words, "DATE") || has_word(column.words, "YYYYMMDD")) {
        forms.insert(forms.end(), std::begin(kCompactDateForms), std::end(kCompactDateForms));
    }
    return forms;
}

std::vector<std::string> date_and_clock_forms(const GuessColumn& column)
{
    if (are_plain_numbers(column)) return {"YYYYMMDDhhmmss"};
    std::vector<std::string> forms;
    for (const char* const between : {" ", "-", "_", "/", ":"}) {
        for (const std::string date : kDateForms) {
            for (const char* const clock : {"hh:mm:ss", "hh:mm"}) forms.push_back(date + between + clock);
        }
    }
    for (const char* const form :
         {"YYYYMMDD hh:mm:ss", "YYYYMMDD hhmmss", "YYYYMMDDhhmmss", "hh:mm:ss DD/MM/YYYY", "hh:mm:ss MM/DD/YYYY",
          "hh:mm:ss DD.MM.YYYY", "hh:mm:ss YYYY-MM-DD", "hh:mm:ss YYYY/MM/DD"}) {
        forms.emplace_back(form);
    }
    return forms;
}

// Digits alone are a clock when a name, a leading zero or a value beyond the seconds of a day says so.
bool are_clock_digits(const GuessColumn& column)
{
    if (has_word(column.words, "HHMMSS") || has_word(column.words, "HHMM")) return true;
    const bool has_leading_zero = std::any_of(column.texts.begin(), column.texts.end(), [](std::string_view text) {
        return text.size() >= 6 && text[0] == '0' && text.find('.') != 1;
    });
    return has_leading_zero || column.highest() >= 86401;
}

std::vector<std::string> clock_forms(const GuessColumn& column)
{
    std::vector<std::string> forms = {"hh:mm:ss", "hh:mm"};
    const bool is_named = has_word(column.words, "TIME") || has_word(column.words, "UTC") ||
                          has_word(column.words, "CLOCK") || has_word(column.words, "HHMMSS");
    if (is_named && are_clock_digits(column)) forms.emplace_back("hhmmss");
    if (has_word(column.words, "HHMM")) forms.emplace_back("hhmm");
    return forms;
}

bool counts_milliseconds(const GuessColumn& column)
{
    return has_word(column.words, "MS") || has_word(column.words, "MSEC") || has_word(column.words, "MILLISECONDS");
}

// Seconds go on: they are no clock digits, do not stand still, and hardly ever fall.
bool can_be_seconds(const GuessColumn& column)
{
    if (!column.can_be_named || !column.is_numeric() || column.has_units) return false;
    if (column.is_constant() || column.is_mostly_zero() || counts_milliseconds(column)) return false;
    std::size_t falls = 0;
    for (std::size_t at = 1; at < column.numbers.size(); ++at)
        falls += column.numbers[at] < column.numbers[at - 1] ? 1 : 0;
    if (5 * falls > column.numbers.size()) return false;
    return !are_clock_digits(column) || choose_form({"hhmmss"}, column.texts).form.empty();
}

std::optional<std::size_t> column_called(const std::vector<GuessColumn>& columns,
                                         const std::vector<std::string_view>& names, bool (*can_be)(const GuessColumn&))
{
    for (const auto fits : {is_called, mentions}) {
        for (const std::string_view name : names) {
            for (std::size_t column = 0; column < columns.size(); ++column) {
                if (can_be(columns[column]) && fits(columns[column].words, words_of(name))) return column;
            }
        }
    }
    return std::nullopt;
}

// A clock in UTC before one of GPS before any other; local time last.
int clock_merit(const GuessColumn& column)
{
    if (has_word(column.words, "LOCAL")) return 0;
    if (has_word(column.words, "UTC")) return 4;
    if (has_word(column.words, "GPST") || has_word(column.words, "GPS")) return 3;
    return has_word(column.words, "TIME") || has_word(column.words, "CLOCK") ? 2 : 1;
}

struct DatedColumn {
    std::size_t column = 0;
    FormChoice choice;
};

// The columns that one of the forms fits, the one of most merit first.
std::vector<DatedColumn> columns_in_form(const std::vector<GuessColumn>& columns,
                                         std::vector<std::string> (*forms_of)(const GuessColumn&))
{
    std::vector<DatedColumn> found;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (!columns[column].can_be_named) continue;
        const FormChoice choice = choose_form(forms_of(columns[column]), columns[column].texts);
        if (!choice.form.empty()) found.push_back({column, choice});
    }
    std::stable_sort(found.begin(), found.end(), [&columns](const DatedColumn& one, const DatedColumn& other) {
        return clock_merit(columns[one.column]) > clock_merit(columns[other.column]);
    });
    return found;
}

std::string either_text(const FormChoice& choice)
{
    return choice.other.empty() ? std::string()
                                : "\"" + choice.text + "\" could be " + choice.form + " or " + choice.other +
                                      ": day and month could be either";
}

// GPS time runs ahead of UTC by the leap seconds of its day.
double offset_of_clock(const GuessColumn& clock, const TimeForm& form, std::string_view text)
{
    constexpr int kLeapSecondsNow = 18;
    if (!has_word(clock.words, "GPST")) return 0;
    const std::optional<WrittenTime> written = read_time(form, text);
    if (!form.has_date || !written) return -kLeapSecondsNow;
    return -leap_seconds_of_gps_clock(written->day * 86400 + written->clock / kTimeUnitsPerSecond);
}

std::string first_text(const GuessColumn& column)
{
    const auto found =
        std::find_if(column.texts.begin(), column.texts.end(), [](std::string_view text) { return !text.empty(); });
    return found == column.texts.end() ? std::string() : std::string(*found);
}

std::optional<TimeGuess> guess_seconds(const std::vector<GuessColumn>& columns)
{
    const std::optional<std::size_t> column = column_called(columns, names_of_slot(kTime), can_be_seconds);
    if (!column) return std::nullopt;
    TimeGuess guess;
    guess.columns = {*column};
    guess.reason = "named like a time, and numbers";
    return guess;
}

std::optional<TimeGuess> guess_date_and_clock(const std::vector<GuessColumn>& columns)
{
    const auto joint = columns_in_form(columns, date_and_clock_forms);
    TimeGuess guess;
    if (!joint.empty()) {
        const DatedColumn& found = joint.front();
        guess.columns = {found.column};
        guess.form = found.choice.form;
        guess.open = either_text(found.choice);
        guess.reason = "dates and clocks in one field";
        guess.offset = offset_of_clock(columns[found.column], *compile_time_form(guess.form).form,
                                       first_text(columns[found.column]));
        return guess;
    }
    const auto dates = columns_in_form(columns, date_forms);
    const auto clocks = columns_in_form(columns, clock_forms);
    if (clocks.empty()) return std::nullopt;
    const DatedColumn& clock = clocks.front();
    if (dates.empty()) {
        guess.columns = {clock.column};
        guess.form = clock.choice.form;
        guess.reason = "clocks without a date";
    } else {
        guess.columns = {dates.front().column, clock.column};
        guess.form = dates.front().choice.form + " " + clock.choice.form;
        guess.open = either_text(dates.front().choice);
        guess.reason = "a date and a clock";
    }
    guess.offset = offset_of_clock(columns[clock.column], *compile_time_form(guess.form).form,
                                   dates.empty() ? first_text(columns[clock.column])
                                                 : first_text(columns[dates.front().column]) + " " +
                                                       first_text(columns[clock.column]));
    return guess;
}

std::optional<TimeGuess> guess_gps_week(const std::vector<GuessColumn>& columns)
{
    const auto can_be = [](const GuessColumn& column) { return column.can_be_named && column.is_numeric(); };
    const auto week = column_called(columns, {"WEEK", "GPS WEEK"}, can_be);
    const auto second = column_called(columns, {"SOW", "TOW", "GPS SOW", "GPS TOW", "SECONDS OF WEEK"}, can_be);
    if (!week || !second || *week == *second) return std::nullopt;
    TimeGuess guess;
    guess.columns = {*week, *second};
    guess.form = "week sow";
    guess.reason = "a GPS week and its seconds";
    return guess;
}

std::optional<TimeGuess> guess_milliseconds(const std::vector<GuessColumn>& columns)
{
    const auto can_be = [](const GuessColumn& column) {
        return column.can_be_named && column.is_numeric() && counts_milliseconds(column) && !column.is_constant();
    };
    std::optional<std::size_t> column = column_called(columns, names_of_slot(kTime), can_be);
    if (!column) column = column_called(columns, {"MS", "MSEC", "MILLISECONDS"}, can_be);
    if (!column) return std::nullopt;
    TimeGuess guess;
    guess.columns = {*column};
    guess.form = "ms";
    guess.reason = "a count of milliseconds";
    return guess;
}

std::optional<TimeGuess> guess_fiducial(const std::vector<GuessColumn>& columns)
{
    const std::optional<std::size_t> column = column_called(columns, {"FID", "FIDUCIAL"}, can_be_seconds);
    if (!column) return std::nullopt;
    TimeGuess guess;
    guess.columns = {*column};
    guess.reason = "a fiducial that goes on, taken for seconds";
    return guess;
}

} // namespace

std::optional<TimeGuess> guess_time(const std::vector<GuessColumn>& columns)
{
    for (const auto guess_one :
         {guess_seconds, guess_date_and_clock, guess_gps_week, guess_milliseconds, guess_fiducial}) {
        if (std::optional<TimeGuess> guess = guess_one(columns)) return guess;
    }
    return std::nullopt;
}

} // namespace tarvo

#include "definitions/data_format.h"

#include "text/numbers.h"
#include "text/time_form.h"
#include "text/tokens.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tarvo {

namespace {

constexpr std::array<std::string_view, 5> kSeparatorWords = {"any", "comma", "semicolon", "tab", "blank"};
constexpr std::array<std::string_view, 2> kNamesWords = {"line", "none"};
constexpr std::array<std::string_view, 3> kPositionWords = {"grid", "degrees", "NMEA"};
constexpr int kDecimals = 3;

// Why a value was refused: what was expected in its place. nullopt: it was taken.
using Refusal = std::optional<std::string>;

// One row of the block: how a value is written (empty: the default) and how it is read (empty: the default).
struct Key {
    std::string_view name;
    std::string_view help;
    std::span<const std::string_view> choices;
    std::string (*text)(const DataFormat& format, NumberText number_text);
    Refusal (*take)(DataFormat& format, std::string_view value);
};

std::string word_text(std::span<const std::string_view> words, std::size_t chosen)
{
    return chosen == 0 ? std::string() : std::string(words[chosen]);
}

// The place of a fixed word, in any case, the first for an empty text; nullopt when it is none of them.
std::optional<std::size_t> place_of_word(std::span<const std::string_view> words, std::string_view value)
{
    if (value.empty()) return 0;
    for (std::size_t word = 0; word < words.size(); ++word) {
        if (upper_case(words[word]) == upper_case(value)) return word;
    }
    return std::nullopt;
}

Refusal one_of(std::span<const std::string_view> words)
{
    std::string expected;
    for (std::size_t word = 0; word < words.size(); ++word) {
        if (word > 0) expected += word + 1 == words.size() ? " or " : ", ";
        expected += words[word];
    }
    return expected;
}

std::string number_or_nothing(double value, NumberText number_text)
{
    return value == 0 ? std::string() : number_text(value, kDecimals);
}

Refusal take_number(double& into, std::string_view value, double lowest, const char* expected)
{
    const std::optional<double> number = value.empty() ? 0.0 : numeric_value(value);
    if (!number || *number < lowest) return expected;
    into = *number;
    return std::nullopt;
}

Refusal take_separator(DataFormat& format, std::string_view value)
{
    const std::optional<std::size_t> place = place_of_word(kSeparatorWords, value);
    if (!place) return one_of(kSeparatorWords);
    format.separator = static_cast<Separator>(*place);
    return std::nullopt;
}

Refusal take_names(DataFormat& format, std::string_view value)
{
    const std::optional<std::size_t> place = place_of_word(kNamesWords, value);
    if (!place) return one_of(kNamesWords);
    format.names_in_line = *place == 0;
    return std::nullopt;
}

Refusal take_time_columns(DataFormat& format, std::string_view value)
{
    std::optional<std::vector<std::string>> names;
    names = value.empty() ? std::vector<std::string>() : time_columns_of(value);
    if (!names) return "one to three column names between commas";
    format.time_columns = std::move(*names);
    return std::nullopt;
}

Refusal take_time_form(DataFormat& format, std::string_view value)
{
    const std::string form = value.empty() ? DataFormat().time_form : std::string(value);
    const std::string refusal = compile_time_form(form).refusal;
    if (!refusal.empty()) return "a form such as YYYY/MM/DD hh:mm:ss (" + refusal + ")";
    format.time_form = form;
    return std::nullopt;
}

Refusal take_time_offset(DataFormat& format, std::string_view value)
{
    return take_number(format.time_offset, value, std::numeric_limits<double>::lowest(), "a number of seconds");
}

Refusal take_survey_date(DataFormat& format, std::string_view value)
{
    const std::optional<CivilDate> date = value.empty() ? CivilDate() : read_civil_date(value);
    if (!date) return "a date as YYYY-MM-DD";
    format.survey_date = *date;
    return std::nullopt;
}

std::string survey_date_text(const DataFormat& format, NumberText)
{
    return format.survey_date == CivilDate() ? std::string() : civil_date_text(format.survey_date);
}

Refusal take_position_form(DataFormat& format, std::string_view value)
{
    const std::optional<std::size_t> place = place_of_word(kPositionWords, value);
    if (!place) return one_of(kPositionWords);
    format.position_form = static_cast<PositionForm>(*place);
    return std::nullopt;
}

Refusal take_survey_grid(DataFormat& format, std::string_view value)
{
    format.survey_grid = value;
    return std::nullopt;
}

Refusal take_null_texts(DataFormat& format, std::string_view value)
{
    format.null_texts.clear();
    while (!value.empty()) {
        const std::size_t end = std::min(value.find_first_of(" \t"), value.size());
        format.null_texts.emplace_back(value.substr(0, end));
        value = trimmed(value.substr(end));
    }
    return std::nullopt;
}

std::string null_texts_text(const DataFormat& format, NumberText)
{
    std::string text;
    for (const std::string& null_text : format.null_texts) text += (text.empty() ? "" : " ") + null_text;
    return text;
}

Refusal take_valid_column(DataFormat& format, std::string_view value)
{
    format.valid_column = value;
    return std::nullopt;
}

Refusal take_layback(DataFormat& format, std::string_view value)
{
    return take_number(format.layback, value, 0, "a number of metres of at least 0");
}

Refusal take_latency(DataFormat& format, std::string_view value)
{
    return take_number(format.latency, value, 0, "a number of seconds of at least 0");
}

constexpr Key kKeys[] = {
    {"Separator",
     "What stands between two fields. \"any\" takes blanks, TABs, commas, semicolons and apostrophes alike; a named "
     "one "
     "is the only one, so that names and fields may hold all the others.",
     kSeparatorWords,
     [](const DataFormat& f, NumberText) { return word_text(kSeparatorWords, static_cast<std::size_t>(f.separator)); },
     take_separator},
    {"Names",
     "\"line\": the header line names the columns. \"none\": the data begin at that line, and the columns are called "
     "1, 2, and so on.",
     kNamesWords, [](const DataFormat& f, NumberText) { return word_text(kNamesWords, f.names_in_line ? 0 : 1); },
     take_names},
    {"Time Columns",
     "Up to three columns that hold the time together, between commas, such as Date, Time. Empty: the Time column.",
     {},
     [](const DataFormat& f, NumberText) { return time_columns_text(f.time_columns); },
     take_time_columns},
    {"Time Form",
     "How the time is written: YYYY YY MM MMM DD DDD hh mm ss with what stands between them (a decimal fraction needs "
     "no letters), or s, ms, or week sow. Example: YYYY/MM/DD hh:mm:ss",
     {},
     [](const DataFormat& f, NumberText) { return f.time_form == DataFormat().time_form ? "" : f.time_form; },
     take_time_form},
    {"Time Offset (s)",
     "Seconds added to every time, such as -18 where a receiver wrote GPS time.",
     {},
     [](const DataFormat& f, NumberText number_text) { return number_or_nothing(f.time_offset, number_text); },
     take_time_offset},
    {"Survey Date",
     "The day of the first time, as YYYY-MM-DD, where the times hold no date.",
     {},
     survey_date_text,
     take_survey_date},
    {"Position Form",
     "\"grid\": metres. \"degrees\": longitude and latitude, decimal or with minutes and seconds. \"NMEA\": dddmm.mmmm "
     "with N, S, E or W.",
     kPositionWords,
     [](const DataFormat& f, NumberText) {
         return word_text(kPositionWords, static_cast<std::size_t>(f.position_form));
     },
     take_position_form},
    {"Survey Grid",
     "The grid that the survey is shown and kept in: UTM with zone and hemisphere (UTM 35N), or a code such as "
     "EPSG:32635. Degrees become its metres.",
     {},
     [](const DataFormat& f, NumberText) { return f.survey_grid; },
     take_survey_grid},
    {"Null Texts",
     "What the logger writes for nothing, between blanks, such as -9999.99 *",
     {},
     null_texts_text,
     take_null_texts},
    {"Valid Column",
     "A column that says whether the sensors' values hold: where it is 0 or empty they are left out.",
     {},
     [](const DataFormat& f, NumberText) { return f.valid_column; },
     take_valid_column},
    {"Layback (m)",
     "How far behind the position the fish lies, along the way it came.",
     {},
     [](const DataFormat& f, NumberText number_text) { return number_or_nothing(f.layback, number_text); },
     take_layback},
    {"Latency (s)",
     "How much older than the time of their line the sensors' values are.",
     {},
     [](const DataFormat& f, NumberText number_text) { return number_or_nothing(f.latency, number_text); },
     take_latency},
};

const Key* key_named(std::string_view name)
{
    const auto* const found = std::find_if(std::begin(kKeys), std::end(kKeys), [name](const Key& key) {
        return upper_case(key.name) == upper_case(trimmed(name));
    });
    return found == std::end(kKeys) ? nullptr : found;
}

// Takes one name off the text, with the comma behind it. nullopt for an empty name and for one whose quote stays open.
std::optional<std::string> next_name(std::string_view& text)
{
    std::string name;
    if (text.starts_with('"')) {
        std::size_t at = 1;
        for (;; ++at) {
            if (at == text.size()) return std::nullopt;
            if (text[at] == '"' && !text.substr(at + 1).starts_with('"')) break;
            if (text[at] == '"') ++at;
            name += text[at];
        }
        text.remove_prefix(at + 1);
    }
    const std::size_t comma = std::min(text.find(','), text.size());
    name += text.substr(0, comma);
    text.remove_prefix(std::min(comma + 1, text.size()));
    name = trimmed(name);
    return name.empty() ? std::nullopt : std::optional(name);
}

} // namespace

std::vector<DataFormatKey> data_format_keys()
{
    std::vector<DataFormatKey> keys;
    for (const Key& key : kKeys) keys.push_back({key.name, key.help, {key.choices.begin(), key.choices.end()}});
    return keys;
}

std::string data_format_value(const DataFormat& format, std::string_view key, NumberText number_text)
{
    const Key* const found = key_named(key);
    return found == nullptr ? std::string() : found->text(format, number_text);
}

KeyTaking set_data_format_value(DataFormat& format, std::string_view key, std::string_view value)
{
    const Key* const found = key_named(key);
    if (found == nullptr) return {KeyOutcome::unknown_key, {}, {}};
    KeyTaking taking{KeyOutcome::taken, std::string(found->name), {}};
    if (const Refusal expected = found->take(format, trimmed(value))) {
        taking.outcome = KeyOutcome::bad_value;
        taking.expected = *expected;
    }
    return taking;
}

KeyTaking take_data_format_line(DataFormat& format, std::string_view line)
{
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return {KeyOutcome::unknown_key, {}, {}};
    return set_data_format_value(format, line.substr(0, colon), line.substr(colon + 1));
}

std::vector<std::string> data_format_lines(const DataFormat& format, std::string_view time_slot_name,
                                           NumberText number_text)
{
    DataFormat written = format;
    if (written.time_columns.size() == 1 && upper_case(written.time_columns[0]) == upper_case(time_slot_name)) {
        written.time_columns.clear();
    }
    std::vector<std::string> lines;
    for (const Key& key : kKeys) {
        const std::string value = key.text(written, number_text);
        if (!value.empty()) lines.push_back(std::string(key.name) + " : " + value);
    }
    lines.insert(lines.end(), format.unknown_lines.begin(), format.unknown_lines.end());
    return lines;
}

std::string time_columns_text(std::span<const std::string> names)
{
    std::string text;
    for (const std::string& name : names) {
        if (!text.empty()) text += ", ";
        if (name.find(',') == std::string::npos && !name.starts_with('"')) {
            text += name;
            continue;
        }
        text += '"';
        for (const char c : name) text += c == '"' ? "\"\"" : std::string(1, c);
        text += '"';
    }
    return text;
}

std::optional<std::vector<std::string>> time_columns_of(std::string_view text)
{
    std::vector<std::string> names;
    const bool ends_with_comma = trimmed(text).ends_with(',');
    for (text = trimmed(text); !text.empty(); text = trimmed(text)) {
        const std::optional<std::string> name = next_name(text);
        if (!name || names.size() == kMostTimeColumns) return std::nullopt;
        names.push_back(*name);
    }
    if (names.empty() || ends_with_comma) return std::nullopt;
    return names;
}

} // namespace tarvo

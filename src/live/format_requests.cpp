#include "live/format_requests.h"

#include "live/definition_requests.h"
#include "text/civil_date.h"
#include "text/field_splitter.h"
#include "text/numbers.h"
#include "text/time_form.h"

#include <chrono>

namespace tarvo {

namespace {

char character_of(Separator separator)
{
    switch (separator) {
    case Separator::any:
    case Separator::comma: return ',';
    case Separator::semicolon: return ';';
    case Separator::tab: return '\t';
    case Separator::blank: return ' ';
    }
    return ',';
}

// A name that would be cut, or lose what stands at its ends.
bool needs_quotes(const std::string& name, Separator separator)
{
    const bool is_cut = name.find(character_of(separator)) != std::string::npos ||
                        (separator == Separator::blank && name.find('\t') != std::string::npos);
    return name.empty() || is_cut || name.starts_with('"') || trimmed(name) != name;
}

std::string in_quotes(const std::string& name)
{
    std::string quoted = "\"";
    for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

} // namespace

std::string take_format_request(std::string_view payload, std::optional<DataFormat>& format)
{
    DataFormat taken = format.value_or(DataFormat());
    const KeyTaking taking = take_data_format_line(taken, payload);
    const std::string line = '"' + std::string(trimmed(payload)) + '"';
    if (taking.outcome == KeyOutcome::unknown_key) return line + " is ignored: no such key of the data format";
    if (taking.outcome == KeyOutcome::bad_value) return line + " is ignored: " + taking.expected + " was expected";
    format = std::move(taken);
    return {};
}

std::vector<std::string> format_requests(const SurveyDefinitions& definitions)
{
    if (!definitions.data_format) return {};
    DataFormat format = *definitions.data_format;
    format.unknown_lines.clear();
    const auto exact = [](double value, int) { return format_shortest(value); };
    std::vector<std::string> requests;
    for (const std::string& line : data_format_lines(format, definitions.fields[kTime].name, exact)) {
        requests.push_back(request_text(kDataFormat, line));
    }
    if (requests.empty()) requests.push_back(request_text(kDataFormat, "Separator : any")); // rules without a key
    return requests;
}

bool has_named_separator(const std::optional<DataFormat>& format)
{
    return format && format->separator != Separator::any;
}

std::string line_of_names(const std::vector<std::string>& names, Separator separator)
{
    std::string line;
    for (std::size_t column = 0; column < names.size(); ++column) {
        if (column > 0) line += character_of(separator);
        line += needs_quotes(names[column], separator) ? in_quotes(names[column]) : names[column];
    }
    return line;
}

HeaderColumns columns_of_line(std::string_view line, Separator separator)
{
    FieldSplitter splitter(separator);
    std::vector<std::string> names;
    for (const std::string_view name : splitter.split(without_marks(separator, line))) names.emplace_back(name);
    return HeaderColumns(std::move(names));
}

void give_clock_its_day(DataFormat& format, const CivilDate& today)
{
    const TimeFormReading compiled = compile_time_form(format.time_form);
    const bool is_clock = compiled.form && !compiled.form->has_date && !compiled.form->is_count;
    if (is_clock && format.survey_date == CivilDate()) format.survey_date = today;
}

CivilDate utc_today()
{
    const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
    return date_of_day(std::chrono::floor<std::chrono::days>(since_1970).count());
}

} // namespace tarvo

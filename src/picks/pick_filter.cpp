#include "picks/pick_filter.h"

#include "text/numbers.h"

namespace tarvo {

namespace {

bool contains_text(std::string_view text, std::string_view part)
{
    return upper_case(text).find(upper_case(trimmed(part))) != std::string::npos;
}

bool is_of_type(const std::vector<PickType>& types, std::int32_t type, std::string_view wanted)
{
    if (trimmed(wanted).empty()) return true;
    if (const std::optional<double> number = numeric_value(wanted)) return type == *number;
    return contains_text(pick_type_name(types, type), wanted);
}

bool is_on_line(const std::string& line, std::string_view wanted)
{
    return trimmed(wanted).empty() || upper_case(line) == upper_case(trimmed(wanted));
}

bool is_between(double distance, const PickFilter& filter)
{
    const std::optional<double> from = numeric_value(filter.from);
    const std::optional<double> to = numeric_value(filter.to);
    return (!from || distance >= *from) && (!to || distance <= *to);
}

} // namespace

std::string line_of_pick(const PickList& picks, std::int32_t pick, const SurveyLines& lines)
{
    const std::int32_t sample = picks.pick_sample_index[static_cast<std::size_t>(pick)];
    if (sample < 1 || !lines.has_line() || sample > lines.last_record(lines.CurrentLine)) return {};
    const std::int32_t line = line_of_record(lines, sample);
    const double number = lines.LineNumbers[line];
    return is_valid_channel(number) ? format_fixed(number, 0) : std::to_string(line);
}

std::vector<std::int32_t> filtered_picks(const PickList& picks, const SurveyLines& lines,
                                         const std::vector<PickType>& types, const PickFilter& filter,
                                         const std::vector<std::int32_t>& of)
{
    std::vector<std::int32_t> passed;
    for (const std::int32_t pick : of) {
        const auto at = static_cast<std::size_t>(pick);
        if (contains_text(picks.pick_names[at], filter.name) && is_of_type(types, picks.pick_types[at], filter.type) &&
            is_on_line(line_of_pick(picks, pick, lines), filter.line) &&
            is_between(picks.pick_locations[at][3], filter)) {
            passed.push_back(pick);
        }
    }
    return passed;
}

PickList chosen_picks(const PickList& picks, const std::vector<std::int32_t>& chosen)
{
    PickList list;
    clear_picks(list);
    for (const std::int32_t pick : chosen) append_pick(list, pick_at(picks, pick));
    return list;
}

} // namespace tarvo

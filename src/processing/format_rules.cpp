#include "processing/format_rules.h"

#include "processing/formatted_lines.h"

#include <algorithm>
#include <stdexcept>

namespace tarvo {

namespace {

std::optional<std::size_t> column_at(std::int32_t column)
{
    return column < 0 ? std::nullopt : std::optional<std::size_t>(static_cast<std::size_t>(column));
}

void add_position(FormatRules& rules, std::optional<std::size_t> x, std::optional<std::size_t> y)
{
    if (x && y) {
        rules.positions.push_back({*x, *y});
    } else if (x || y) {
        rules.lost_columns.push_back(x ? *x : *y);
    }
}

void add_positions(FormatRules& rules, const SurveyDefinitions& definitions, const FieldLocations& locations)
{
    add_position(rules, column_at(locations.column[kEast]), column_at(locations.column[kNorth]));
    const auto column_of_channel = [&](std::int32_t channel) {
        return channel < 0 ? std::nullopt : column_at(locations.sensor_column[static_cast<std::size_t>(channel)]);
    };
    for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
        const auto& slots = definitions.sensors[sensor].location_slots;
        add_position(rules, column_of_channel(slots[1]), column_of_channel(slots[2]));
    }
}

bool is_coordinate(const FormatRules& rules, std::size_t column)
{
    return std::any_of(rules.positions.begin(), rules.positions.end(),
                       [&](const PositionColumns& at) { return at.x == column || at.y == column; }) ||
           std::find(rules.lost_columns.begin(), rules.lost_columns.end(), column) != rules.lost_columns.end();
}

} // namespace

FormatRules make_format_rules(const SurveyDefinitions& definitions, const FieldLocations& locations,
                              const std::vector<bool>& wanted_fields, std::string_view names_line)
{
    FormatRules rules;
    rules.format = *definitions.data_format;
    rules.names_line = trimmed(names_line);
    for (const std::int32_t column : locations.time_columns) {
        rules.time_columns.push_back(static_cast<std::size_t>(column));
    }
    rules.valid_column = column_at(locations.valid_column);
    if (rules.format.position_form != PositionForm::grid) add_positions(rules, definitions, locations);
    rules.column_count = wanted_fields.size();
    for (std::size_t column = 0; column < wanted_fields.size(); ++column) {
        const bool is_time = locations.column[kTime] == static_cast<std::int32_t>(column);
        if (wanted_fields[column] && !is_time && !is_coordinate(rules, column)) {
            rules.number_columns.push_back(static_cast<std::uint32_t>(column));
        }
    }
    return rules;
}

std::shared_ptr<const Projection> grid_of_positions(const SurveyDefinitions& definitions,
                                                    const Projections* projections)
{
    if (!definitions.data_format || definitions.data_format->position_form == PositionForm::grid) return nullptr;
    if (definitions.data_format->survey_grid.empty()) {
        throw std::runtime_error("positions in degrees need a Survey Grid, such as \"UTM 35N\", and none is given");
    }
    if (projections == nullptr)
        throw std::runtime_error("positions in degrees cannot be read: this program was built "
                                 "without survey grids");
    return projections->open(definitions.data_format->survey_grid);
}

std::string data_format_refusal(const SurveyDefinitions& definitions, const Projections* projections)
{
    try {
        if (definitions.data_format) compiled_time_form(*definitions.data_format);
        grid_of_positions(definitions, projections);
        return {};
    } catch (const std::exception& fault) {
        return fault.what();
    }
}

} // namespace tarvo

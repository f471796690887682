#include "intake/header.h"

#include "intake/data_file.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <cmath>
#include <exception>

namespace tarvo {

namespace {

// The Time slot stands for the first of the columns that a data format names.
const std::string& name_in_header(const SurveyDefinitions& definitions, int slot)
{
    const bool by_format = slot == kTime && definitions.data_format && !definitions.data_format->time_columns.empty();
    return by_format ? definitions.data_format->time_columns.front()
                     : definitions.fields[static_cast<std::size_t>(slot)].name;
}

void locate_slots(const HeaderColumns& header_columns, SurveyDefinitions& definitions, FieldLocations& locations)
{
    for (int slot = 1; slot <= number_of_field_slots; ++slot) {
        const auto at = static_cast<std::size_t>(slot);
        FieldSlot& field = definitions.fields[at];
        const FoundColumn found = header_columns.find_column(name_in_header(definitions, slot));
        locations.column[at] = found.index - 1;
        field.field_index = 0;
        if (found.index == 0) continue;
        field.field_index = ++locations.located_field_count;
        if (field_slot(slot).kind == SlotKind::vertical) locations.depth_channels.push_back(slot);
        if (field_slot(slot).kind == SlotKind::attitude) locations.attitude_channels.push_back(slot);
    }
    locations.derived_dem = locations.has(kDepth) && locations.has(kElevation) && !locations.has(kDem);
    if (locations.derived_dem) locations.depth_channels.push_back(kDem);
}

void locate_format_columns(const HeaderColumns& header_columns, const SurveyDefinitions& definitions,
                           FieldLocations& locations)
{
    if (!definitions.data_format) return;
    for (const std::string& name : definitions.data_format->time_columns) {
        const FoundColumn found = header_columns.find_column(name);
        if (found.index > 0) locations.time_columns.push_back(found.index - 1);
    }
    if (definitions.data_format->time_columns.empty() && locations.has(kTime)) {
        locations.time_columns.push_back(locations.column[kTime]);
    }
    locations.valid_column = header_columns.find_column(definitions.data_format->valid_column).index - 1;
}

void warn_of_column(Warnings& warnings, const std::string& place, const std::string& text)
{
    warnings.push_back({WarningAbout::columns, place, text});
}

void report_missing_slots(const SurveyDefinitions& definitions, const FieldLocations& locations, Warnings& warnings)
{
    for (const FieldSlotTraits& slot : kFieldSlots) {
        if (slot.missing != nullptr && !locations.has(slot.slot)) warn_of_column(warnings, slot.name, slot.missing);
    }
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        const std::string& name = definitions.fields[slot].name;
        if (locations.column[slot] < 0 && !is_unused_name(trimmed(name))) {
            warn_of_column(warnings, name, "The field name: " + name + " was not located in the header");
        }
    }
}

// Gives a sensor column the next channel; -1 when the header does not have it.
std::int32_t locate_sensor_column(const HeaderColumns& header_columns, const std::string& name,
                                  FieldLocations& locations)
{
    const FoundColumn found = header_columns.find_column(name);
    if (found.index == 0) return -1;
    locations.sensor_column.push_back(found.index - 1);
    return locations.sensor_channel_count();
}

void locate_sensor(const HeaderColumns& header_columns, SurveyDefinitions& definitions, std::size_t number,
                   FieldLocations& locations, Warnings& warnings)
{
    SensorDefinition& sensor = definitions.sensors[number];
    const std::string title = "sensor " + std::to_string(number);
    const std::string not_located = " was not located for " + title;
    const auto warn = [&](const char* what, std::string name) {
        warn_of_column(warnings, title, name.insert(0, what).append(not_located));
    };
    sensor.column_slots.fill(-1);
    sensor.location_slots.fill(-1);
    for (std::size_t j = 1; j <= static_cast<std::size_t>(definitions.components_per_sensor); ++j) {
        const std::string& name = sensor.component_columns[j];
        sensor.column_slots[3 * j] = locate_sensor_column(header_columns, name, locations);
        if (sensor.column_slots[3 * j] < 0) {
            warn("The sensor component field ", name);
        }
    }
    if (definitions.read_sensor_location != 1) return;
    for (std::size_t axis = 1; axis <= 3; ++axis) {
        const std::string& name = sensor.coordinate_columns[axis];
        sensor.location_slots[axis] = locate_sensor_column(header_columns, name, locations);
        if (sensor.location_slots[axis] < 0) {
            warn("The sensor coordinate field ", name);
        }
    }
}

} // namespace

std::optional<int> header_line_number_of(std::string_view text)
{
    const double number = numeric_value(text).value_or(0);
    if (number < 1 || number > INT32_MAX) return std::nullopt;
    return static_cast<int>(std::nearbyint(number));
}

HeaderReading read_header_line(int mode, const std::string& file_name, int header_line_number, Operator& op)
{
    HeaderReading reading;
    try {
        auto stream = std::make_unique<LineReader>(file_name);
        std::string_view line;
        for (int number = 1; number <= header_line_number; ++number) {
            const LineReader::Outcome outcome = stream->next_line(line);
            if (outcome == LineReader::Outcome::end) {
                op.show_message("The specified file does not appear to contain any data");
                return reading;
            }
            if (outcome == LineReader::Outcome::too_long && number == header_line_number) {
                throw std::runtime_error(file_name + ", line " + std::to_string(number) +
                                         ": a header line of at most 1 MiB was expected");
            }
        }
        reading.header = line;
        if (mode == 1) reading.stream = std::move(stream);
        reading.status = 0;
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while reading the header line: ") + fault.what());
    }
    return reading;
}

HeaderColumns header_columns_of(std::string_view header_line)
{
    const std::string normalised = normalise_line(header_line);
    std::string_view text = without_comment_mark(normalised);
    std::vector<std::string> names;
    while (!text.empty()) names.emplace_back(next_token(text));
    return HeaderColumns(std::move(names));
}

std::string_view without_comment_mark(std::string_view header)
{
    for (const std::string_view mark : {"// ", "/ ", "# ", "% "}) {
        if (!header.starts_with(mark)) continue;
        const std::string_view rest = header.substr(mark.size());
        return rest.starts_with(',') || rest.starts_with(';') ? header : rest;
    }
    return header;
}

Warnings field_count_warnings(const HeaderColumns& header_columns, std::string_view first_data_line,
                              const SurveyDefinitions& definitions)
{
    if (!has_line_of_names(definitions)) return {};
    const std::size_t fields = fields_by_format(first_data_line, definitions).size();
    if (fields == static_cast<std::size_t>(header_columns.count())) return {};
    return {{WarningAbout::data, "the first data line",
             "The header names " + std::to_string(header_columns.count()) + " columns, the first data line holds " +
                 std::to_string(fields) + " fields"}};
}

ColumnLocating locate_header_fields(const HeaderColumns& header_columns, SurveyDefinitions& definitions,
                                    FieldLocations& locations)
{
    ColumnLocating located;
    try {
        locations = FieldLocations();
        locations.header_column_count = header_columns.count();
        locate_slots(header_columns, definitions, locations);
        locate_format_columns(header_columns, definitions, locations);
        report_missing_slots(definitions, locations, located.warnings);
        for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
            locate_sensor(header_columns, definitions, sensor, locations, located.warnings);
        }
        located.status = 0;
    } catch (const std::exception& fault) {
        located.fault = std::string("An error occurred while locating the data column name: ") + fault.what();
    }
    return located;
}

} // namespace tarvo

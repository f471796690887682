#include "definitions/definitions_checks.h"

#include "definitions/definitions_file.h"
#include "text/numbers.h"

#include <algorithm>
#include <stdexcept>

namespace tarvo {

namespace {

bool is_positive_number(const std::string& text)
{
    return numeric_value(text).value_or(0) > 0;
}

// Whether a box still reads what it would show for a value.
bool is_untouched(const std::string& text, double value, int decimals)
{
    return trimmed(text) == format_fixed(value, decimals);
}

// A scale too small for its box is no fault of the operator's.
bool is_valid_scale(const std::string& text, double current)
{
    return is_positive_number(text) || (current > 0 && is_untouched(text, current, kScaleDecimals));
}

// The number of a box; one that nobody has edited keeps the digits that the box has no room for.
double typed_number(const std::string& text, double current, int decimals)
{
    return is_untouched(text, current, decimals) ? current : leading_number(text);
}

// The whole number of a box, 0 when it holds none.
std::int32_t whole_number(const std::string& text)
{
    try {
        return rounded_to_int32(numeric_value(text).value_or(0));
    } catch (const std::range_error&) {
        return 0;
    }
}

bool is_sensor_count(std::int32_t sensors)
{
    return sensors >= 1 && sensors <= kMostSensors;
}

bool is_component_count(std::int32_t components)
{
    return components == 1 || components == 3;
}

bool is_unused_box(const std::string& text)
{
    return is_unused_name(trimmed(text));
}

void warn_of_missing_columns(const DefinitionsPage& page, Operator& op)
{
    const auto& column = page.Text_locations_column;
    if (is_unused_box(column[kTime])) op.show_message("Warning: The Time column has not been specified");
    if (page.Combo_sensor_location_determination == 0) {
        if (is_unused_box(column[kEast])) op.show_message("Warning: The Easting column has not been specified");
        if (is_unused_box(column[kNorth])) op.show_message("Warning: The Northing column has not been specified");
    }
    if (is_unused_box(column[kDepth]) && is_unused_box(column[kElevation])) {
        op.show_message("Warning: No Depth or Elevation column has been specified");
    }
}

// The message that refuses a sensor page; nullptr when it is in order.
const char* fault_of(const SensorPage& page, const SurveyDefinitions& working)
{
    if (working.read_sensor_location == 0) {
        if (!is_numeric(page.Text_TMI_xyz_position[1])) return "The sensor offset is not valid";
        // A number may have its unit behind it here: "1200 mm".
        if (trimmed(page.Text_TMI_xyz_position[2]).empty()) return "The sensor arm length is not valid";
        if (trimmed(page.Text_TMI_xyz_position[3]).empty()) return "The sensor arm rotation is not valid";
    } else {
        if (is_unused_box(page.Text_TMI_xyz[1])) return "The X sensor coordinate is not valid";
        if (is_unused_box(page.Text_TMI_xyz[2])) return "The Y sensor coordinate is not valid";
        if (is_unused_box(page.Text_TMI_xyz[3])) return "The Z sensor coordinate is not valid";
    }
    for (std::size_t component = 1; component <= static_cast<std::size_t>(working.components_per_sensor); ++component) {
        if (is_unused_box(page.Text_TMI_column_name[component])) {
            return "The sensor component source column is not valid";
        }
    }
    return nullptr;
}

} // namespace

DefinitionsPage display_definitions(const SurveyDefinitions& definitions)
{
    DefinitionsPage page;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        page.Text_locations_column[slot] = definitions.fields[slot].name;
    }
    page.Text_data_scale = format_fixed(definitions.coordinate_scale, kScaleDecimals);
    page.Text_elevation_scale = format_fixed(definitions.depth_scale, kScaleDecimals);
    page.Check_fish_depth_sign = definitions.flip_depth_sign == 1;
    page.Text_num_mag = std::to_string(definitions.number_of_sensors);
    page.Text_num_sensors = std::to_string(definitions.components_per_sensor);
    page.Combo_sensor_location_determination = definitions.read_sensor_location;
    return page;
}

SensorPage display_sensor_definitions(const SurveyDefinitions& definitions, int sensor)
{
    const SensorDefinition& shown = definitions.sensors.at(static_cast<std::size_t>(sensor));
    SensorPage page;
    page.Text_TMI_column_name = shown.component_columns;
    page.Text_TMI_xyz = shown.coordinate_columns;
    for (std::size_t component = 1; component <= 3; ++component) {
        page.flip_sign[component] = shown.flip_sign[component] == 1;
    }
    page.Text_TMI_xyz_position = {"", format_fixed(shown.lever_arm[SensorDefinition::kOffset], kArmDecimals),
                                  format_fixed(shown.lever_arm[SensorDefinition::kLength], kArmDecimals),
                                  format_fixed(shown.lever_arm[SensorDefinition::kRotation], kArmDecimals)};
    return page;
}

void take_definitions_page(const DefinitionsPage& page, SurveyDefinitions& working)
{
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        working.fields[slot].name = trimmed(page.Text_locations_column[slot]);
    }
    set_default_field_names(working);
    if (is_valid_scale(page.Text_data_scale, working.coordinate_scale)) {
        working.coordinate_scale = typed_number(page.Text_data_scale, working.coordinate_scale, kScaleDecimals);
    }
    if (is_valid_scale(page.Text_elevation_scale, working.depth_scale)) {
        working.depth_scale = typed_number(page.Text_elevation_scale, working.depth_scale, kScaleDecimals);
    }
    working.flip_depth_sign = page.Check_fish_depth_sign ? 1 : 0;
    working.read_sensor_location = page.Combo_sensor_location_determination;

    const std::int32_t sensors = whole_number(page.Text_num_mag);
    if (is_sensor_count(sensors)) working.number_of_sensors = sensors;
    const auto elements = static_cast<std::size_t>(working.number_of_sensors) + 1;
    working.sensors.resize(std::max(working.sensors.size(), elements));
    const std::int32_t components = whole_number(page.Text_num_sensors);
    if (is_component_count(components)) working.components_per_sensor = components;
}

void take_sensor_page(const SensorPage& page, SurveyDefinitions& working, int sensor)
{
    SensorDefinition& taken = working.sensors.at(static_cast<std::size_t>(sensor));
    for (std::size_t j = 1; j <= 3; ++j) {
        taken.component_columns[j] = trimmed(page.Text_TMI_column_name[j]);
        taken.flip_sign[j] = page.flip_sign[j] ? 1 : 0;
        if (working.read_sensor_location == 1) taken.coordinate_columns[j] = trimmed(page.Text_TMI_xyz[j]);
    }
    if (working.read_sensor_location == 1) return;
    constexpr int kElements[] = {0, SensorDefinition::kOffset, SensorDefinition::kLength, SensorDefinition::kRotation};
    for (std::size_t box = 1; box <= 3; ++box) {
        double& value = taken.lever_arm[static_cast<std::size_t>(kElements[box])];
        value = typed_number(page.Text_TMI_xyz_position[box], value, kArmDecimals);
    }
}

int check_definitions(const DefinitionsPage& page, SurveyDefinitions& working, Operator& op)
{
    const auto refuse = [&op](const char* message) {
        op.show_message(message);
        return -1;
    };
    if (!is_valid_scale(page.Text_data_scale, working.coordinate_scale)) {
        return refuse("Warning: The coordinate scale factor is not valid");
    }
    if (!is_valid_scale(page.Text_elevation_scale, working.depth_scale)) {
        return refuse("Warning: The elevation scale factor is not valid");
    }
    const std::int32_t sensors = whole_number(page.Text_num_mag);
    if (!is_sensor_count(sensors)) {
        return refuse("Warning: The number of sensors is not valid: a whole number from 1 to 1000 is expected");
    }
    if (!is_component_count(whole_number(page.Text_num_sensors))) {
        return refuse("Warning: The number of components per sensor is not valid: 1 or 3 is expected");
    }
    warn_of_missing_columns(page, op);

    take_definitions_page(page, working);
    working.sensors.resize(static_cast<std::size_t>(sensors) + 1);
    return 0;
}

int check_sensor_definitions(const SensorPage& page, SurveyDefinitions& working, int sensor, Operator& op)
{
    if (const char* const fault = fault_of(page, working)) {
        op.show_message(fault);
        return -1;
    }
    SensorDefinition& checked = working.sensors.at(static_cast<std::size_t>(sensor));
    if (working.read_sensor_location == 1) checked.lever_arm = {};
    if (working.read_sensor_location == 0) checked.coordinate_columns = SensorDefinition().coordinate_columns;
    take_sensor_page(page, working, sensor);
    return 0;
}

} // namespace tarvo

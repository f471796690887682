#include "definitions/sensor_grid.h"

#include "text/numbers.h"

namespace tarvo {

namespace {

std::vector<SensorGrid::Column> columns_of(const SurveyDefinitions& definitions)
{
    std::vector<SensorGrid::Column> columns;
    if (definitions.components_per_sensor == 1) {
        columns.push_back({"TMI", "Name of field containing TMI value"});
    } else {
        for (const std::string component : {"Tx", "Ty", "Tz"}) {
            columns.push_back({component, "Name of field containing " + component + " component"});
        }
    }
    if (definitions.read_sensor_location == 1) {
        for (const std::string axis : {"X", "Y", "Z"}) {
            columns.push_back({axis, "Name of field containing " + axis + " coordinate of the sensor"});
        }
    } else {
        columns.push_back({"Offset (mm)", "Along-track offset of the sensor from the fish"});
        columns.push_back({"Arm (mm)", "Length of the arm that carries the sensor"});
        columns.push_back({"Rotation (deg)", "Rotation of the arm around the fish"});
    }
    return columns;
}

std::vector<std::string> cells_of(const SensorDefinition& sensor, const SurveyDefinitions& definitions)
{
    std::vector<std::string> cells;
    for (std::size_t j = 1; j <= static_cast<std::size_t>(definitions.components_per_sensor); ++j) {
        const bool flipped = sensor.flip_sign[j] == 1 && !is_unused_name(sensor.component_columns[j]);
        cells.push_back((flipped ? "-" : "") + sensor.component_columns[j]);
    }
    if (definitions.read_sensor_location == 1) {
        for (std::size_t j = 1; j <= 3; ++j) cells.push_back(sensor.coordinate_columns[j]);
    } else {
        for (const int element : {SensorDefinition::kOffset, SensorDefinition::kLength, SensorDefinition::kRotation}) {
            cells.push_back(format_fixed(sensor.lever_arm[static_cast<std::size_t>(element)], 3));
        }
    }
    return cells;
}

} // namespace

SensorGrid sensor_grid(const SurveyDefinitions& definitions)
{
    SensorGrid grid;
    grid.columns = columns_of(definitions);
    for (std::int32_t number = 1; number <= definitions.number_of_sensors; ++number) {
        grid.rows.push_back({"Sensor " + std::to_string(number) + " Definitions",
                             cells_of(definitions.sensors[static_cast<std::size_t>(number)], definitions)});
    }
    return grid;
}

} // namespace tarvo

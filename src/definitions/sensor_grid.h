#pragma once

#include "definitions/survey_definitions.h"

#include <string>
#include <vector>

namespace tarvo {

// Grid_sensors: one row a sensor, its component columns, then where it sits.
struct SensorGrid {
    struct Column {
        std::string caption; // "TMI", "Tx", "X", "Offset (mm)"
        std::string hint;
    };
    struct Row {
        std::string caption;            // "Sensor 1 Definitions"
        std::vector<std::string> cells; // by column
    };
    std::vector<Column> columns;
    std::vector<Row> rows; // sensor 1 first
};

SensorGrid sensor_grid(const SurveyDefinitions& definitions);

} // namespace tarvo

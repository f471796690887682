#pragma once

#include "definitions/survey_definitions.h"
#include "ports/operator.h"

#include <array>
#include <string>

namespace tarvo {

// The general page of the definitions dialog as the operator left it.
struct DefinitionsPage {
    std::array<std::string, number_of_field_slots + 1> Text_locations_column; // 1..10: column names
    std::string Text_data_scale;
    std::string Text_elevation_scale;
    bool Check_fish_depth_sign = false;
    std::string Text_num_mag;                    // number of sensors
    std::string Text_num_sensors;                // components per sensor
    int Combo_sensor_location_determination = 0; // 1: read from columns, 0: from lever arms
};

// The page of one sensor.
struct SensorPage {
    std::array<std::string, 4> Text_TMI_column_name;  // 1..3: component columns
    std::array<bool, 4> flip_sign = {};               // 1..3
    std::array<std::string, 4> Text_TMI_xyz;          // 1..3: coordinate columns
    std::array<std::string, 4> Text_TMI_xyz_position; // 1..3: offset mm, arm length mm, rotation degrees

    bool operator==(const SensorPage&) const = default;
};

DefinitionsPage display_definitions(const SurveyDefinitions& definitions);
SensorPage display_sensor_definitions(const SurveyDefinitions& definitions, int sensor);

// Copy what is valid on a page into the working definitions, silently, while the operator is still at it.
// Sensors beyond a smaller number stay in the array until check_definitions accepts that number.
void take_definitions_page(const DefinitionsPage& page, SurveyDefinitions& working);
void take_sensor_page(const SensorPage& page, SurveyDefinitions& working, int sensor);

// Judge a page and, when it is accepted (0), copy it into the working definitions; -1 leaves them as they were. Every
// refusal and every warning is shown to the operator. Sensors added by a larger number start empty, the others stay.
int check_definitions(const DefinitionsPage& page, SurveyDefinitions& working, Operator& op);
int check_sensor_definitions(const SensorPage& page, SurveyDefinitions& working, int sensor, Operator& op);

} // namespace tarvo

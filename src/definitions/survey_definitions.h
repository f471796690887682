#pragma once

#include "definitions/data_format.h"
#include "definitions/field_slots.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

inline constexpr int kMostSensors = 1000;

// True for "N/A" and for an empty name: the quantity is not used.
bool is_unused_name(std::string_view column_name);

struct FieldSlot {
    std::string name;             // column name in the header
    std::int32_t colour = 0;      // 0x00BBGGRR
    std::int32_t field_index = 0; // position among the located fields, from 1; 0: not located. Not in the file.

    bool operator==(const FieldSlot&) const = default;
};

struct SensorDefinition {
    static constexpr int kOffset = 2;   // index into lever_arm: along-track offset from the fish, millimetres
    static constexpr int kLength = 4;   // arm length, millimetres
    static constexpr int kRotation = 5; // arm rotation, degrees

    std::int32_t sensor_tag = 0;
    std::array<std::string, 4> coordinate_columns = {"N/A", "N/A", "N/A", "N/A"}; // 1..3: X, Y, Z
    std::array<std::int32_t, 12> column_slots = {
        -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};                         // [3 * component]:
                                                                                 // channel, -1: not located
    std::array<std::string, 4> component_columns = {"N/A", "N/A", "N/A", "N/A"}; // 1 alone, or 1..3: Tx, Ty, Tz
    std::array<std::int32_t, 4> flip_sign = {};                                  // 1: sign inverted on input
    std::array<double, 6> lever_arm = {};
    std::array<std::int32_t, 4> location_slots = {-1, -1, -1, -1}; // 1..3: X, Y, Z channels, -1: not located

    bool operator==(const SensorDefinition&) const = default;
};

// What every column of a survey data file means. sensors has number_of_sensors + 1 elements, element 0 unused.
struct SurveyDefinitions {
    double coordinate_scale = 1;
    double depth_scale = 1;
    std::int32_t flip_depth_sign = 0; // 1: Depth and a DEM from a column change sign
    std::array<FieldSlot, number_of_field_slots + 1> fields;
    std::int32_t number_of_sensors = 1;
    std::array<std::string, 4> component_templates = {"N/A", "N/A", "N/A", "N/A"};  // 0: TMI, 1..3: Tx, Ty, Tz
    std::array<std::string, 4> coordinate_templates = {"N/A", "N/A", "N/A", "N/A"}; // 1..3: X, Y, Z
    std::int32_t components_per_sensor = 1;                                         // 1 or 3
    std::int32_t read_sensor_location = 0; // 1: positions from columns, 0: from the fish and the lever arm
    std::vector<SensorDefinition> sensors = std::vector<SensorDefinition>(2);
    std::optional<DataFormat> data_format; // none: the plain form

    bool operator==(const SurveyDefinitions&) const = default;
};

// Gives every empty slot name its default ("N/A" stays) and every slot its colour.
void set_default_field_names(SurveyDefinitions& definitions);

// The columns whose texts make the time: those of the data format, else the Time slot's alone; empty when it is unused.
std::vector<std::string> time_column_names(const SurveyDefinitions& definitions);

// Lets the Time slot show the first of the data format's time columns; one alone is then the slot's, and no list.
void show_first_time_column(SurveyDefinitions& definitions);

// `template_text` with its first "*" replaced by the number; without a "*" the template, blanks trimmed.
void fill_name_from_template(std::string_view template_text, int number, std::string& result);

// Names the component columns of every sensor, and its coordinate columns when they are read, from the templates.
void fill_using_template_number(SurveyDefinitions& definitions);

} // namespace tarvo

#include "definitions/survey_definitions.h"

#include "text/numbers.h"

namespace tarvo {

bool is_unused_name(std::string_view column_name)
{
    return column_name.empty() || column_name == "N/A";
}

void set_default_field_names(SurveyDefinitions& definitions)
{
    for (int slot = 1; slot <= number_of_field_slots; ++slot) {
        FieldSlot& field = definitions.fields[static_cast<std::size_t>(slot)];
        if (field.name.empty()) field.name = field_slot(slot).name;
        field.colour = field_slot(slot).colour;
    }
}

std::vector<std::string> time_column_names(const SurveyDefinitions& definitions)
{
    if (definitions.data_format && !definitions.data_format->time_columns.empty()) {
        return definitions.data_format->time_columns;
    }
    const std::string& name = definitions.fields[kTime].name;
    return is_unused_name(name) ? std::vector<std::string>() : std::vector<std::string>{name};
}

void show_first_time_column(SurveyDefinitions& definitions)
{
    if (!definitions.data_format || definitions.data_format->time_columns.empty()) return;
    std::vector<std::string>& columns = definitions.data_format->time_columns;
    definitions.fields[kTime].name = columns.front();
    if (columns.size() == 1) columns.clear();
}

void fill_name_from_template(std::string_view template_text, int number, std::string& result)
{
    const std::size_t star = template_text.find('*');
    if (star == std::string_view::npos) {
        result = trimmed(template_text);
        return;
    }
    std::string name(template_text.substr(0, star));
    name += std::to_string(number);
    name += template_text.substr(star + 1);
    result = std::move(name);
}

void fill_using_template_number(SurveyDefinitions& definitions)
{
    for (std::int32_t number = 1; number <= definitions.number_of_sensors; ++number) {
        SensorDefinition& sensor = definitions.sensors[static_cast<std::size_t>(number)];
        for (std::size_t j = 1; j <= 3; ++j) {
            if (definitions.components_per_sensor != 1) {
                fill_name_from_template(definitions.component_templates[j], number, sensor.component_columns[j]);
            }
            if (definitions.read_sensor_location == 1) {
                fill_name_from_template(definitions.coordinate_templates[j], number, sensor.coordinate_columns[j]);
            }
        }
        if (definitions.components_per_sensor == 1) {
            fill_name_from_template(definitions.component_templates[0], number, sensor.component_columns[1]);
        }
    }
}

} // namespace tarvo

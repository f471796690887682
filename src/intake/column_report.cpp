#include "intake/column_report.h"

#include "text/numbers.h"

namespace tarvo {

namespace {

constexpr int kListedColumns = 12;

void add_column(std::vector<DefinedColumn>& report, std::string quantity, const std::string& name,
                const HeaderColumns& header_columns)
{
    if (is_unused_name(trimmed(name))) return;
    report.push_back({std::move(quantity), name, header_columns.find_column(name).index > 0});
}

void add_sensor(std::vector<DefinedColumn>& report, const SurveyDefinitions& definitions, std::size_t number,
                const HeaderColumns& header_columns)
{
    constexpr const char* kComponents[] = {"", " Tx", " Ty", " Tz"};
    constexpr const char* kAxes[] = {"", " X", " Y", " Z"};
    const SensorDefinition& sensor = definitions.sensors[number];
    const std::string title = "sensor " + std::to_string(number);
    const auto components = static_cast<std::size_t>(definitions.components_per_sensor);
    for (std::size_t j = 1; j <= components; ++j) {
        add_column(report, components == 1 ? title : title + kComponents[j], sensor.component_columns[j],
                   header_columns);
    }
    if (definitions.read_sensor_location != 1) return;
    for (std::size_t axis = 1; axis <= 3; ++axis) {
        add_column(report, title + kAxes[axis], sensor.coordinate_columns[axis], header_columns);
    }
}

std::string columns_text(const std::vector<DefinedColumn>& report, bool found)
{
    std::string text;
    int listed = 0;
    int left_out = 0;
    for (const DefinedColumn& column : report) {
        if (column.is_found != found) continue;
        if (listed == kListedColumns) {
            ++left_out;
            continue;
        }
        text += (listed == 0 ? "" : ", ") + column.name + " (" + column.quantity + ')';
        ++listed;
    }
    if (left_out > 0) text += " and " + std::to_string(left_out) + " more";
    return text;
}

} // namespace

std::vector<DefinedColumn> defined_columns(const SurveyDefinitions& definitions, const HeaderColumns& header_columns)
{
    std::vector<DefinedColumn> report;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        add_column(report, kFieldSlots[slot].name, definitions.fields[slot].name, header_columns);
    }
    for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
        add_sensor(report, definitions, sensor, header_columns);
    }
    return report;
}

std::string found_columns_text(const std::vector<DefinedColumn>& report)
{
    return columns_text(report, true);
}

std::string missing_columns_text(const std::vector<DefinedColumn>& report)
{
    return columns_text(report, false);
}

std::string column_warnings_text(const Warnings& warnings)
{
    std::string text;
    int listed = 0;
    for (const Warning& warning : warnings) {
        if (listed++ == kListedColumns) return text + "; and more";
        text += (text.empty() ? "" : "; ") + warning.text;
    }
    return text;
}

} // namespace tarvo

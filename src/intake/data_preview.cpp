#include "intake/data_preview.h"

#include "intake/survey_source.h"
#include "processing/sample_processing.h"
#include "text/line_reader.h"
#include "text/tokens.h"

#include <exception>

namespace tarvo {

namespace {

void add_role(std::vector<ColumnRole>& roles, std::int32_t column, const std::string& caption, std::int32_t colour)
{
    ColumnRole& role = roles[static_cast<std::size_t>(column)];
    role.caption += (role.caption.empty() ? "" : ", ") + caption;
    role.colour = colour;
}

void add_sensor_roles(std::vector<ColumnRole>& roles, const SurveyDefinitions& definitions, std::size_t number,
                      const FieldLocations& locations)
{
    const SensorDefinition& sensor = definitions.sensors[number];
    const std::string caption = "Sensor " + std::to_string(number) + " ";
    const auto add_channel = [&](std::int32_t channel, const char* quantity) {
        if (channel < 0) return;
        add_role(roles, locations.sensor_column[static_cast<std::size_t>(channel)], caption + quantity, 0);
    };
    for (std::size_t j = 1; j <= 3; ++j) {
        constexpr const char* kComponents[] = {"", "Tx", "Ty", "Tz"};
        constexpr const char* kAxes[] = {"", "X", "Y", "Z"};
        add_channel(sensor.column_slots[3 * j], definitions.components_per_sensor == 1 ? "TMI" : kComponents[j]);
        add_channel(sensor.location_slots[j], kAxes[j]);
    }
}

std::vector<ColumnRole> roles_of(const SurveyDefinitions& definitions, const FieldLocations& locations)
{
    std::vector<ColumnRole> roles(static_cast<std::size_t>(locations.header_column_count));
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        if (locations.column[slot] < 0) continue;
        add_role(roles, locations.column[slot], kFieldSlots[slot].name, definitions.fields[slot].colour);
    }
    for (std::size_t number = 1; number < definitions.sensors.size(); ++number) {
        add_sensor_roles(roles, definitions, number, locations);
    }
    return roles;
}

void add_lines_up_to_header(DataPreview& preview, std::span<const std::string> first_lines, int header_line_number)
{
    for (int number = 1; number <= header_line_number && number <= static_cast<int>(first_lines.size()); ++number) {
        const bool is_header = number == header_line_number;
        PreviewLine& line = preview.lines.emplace_back();
        line.kind = is_header ? PreviewLineKind::header : PreviewLineKind::before_header;
        line.fields = is_header ? preview.columns.names()
                                : std::vector<std::string>{first_lines[static_cast<std::size_t>(number) - 1]};
    }
}

} // namespace

std::vector<std::string> read_first_lines(const std::string& file_name)
{
    std::vector<std::string> lines;
    try {
        LineReader reader(file_name);
        std::string_view line;
        while (static_cast<int>(lines.size()) < kPreviewLines && reader.next_line(line) != LineReader::Outcome::end) {
            lines.emplace_back(line);
        }
    } catch (const std::exception&) { // there is nothing to preview; a run says why
        lines.clear();
    }
    return lines;
}

HeaderAndData header_and_data(std::span<const std::string> first_lines, int header_line_number)
{
    HeaderAndData found;
    if (header_line_number < 1) return found;
    const auto header = static_cast<std::size_t>(header_line_number) - 1;
    if (header < first_lines.size()) found.header = first_lines[header];
    if (header + 1 < first_lines.size()) found.first_data_line = first_lines[header + 1];
    return found;
}

DataPreview preview_data(std::span<const std::string> first_lines, SurveyDefinitions definitions,
                         int header_line_number)
{
    DataPreview preview;
    definitions.sensors.resize(static_cast<std::size_t>(definitions.number_of_sensors) + 1);
    LinesInMemory source(first_lines, header_line_number);
    const SourceColumns located = locate_columns(source.open(), definitions);
    preview.columns = located.header;
    preview.warnings = located.warnings;
    preview.roles = roles_of(definitions, located.locations);
    add_lines_up_to_header(preview, first_lines, header_line_number);

    SampleProcessing run;
    start_processing(run, definitions, located.locations, ProcessingParameters());
    bool fields_counted = false;
    std::string_view text;
    while (source.next_line(text) == SurveySource::Outcome::line) {
        PreviewLine& line = preview.lines.emplace_back();
        line.fields = fields_of_line(text);
        ++preview.data_lines;
        if (!fields_counted && !trimmed(text).empty()) {
            fields_counted = true;
            const Warnings warnings = field_count_warnings(preview.columns, text);
            preview.warnings.insert(preview.warnings.end(), warnings.begin(), warnings.end());
        }
        const bool accepted = convert_record_fields(run.fields.read(text), run) == 0;
        line.kind = accepted ? PreviewLineKind::data : PreviewLineKind::rejected;
        if (!accepted) ++preview.lines_rejected;
    }
    return preview;
}

} // namespace tarvo

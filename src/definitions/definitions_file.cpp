#include "definitions/definitions_file.h"

#include "text/file_names.h"
#include "text/line_reader.h"
#include "text/numbers.h"
#include "text/replace_file.h"
#include "text/tokens.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <vector>

namespace tarvo {

namespace {

constexpr std::string_view kTemplateTitle = "Sensor Name Template";
constexpr std::string_view kFlipMark = "(flip sign):";

// The definitions file as a sequence of lines. Every fault names the file, the line and what was expected there.
class DefinitionLines {
public:
    explicit DefinitionLines(const std::string& file_name) : reader_(file_name) {}

    // False at the end of the file.
    bool read_line(std::string& line)
    {
        std::string_view text;
        const LineReader::Outcome outcome = reader_.next_line(text);
        if (outcome == LineReader::Outcome::too_long) fail("a line of a definitions file", "one of over 1 MiB");
        line = text;
        return outcome == LineReader::Outcome::line;
    }

    std::string expect_line(std::string_view expected)
    {
        std::string line;
        if (!read_line(line)) {
            throw std::runtime_error(reader_.file_name() + ": the file ends after line " +
                                     std::to_string(reader_.line_number()) + " where " + std::string(expected) +
                                     " was expected");
        }
        return line;
    }

    // The next line that holds something; false at the end of the file.
    bool read_filled_line(std::string& line)
    {
        while (read_line(line)) {
            if (!trimmed(line).empty()) return true;
        }
        return false;
    }

    const std::string& file_name() const { return reader_.file_name(); }

    void skip_lines(int count)
    {
        for (int skipped = 0; skipped < count; ++skipped) expect_line("another line");
    }

    // One input item: up to the first comma, enclosing quotes removed.
    std::string expect_item(std::string_view expected)
    {
        const std::string line = expect_line(expected);
        const std::string_view text = trimmed(line);
        if (text.starts_with('"')) return std::string(text.substr(1, text.find('"', 1) - 1));
        return std::string(text.substr(0, text.find(',')));
    }

    double number(std::string_view text, std::string_view expected) const
    {
        const std::optional<double> value = numeric_value(text);
        if (!value) fail(expected, '"' + std::string(trimmed(text)) + '"');
        return *value;
    }

    std::int32_t whole_number(std::string_view text, std::string_view expected) const
    {
        return rounded(number(text, expected), expected);
    }

    std::int32_t rounded(double value, std::string_view expected) const
    {
        try {
            return rounded_to_int32(value);
        } catch (const std::range_error&) {
            fail(expected, format_shortest(value));
        }
    }

    [[noreturn]] void fail(std::string_view expected, const std::string& found) const
    {
        throw std::runtime_error(reader_.file_name() + ", line " + std::to_string(reader_.line_number()) + ": " +
                                 std::string(expected) + " was expected, found " + found);
    }

private:
    LineReader reader_;
};

// What follows the first ":".
std::string_view value_of(std::string_view line)
{
    const std::size_t colon = line.find(':');
    return colon == std::string_view::npos ? std::string_view() : line.substr(colon + 1);
}

void set_number_of_sensors(SurveyDefinitions& definitions, std::int32_t count)
{
    definitions.number_of_sensors = count;
    definitions.sensors.assign(static_cast<std::size_t>(count) + 1, SensorDefinition());
}

void read_scales(DefinitionLines& file, SurveyDefinitions& definitions, int version)
{
    const std::string coordinate_line = file.expect_item("the coordinate data scale");
    definitions.coordinate_scale = file.number(value_of(coordinate_line), "a number as coordinate data scale");

    const std::string depth_line = file.expect_item("the depth data scale");
    std::string_view rest = value_of(depth_line);
    const std::string_view scale = next_token(rest);
    definitions.depth_scale = file.number(scale, "a number as depth data scale");
    // Older files carry no sign: the last digit of a scale such as 1.0000 stands in for it.
    definitions.flip_depth_sign = trimmed(rest).empty()
                                      ? rounded_to_int32(leading_number(scale.substr(scale.size() - 1)))
                                      : file.whole_number(rest, "0 or 1 as depth sign");
    if (version == 2) file.skip_lines(1);
}

std::int32_t read_field_count(DefinitionLines& file, int& header_line_number)
{
    file.skip_lines(1);
    const std::string line = file.expect_item("the number of fish data fields");
    std::string_view rest = value_of(line);
    const std::int32_t count = file.whole_number(next_token(rest), "the number of fish data fields");
    const std::int32_t header_line = file.rounded(numeric_value(next_token(rest)).value_or(0), "a header line number");
    if (header_line > 0) header_line_number = header_line;
    return count;
}

void read_fields(DefinitionLines& file, SurveyDefinitions& definitions, std::int32_t count, int version)
{
    for (FieldSlot& field : definitions.fields) field.name = "N/A";
    for (std::int32_t read = 0; read < count; ++read) {
        file.skip_lines(1);
        const std::string line = file.expect_item("a field line such as \"1: Time\"");
        const std::string_view number = std::string_view(line).substr(0, line.find(':'));
        const std::string expected = "a field number from 1 to " + std::to_string(number_of_field_slots);
        const std::int32_t slot = file.whole_number(number, expected);
        if (slot < 0 || slot > number_of_field_slots) file.fail(expected, std::to_string(slot));
        definitions.fields[static_cast<std::size_t>(slot)].name = trimmed(value_of(line));
        if (version == 2) file.skip_lines(1);
    }
}

void read_sensor_counts(DefinitionLines& file, SurveyDefinitions& definitions, int version)
{
    file.skip_lines(1);
    const std::string sensors_line = file.expect_item("the number of sensors");
    const std::int32_t sensors = file.whole_number(value_of(sensors_line), "the number of sensors, from 1 to 1000,");
    if (sensors < 1 || sensors > kMostSensors) file.fail("a number of sensors from 1 to 1000", std::to_string(sensors));
    set_number_of_sensors(definitions, sensors);

    const std::string components_line = file.expect_item("the number of components per sensor");
    const std::int32_t components = file.whole_number(value_of(components_line), "1 or 3 components per sensor");
    if (components != 1 && components != 3) file.fail("1 or 3 components per sensor", std::to_string(components));
    definitions.components_per_sensor = components;
    if (version == 2) file.skip_lines(1);

    const std::string location_line = file.expect_item("the sensor location choice");
    definitions.read_sensor_location = upper_case(trimmed(value_of(location_line))) == "YES" ? 1 : 0;
    if (version == 2) file.skip_lines(2);
}

void read_sensor_placement(DefinitionLines& file, SensorDefinition& sensor, bool from_columns)
{
    if (from_columns) {
        for (std::size_t axis = 1; axis <= 3; ++axis) {
            const std::string line = file.expect_item("a sensor coordinate column");
            sensor.coordinate_columns[axis] = trimmed(value_of(line));
        }
        return;
    }
    for (const int element : {SensorDefinition::kOffset, SensorDefinition::kLength, SensorDefinition::kRotation}) {
        const std::string line = file.expect_item("a lever arm value");
        sensor.lever_arm[static_cast<std::size_t>(element)] =
            file.number(value_of(line), "a number as lever arm value");
    }
}

void read_sensor(DefinitionLines& file, SensorDefinition& sensor, const SurveyDefinitions& definitions)
{
    file.skip_lines(2); // an empty line, "Sensor Number"
    read_sensor_placement(file, sensor, definitions.read_sensor_location == 1);
    for (std::size_t component = 1; component <= static_cast<std::size_t>(definitions.components_per_sensor);
         ++component) {
        const std::string line = file.expect_line("a sensor component");
        sensor.component_columns[component] = upper_case(trimmed(value_of(line)));
        sensor.flip_sign[component] = line.find(kFlipMark) != std::string::npos ? 1 : 0;
    }
}

void read_templates(DefinitionLines& file, SurveyDefinitions& definitions)
{
    std::string line;
    do {
        if (!file.read_line(line)) return;
    } while (trimmed(line) != kTemplateTitle);
    for (auto* const templates : {&definitions.component_templates, &definitions.coordinate_templates}) {
        for (std::size_t j = 1; j <= 3; ++j) (*templates)[j] = file.expect_line("a column name template");
    }
}

// Takes one line of the block. keys: those that it has held so far.
void read_data_format_line(const DefinitionLines& file, const std::string& line, DataFormat& format,
                           std::vector<std::string>& keys)
{
    const KeyTaking taking = take_data_format_line(format, line);
    if (taking.outcome == KeyOutcome::unknown_key) {
        format.unknown_lines.emplace_back(trimmed(line));
        return;
    }
    if (std::find(keys.begin(), keys.end(), taking.key) != keys.end()) {
        file.fail("each key once", '"' + taking.key + "\" again");
    }
    if (taking.outcome == KeyOutcome::bad_value) {
        file.fail(taking.expected + " as " + taking.key, '"' + std::string(trimmed(value_of(line))) + '"');
    }
    keys.push_back(taking.key);
}

// The block behind the templates, which ends at an empty line or with the file. Something else there is passed over.
void read_data_format(DefinitionLines& file, SurveyDefinitions& definitions, Operator& op)
{
    std::string line;
    if (!file.read_filled_line(line) || upper_case(trimmed(line)) != upper_case(kDataFormatTitle)) return;
    DataFormat format;
    std::vector<std::string> keys;
    while (file.read_line(line) && !trimmed(line).empty()) read_data_format_line(file, line, format, keys);
    if (!format.unknown_lines.empty()) {
        std::string lines;
        for (const std::string& unknown : format.unknown_lines) lines += "\n" + unknown;
        op.show_warnings({{WarningAbout::data, file.file_name(),
                           "The data format in " + file.file_name() +
                               " holds lines that are not known here. They are kept:" + lines}});
    }
    definitions.data_format = std::move(format);
    show_first_time_column(definitions);
}

// As many decimals as asked for, or the shortest text where these would lose some of the value.
std::string format_exact(double value, int decimals)
{
    const std::string fixed = format_fixed(value, decimals);
    return numeric_value(fixed) == value ? fixed : format_shortest(value);
}

// A line about one item. A comma would end it, unless the line stands in quotes.
std::string item_line(const std::string& text)
{
    return text.find(',') == std::string::npos ? text : '"' + text + '"';
}

std::string sensor_text(const SensorDefinition& sensor, std::int32_t number, const SurveyDefinitions& definitions,
                        NumberText format)
{
    std::string text = "\r\nSensor Number " + std::to_string(number) + "\r\n";
    if (definitions.read_sensor_location == 1) {
        text += item_line("Sensor X Coordinate: " + sensor.coordinate_columns[1]) + "\r\n";
        text += item_line("Sensor Y Coordinate: " + sensor.coordinate_columns[2]) + "\r\n";
        text += item_line("Sensor Z Coordinate: " + sensor.coordinate_columns[3]) + "\r\n";
    } else {
        text += "Sensor Along Track Offset from Fish Location (mm): " +
                format(sensor.lever_arm[SensorDefinition::kOffset], kArmDecimals) + "\r\n";
        text += "Sensor Arm Length (mm): " + format(sensor.lever_arm[SensorDefinition::kLength], kArmDecimals) + "\r\n";
        text += "Sensor Arm Rotation (deg): " + format(sensor.lever_arm[SensorDefinition::kRotation], kArmDecimals) +
                "\r\n";
    }
    for (std::size_t component = 1; component <= static_cast<std::size_t>(definitions.components_per_sensor);
         ++component) {
        text += "Sensor Component " + std::to_string(component);
        text += sensor.flip_sign[component] == 1 ? " (flip sign): " : ": ";
        text += sensor.component_columns[component] + "\r\n";
    }
    return text;
}

std::string definitions_text(const SurveyDefinitions& definitions, int header_line_number, NumberText format)
{
    std::string fields;
    int field_count = 0;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        const std::string& name = definitions.fields[slot].name;
        if (is_unused_name(name)) continue;
        ++field_count;
        fields += "\r\n" + item_line(std::to_string(slot) + ": " + name) + "\r\n";
    }

    std::string text = "Tarvo Program Parameters V3.0\r\n\r\n";
    text += "Coordinate Data Scale : " + format(definitions.coordinate_scale, kScaleDecimals) + "\r\n";
    text += "Depth Data Scale : " + format(definitions.depth_scale, kScaleDecimals) + " " +
            std::to_string(definitions.flip_depth_sign) + "\r\n\r\n";
    text += "Number of Fish Data Fields : " + std::to_string(field_count) + " " + std::to_string(header_line_number) +
            "\r\n" + fields;
    text += "\r\nNumber of Sensors : " + std::to_string(definitions.number_of_sensors) + "\r\n";
    text += "Number of Components per Sensor : " + std::to_string(definitions.components_per_sensor) + "\r\n";
    text += std::string("Read Sensor Location: ") + (definitions.read_sensor_location == 1 ? "Yes" : "No") + "\r\n";
    for (std::int32_t number = 1; number <= definitions.number_of_sensors; ++number) {
        text += sensor_text(definitions.sensors[static_cast<std::size_t>(number)], number, definitions, format);
    }
    text += "\r\n" + std::string(kTemplateTitle) + "\r\n";
    for (const auto* const templates : {&definitions.component_templates, &definitions.coordinate_templates}) {
        for (std::size_t j = 1; j <= 3; ++j) text += (*templates)[j] + "\r\n";
    }
    if (!definitions.data_format) return text;
    text += "\r\n" + std::string(kDataFormatTitle) + "\r\n";
    for (const std::string& line :
         data_format_lines(*definitions.data_format, definitions.fields[kTime].name, format)) {
        text += line + "\r\n";
    }
    return text;
}

} // namespace

DefinitionsReading read_definitions(const std::string& file_name, SurveyDefinitions& definitions,
                                    int& header_line_number, Operator& op)
{
    DefinitionsReading reading;
    try {
        DefinitionLines file(file_name);
        std::string first_line;
        if (!file.read_line(first_line) || !first_line.starts_with("Tarvo")) {
            op.show_message("The specified file does not have the correct format");
            return reading;
        }
        reading.version = first_line.find("V1.0") != std::string::npos   ? 1
                          : first_line.find("V2.0") != std::string::npos ? 2
                                                                         : 3;
        set_number_of_sensors(definitions, 1);
        definitions.components_per_sensor = 1;
        definitions.read_sensor_location = 0;
        definitions.data_format.reset();
        file.skip_lines(reading.version == 2 ? 4 : 1);
        read_scales(file, definitions, reading.version);
        reading.field_lines = read_field_count(file, header_line_number);
        read_fields(file, definitions, reading.field_lines, reading.version);
        read_sensor_counts(file, definitions, reading.version);
        for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
            read_sensor(file, definitions.sensors[sensor], definitions);
        }
        read_templates(file, definitions);
        read_data_format(file, definitions, op);
        reading.status = 0;
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while reading the Data Field Definitions : ") + fault.what());
    }
    return reading;
}

std::string lost_digits(const SurveyDefinitions& definitions)
{
    std::string lost;
    const auto compare = [&lost](const std::string& what, double value, int decimals) {
        const std::string written = format_fixed(value, decimals);
        if (numeric_value(written) == value) return;
        if (!lost.empty()) lost += ", ";
        lost += what + " " + format_shortest(value) + " would be written as " + written;
    };
    compare("the coordinate scale", definitions.coordinate_scale, kScaleDecimals);
    compare("the depth scale", definitions.depth_scale, kScaleDecimals);
    for (std::size_t sensor = 1; definitions.read_sensor_location == 0 && sensor < definitions.sensors.size();
         ++sensor) {
        const std::string of_sensor = " of sensor " + std::to_string(sensor);
        const std::array<double, 6>& arm = definitions.sensors[sensor].lever_arm;
        compare("the along-track offset" + of_sensor, arm[SensorDefinition::kOffset], kArmDecimals);
        compare("the arm length" + of_sensor, arm[SensorDefinition::kLength], kArmDecimals);
        compare("the arm rotation" + of_sensor, arm[SensorDefinition::kRotation], kArmDecimals);
    }
    return lost;
}

int write_definitions(const std::string& file_name, SurveyDefinitions& definitions, int header_line_number,
                      Operator& op, NumberDigits digits)
{
    if (definitions.read_sensor_location == 0) {
        for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
            definitions.sensors[sensor].coordinate_columns = SensorDefinition().coordinate_columns;
        }
    }
    try {
        replace_file(file_name, definitions_text(definitions, header_line_number,
                                                 digits == NumberDigits::fixed ? format_fixed : format_exact));
        return 0;
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while writing the Data Field Definitions : ") + fault.what());
        return -1;
    }
}

std::string exact_definitions_text(const SurveyDefinitions& definitions, int header_line_number)
{
    return definitions_text(definitions, header_line_number, format_exact);
}

std::string definitions_file_name_for(std::string_view data_file_name)
{
    return std::string(without_extension(data_file_name)) + ".def";
}

} // namespace tarvo

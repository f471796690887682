#include "live/definition_requests.h"

#include "text/numbers.h"
#include "text/tokens.h"

#include <array>
#include <optional>
#include <set>
#include <stdexcept>

namespace tarvo {

namespace {

constexpr std::array<const char*, 4> kComponentKeys = {"TMI", "TX", "TY", "TZ"}; // 0: of a sensor with one component
constexpr std::array<const char*, 4> kCoordinateKeys = {"", "X", "Y", "Z"};

// The parts between separators, blanks trimmed.
std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

struct Pair {
    std::string key; // upper case
    std::string_view value;
};

// "name:value" pairs between commas; a part without a colon is none.
std::vector<Pair> pairs_of(std::string_view payload)
{
    std::vector<Pair> pairs;
    for (const std::string_view part : split(payload, ',')) {
        const std::size_t colon = part.find(':');
        if (colon == std::string_view::npos) continue;
        pairs.push_back({upper_case(trimmed(part.substr(0, colon))), trimmed(part.substr(colon + 1))});
    }
    return pairs;
}

std::optional<std::int32_t> whole_number(std::string_view text)
{
    const std::optional<double> value = numeric_value(text);
    if (!value) return std::nullopt;
    try {
        return rounded_to_int32(*value);
    } catch (const std::range_error&) {
        return std::nullopt;
    }
}

void set_number(double& target, std::string_view text)
{
    target = numeric_value(text).value_or(target);
}

void set_scale(double& scale, std::string_view text)
{
    const double value = numeric_value(text).value_or(0);
    if (value > 0) scale = value;
}

void set_component(SensorDefinition& sensor, std::size_t component, std::string_view column)
{
    const bool flipped = column.starts_with('-');
    sensor.flip_sign[component] = flipped ? 1 : 0;
    sensor.component_columns[component] = trimmed(column.substr(flipped ? 1 : 0));
}

void apply_sensor_pair(const Pair& pair, SensorDefinition& sensor)
{
    for (std::size_t j = 0; j <= 3; ++j) {
        if (pair.key == kComponentKeys[j]) set_component(sensor, j == 0 ? 1 : j, pair.value);
        if (j >= 1 && pair.key == kCoordinateKeys[j]) sensor.coordinate_columns[j] = pair.value;
    }
    if (pair.key == "OFFSET") set_number(sensor.lever_arm[SensorDefinition::kOffset], pair.value);
    if (pair.key == "LENGTH") set_number(sensor.lever_arm[SensorDefinition::kLength], pair.value);
    if (pair.key == "ROTATION") set_number(sensor.lever_arm[SensorDefinition::kRotation], pair.value);
}

// A comma ends a pair and a field of a definitions file, a quote begins a quoted name, a leading "-" turns a sign, and
// what looks like a comment mark would be taken off.
std::string portable_name(std::string_view name)
{
    std::string portable = normalise_line(name);
    for (char& c : portable) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == ',' || c == '"' || byte < 0x20 || byte == 0x7F) c = '_';
    }
    if (portable.starts_with('-') || without_comment_mark(portable).size() != portable.size()) portable[0] = '_';
    return portable;
}

std::vector<std::string> portable_names(const HeaderColumns& header_columns)
{
    std::set<std::string> taken;
    for (const std::string& name : header_columns.names()) taken.insert(upper_case(trimmed(name)));
    std::vector<std::string> names;
    for (const std::string& original : header_columns.names()) {
        const std::string base = portable_name(trimmed(original));
        std::string name = base;
        if (name != trimmed(original)) {
            for (int copy = 2; !taken.insert(upper_case(name)).second; ++copy) {
                name = base + '_' + std::to_string(copy);
            }
        }
        names.push_back(name);
    }
    return names;
}

std::string header_request(const std::vector<std::string>& columns)
{
    std::string payload = columns.empty() ? std::string() : columns.front();
    for (std::size_t column = 1; column < columns.size(); ++column) payload += ',' + columns[column];
    // A single name has no comma to keep its blanks together.
    if (columns.size() == 1 && payload.find(' ') != std::string::npos) payload += ',';
    return request_text(kHeaderColumns, payload);
}

std::string fields_request(const SurveyDefinitions& definitions)
{
    std::string payload;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        const std::string& name = definitions.fields[slot].name;
        if (is_unused_name(name)) continue;
        payload += std::string(payload.empty() ? "" : ",") + kFieldSlots[slot].name + ':' + name;
    }
    return request_text(kFieldNames, payload);
}

std::string sensor_request(const SurveyDefinitions& definitions, int number)
{
    const SensorDefinition& sensor = definitions.sensors[static_cast<std::size_t>(number)];
    std::string payload = "Offset:" + format_shortest(sensor.lever_arm[SensorDefinition::kOffset]) +
                          ",Length:" + format_shortest(sensor.lever_arm[SensorDefinition::kLength]) +
                          ",Rotation:" + format_shortest(sensor.lever_arm[SensorDefinition::kRotation]);
    const auto components = static_cast<std::size_t>(definitions.components_per_sensor);
    for (std::size_t j = 1; j <= components; ++j) {
        const std::string_view key = components == 1 ? "TMI" : std::array{"", "Tx", "Ty", "Tz"}[j];
        payload += ',' + std::string(key) + ':' + (sensor.flip_sign[j] == 1 ? "-" : "") + sensor.component_columns[j];
    }
    for (std::size_t j = 1; j <= 3 && definitions.read_sensor_location == 1; ++j) {
        payload += ',' + std::string(kCoordinateKeys[j]) + ':' + sensor.coordinate_columns[j];
    }
    return request_text(kFirstSensor + number - 1, payload);
}

} // namespace

std::string request_text(int code, std::string_view payload)
{
    std::string digits = std::to_string(code);
    digits.insert(0, 4 - digits.size(), '0');
    return std::string(kRequestTag) + digits + ' ' + std::string(payload);
}

HeaderColumns columns_of_payload(std::string_view payload)
{
    std::vector<std::string> names;
    if (payload.find(',') != std::string_view::npos) {
        for (const std::string_view name : split(without_comment_mark(trimmed(payload)), ',')) names.emplace_back(name);
        return HeaderColumns(std::move(names));
    }
    const std::string normalised = normalise_line(payload);
    if (normalised.empty()) return HeaderColumns();
    for (const std::string_view name : split(without_comment_mark(normalised), ' ')) names.emplace_back(name);
    return HeaderColumns(std::move(names));
}

void apply_scales(std::string_view payload, SurveyDefinitions& definitions)
{
    set_scale(definitions.coordinate_scale, next_token(payload));
    set_scale(definitions.depth_scale, next_token(payload));
    // As from a file, where the last digit of an old one's scale may stand in for the sign: whatever is not 1 is no
    // flip.
    if (const auto sign = whole_number(next_token(payload))) definitions.flip_depth_sign = *sign == 1 ? 1 : 0;
}

void apply_field_names(std::string_view payload, SurveyDefinitions& definitions)
{
    for (FieldSlot& field : definitions.fields) field.name = "N/A";
    for (const Pair& pair : pairs_of(payload)) {
        for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
            if (pair.key == upper_case(kFieldSlots[slot].name)) definitions.fields[slot].name = pair.value;
        }
    }
}

void apply_sensor_counts(std::string_view payload, SurveyDefinitions& definitions)
{
    const std::int32_t sensors = whole_number(next_token(payload)).value_or(0);
    const std::int32_t components = whole_number(next_token(payload)).value_or(0);
    const std::int32_t read_location = whole_number(next_token(payload)).value_or(-1);
    if (sensors < 1 || sensors > kMostSensors) return;
    if (components != 1 && components != 3) return;
    if (read_location != 0 && read_location != 1) return;
    definitions.number_of_sensors = sensors;
    definitions.components_per_sensor = components;
    definitions.read_sensor_location = read_location;
    definitions.sensors.assign(static_cast<std::size_t>(sensors) + 1, SensorDefinition());
}

void apply_sensor(std::string_view payload, int number, SurveyDefinitions& definitions)
{
    if (number > definitions.number_of_sensors) return;
    for (const Pair& pair : pairs_of(payload)) {
        apply_sensor_pair(pair, definitions.sensors[static_cast<std::size_t>(number)]);
    }
}

PortableSurvey portable_survey(const HeaderColumns& header_columns, const SurveyDefinitions& definitions)
{
    PortableSurvey survey{portable_names(header_columns), definitions};
    const auto make_portable = [&](std::string& name) {
        const int column = header_columns.find_column(name).index;
        name = column == 0 ? "N/A" : survey.columns[static_cast<std::size_t>(column) - 1];
    };
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        make_portable(survey.definitions.fields[slot].name);
    }
    for (SensorDefinition& sensor : survey.definitions.sensors) {
        for (std::size_t j = 1; j <= 3; ++j) {
            make_portable(sensor.component_columns[j]);
            make_portable(sensor.coordinate_columns[j]);
        }
    }
    return survey;
}

std::vector<std::string> definition_requests(const PortableSurvey& survey)
{
    const SurveyDefinitions& definitions = survey.definitions;
    if (definitions.number_of_sensors > kMostLiveSensors) {
        throw std::runtime_error("a live survey can have " + std::to_string(kMostLiveSensors) +
                                 " sensors, this one has " + std::to_string(definitions.number_of_sensors));
    }
    if (!(definitions.coordinate_scale > 0 && definitions.depth_scale > 0)) {
        throw std::runtime_error("the data scales of a live survey must be greater than 0");
    }
    std::vector<std::string> requests = {header_request(survey.columns)};
    if (requests[0].size() > kLongestRequest) {
        throw std::runtime_error("the column names need " + std::to_string(requests[0].size()) +
                                 " bytes, a request holds " + std::to_string(kLongestRequest));
    }
    requests.push_back(request_text(kScales, format_shortest(definitions.coordinate_scale) + ' ' +
                                                 format_shortest(definitions.depth_scale) + ' ' +
                                                 std::to_string(definitions.flip_depth_sign)));
    requests.push_back(fields_request(definitions));
    requests.push_back(request_text(kSensorCounts, std::to_string(definitions.number_of_sensors) + ' ' +
                                                       std::to_string(definitions.components_per_sensor) + ' ' +
                                                       std::to_string(definitions.read_sensor_location)));
    for (int number = 1; number <= definitions.number_of_sensors; ++number) {
        requests.push_back(sensor_request(definitions, number));
    }
    requests.push_back(request_text(kEndOfDefinitions, ""));
    return requests;
}

} // namespace tarvo

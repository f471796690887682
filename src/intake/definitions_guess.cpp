#include "intake/definitions_guess.h"

#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

namespace tarvo {

namespace {

bool is_upper(char c)
{
    return c >= 'A' && c <= 'Z';
}
bool is_lower(char c)
{
    return c >= 'a' && c <= 'z';
}
// True where a new word begins although no separator stands before it: "fishDepth", "UTCTime", "mag1", "1x".
bool begins_word(std::string_view name, std::size_t at)
{
    if (at == 0) return false;
    const char before = name[at - 1];
    const char here = name[at];
    if (is_digit(before) != is_digit(here)) return true;
    if (is_lower(before) && is_upper(here)) return true;
    return is_upper(before) && is_upper(here) && at + 1 < name.size() && is_lower(name[at + 1]);
}

// The words of a column name, in upper case: "Tx_Bearing" has two, "Mag1_X" has three.
std::vector<std::string> words_of(std::string_view name)
{
    std::vector<std::string> words;
    bool in_word = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        if (!is_upper(c) && !is_lower(c) && !is_digit(c)) {
            in_word = false;
            continue;
        }
        if (!in_word || begins_word(name, at)) words.emplace_back();
        words.back() += upper_case(std::string_view(&c, 1));
        in_word = true;
    }
    return words;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) text += word;
    return text;
}

// What a magnetometer column is called, units and sensor number taken off.
struct SensorName {
    std::string stem;  // "TMI", "MAG", "B"
    int component = 0; // 0: total field, 1 to 3: x, y, z
    int number = -1;   // of the sensor; -1: none in the name
};

// In order of preference.
constexpr const char* kTotalFieldStems[] = {"TMI",      "MAGTMI",   "TOTALFIELD",   "TOTALMAG", "MAGTOTAL",
                                            "MAGFIELD", "MAGNETIC", "MAG",          "FIELD",    "MAGNETICFIELD",
                                            "TF",       "BTOTAL",   "MAGNETOMETER", "SENSOR"};
constexpr const char* kComponentStems[] = {"B", "T",  "MAG",      "TMI",      "FIELD",        "BFIELD", "MAGFIELD",
                                           "F", "FG", "FLUXGATE", "MAGNETIC", "MAGNETOMETER", "H",      "M"};

std::optional<SensorName> sensor_name_of(std::string_view column_name)
{
    constexpr std::size_t kMostDigits = 4; // more is no sensor number
    std::string letters;
    std::string digits;
    for (const std::string& word : words_of(column_name)) {
        (is_digit(word.front()) ? digits : letters) += word;
    }
    if (letters.ends_with("NT")) letters.resize(letters.size() - 2); // the unit
    if (digits.size() > kMostDigits) return std::nullopt;
    const int number = digits.empty() ? -1 : std::stoi(digits);
    for (const char* stem : kTotalFieldStems) {
        if (letters == stem) return SensorName{stem, 0, number};
    }
    for (const std::string stem : kComponentStems) {
        for (int component = 1; component <= 3; ++component) {
            const char axis = "?XYZ"[component];
            if (letters == stem + axis || letters == axis + stem) return SensorName{stem, component, number};
        }
    }
    return std::nullopt;
}

// The columns of one sensor, by component; -1: none.
using SensorColumns = std::array<int, 4>;

bool has_all_components(const SensorColumns& columns)
{
    return columns[1] >= 0 && columns[2] >= 0 && columns[3] >= 0;
}

class Guess {
public:
    Guess(const HeaderColumns& header_columns, std::string_view first_data_line)
        : names_(header_columns.names()), values_(names_.size()), is_free_(names_.size(), true)
    {
        for (const std::string& name : names_) words_.push_back(words_of(name));
        const std::vector<std::string> fields = fields_of_line(first_data_line);
        for (std::size_t column = 0; column < std::min(fields.size(), names_.size()); ++column) {
            values_[column] = numeric_value(fields[column]);
            is_free_[column] = values_[column].has_value();
        }
    }

    SurveyDefinitions definitions()
    {
        SurveyDefinitions proposal;
        for (FieldSlot& field : proposal.fields) field.name = "N/A";
        set_default_field_names(proposal);
        propose_sensors(proposal);
        for (int slot = 1; slot <= number_of_field_slots; ++slot) propose_slot(slot, proposal);
        return proposal;
    }

private:
    void propose_sensors(SurveyDefinitions& proposal);
    void propose_slot(int slot, SurveyDefinitions& proposal);
    std::map<std::string, std::map<int, SensorColumns>> sensor_columns() const;
    bool are_positions(const SensorColumns& columns) const;
    void take_sensors(const std::map<int, SensorColumns>& sensors, SurveyDefinitions& proposal);
    std::string template_of(const std::map<int, SensorColumns>& sensors, std::size_t component) const;
    std::string take(int column);

    const std::vector<std::string>& names_;
    std::vector<std::vector<std::string>> words_;
    std::vector<std::optional<double>> values_; // in the first data line
    std::vector<bool> is_free_;                 // may still be proposed
};

std::string Guess::take(int column)
{
    is_free_[static_cast<std::size_t>(column)] = false;
    return names_[static_cast<std::size_t>(column)];
}

// By stem, then by sensor number. Of columns that read the same, the first counts.
std::map<std::string, std::map<int, SensorColumns>> Guess::sensor_columns() const
{
    std::map<std::string, std::map<int, SensorColumns>> found;
    for (std::size_t column = 0; column < names_.size(); ++column) {
        const std::optional<SensorName> name = sensor_name_of(names_[column]);
        if (!name || !is_free_[column]) continue;
        SensorColumns& columns =
            found[name->stem].try_emplace(name->number, SensorColumns{-1, -1, -1, -1}).first->second;
        int& place = columns[static_cast<std::size_t>(name->component)];
        if (place < 0) place = static_cast<int>(column);
    }
    return found;
}

void Guess::propose_sensors(SurveyDefinitions& proposal)
{
    const auto found = sensor_columns();
    const auto sensors_with = [&found](const std::string& stem, auto is_wanted) {
        std::map<int, SensorColumns> sensors;
        if (found.contains(stem)) sensors = found.at(stem);
        std::erase_if(sensors, [&](const auto& sensor) { return !is_wanted(sensor.second); });
        return sensors;
    };
    for (const char* const stem : kComponentStems) {
        const auto sensors = sensors_with(stem, has_all_components);
        if (sensors.empty()) continue;
        proposal.components_per_sensor = 3;
        if (are_positions(sensors.begin()->second)) {
            proposal.components_per_sensor = 1;
            proposal.read_sensor_location = 1;
        }
        return take_sensors(sensors, proposal);
    }
    for (const char* const stem : kTotalFieldStems) {
        auto sensors = sensors_with(stem, [](const SensorColumns& columns) { return columns[0] >= 0; });
        if (sensors.size() > 1) sensors.erase(-1); // beside numbered sensors, the plain name is their mean or a copy
        if (!sensors.empty()) return take_sensors(sensors, proposal);
    }
}

// "Mag1, Mag1_X, Mag1_Y, Mag1_Z" holds components when they are as long as the total field, else coordinates.
bool Guess::are_positions(const SensorColumns& columns) const
{
    constexpr double kTolerance = 0.1; // of the total field
    if (columns[0] < 0) return false;
    const auto value = [&](std::size_t j) { return values_[static_cast<std::size_t>(columns[j])]; };
    if (!value(0) || !value(1) || !value(2) || !value(3)) return false;
    const double length = std::hypot(*value(1), *value(2), *value(3));
    return std::abs(length - std::abs(*value(0))) > kTolerance * std::abs(*value(0));
}

void Guess::take_sensors(const std::map<int, SensorColumns>& sensors, SurveyDefinitions& proposal)
{
    const bool vector = proposal.components_per_sensor == 3;
    const bool located = proposal.read_sensor_location == 1;
    for (std::size_t j = 1; j <= 3; ++j) {
        if (vector) proposal.component_templates[j] = template_of(sensors, j);
        if (located) proposal.coordinate_templates[j] = template_of(sensors, j);
    }
    if (!vector) proposal.component_templates[0] = template_of(sensors, 0);

    proposal.sensors.resize(1);
    for (const auto& [number, columns] : sensors) {
        SensorDefinition& sensor = proposal.sensors.emplace_back();
        if (!vector) sensor.component_columns[1] = take(columns[0]);
        for (std::size_t j = 1; j <= 3; ++j) {
            if (vector) sensor.component_columns[j] = take(columns[j]);
            if (located) sensor.coordinate_columns[j] = take(columns[j]);
        }
    }
    proposal.number_of_sensors = static_cast<std::int32_t>(sensors.size());
}

// The name with "*" for the number when that names all sensors, counted from 1; else "N/A".
std::string Guess::template_of(const std::map<int, SensorColumns>& sensors, std::size_t component) const
{
    const auto name_of = [&](const SensorColumns& columns) -> const std::string& {
        return names_[static_cast<std::size_t>(columns[component])];
    };
    std::string text = name_of(sensors.begin()->second);
    const std::size_t digit = text.find('1');
    if (digit == std::string::npos) return "N/A";
    text[digit] = '*';
    int expected = 1;
    for (const auto& [number, columns] : sensors) {
        std::string name;
        fill_name_from_template(text, expected, name);
        if (number != expected++ || name != name_of(columns)) return "N/A";
    }
    return text;
}

// What a quantity's column may be called, in order of preference; words in any order, with or without separators.
std::vector<std::string_view> names_of_slot(int slot)
{
    switch (slot) {
    case kTime: return {"TIME", "UTC TIME", "GPS TIME", "TIMESTAMP", "DATE TIME", "SECONDS", "SEC", "UTC", "T"};
    case kEast: return {"EAST", "EASTING", "X", "UTM E", "UTM X", "X COORD", "GRID E", "E"};
    case kNorth: return {"NORTH", "NORTHING", "Y", "UTM N", "UTM Y", "Y COORD", "GRID N", "N"};
    case kDepth: return {"DEPTH", "FISH DEPTH", "SENSOR DEPTH", "MAG DEPTH"};
    case kElevation: return {"ELEVATION", "ALTITUDE", "ALT", "ELEV", "HEIGHT", "Z"};
    case kDem: return {"DEM", "DTM", "TERRAIN", "GROUND", "SEABED", "BATHYMETRY", "TOPOGRAPHY"};
    case kHeading: return {"HEADING", "HDG", "BEARING", "COURSE", "COG", "YAW", "AZIMUTH"};
    case kPitch: return {"PITCH"};
    case kRoll: return {"ROLL"};
    case kLine: return {"LINE", "LINE NUMBER", "LINE NO", "LINE ID", "PROFILE", "TRANSECT", "TRIAL", "RUN"};
    default: return {};
    }
}

std::vector<std::string> sorted(std::vector<std::string> words)
{
    std::sort(words.begin(), words.end());
    return words;
}

bool is_called(const std::vector<std::string>& words, const std::vector<std::string>& wanted)
{
    return joined(words) == joined(wanted) || sorted(words) == sorted(wanted);
}

// Single letters do not count: "Tx_Y" is not a northing.
bool mentions(const std::vector<std::string>& words, const std::vector<std::string>& wanted)
{
    return std::all_of(wanted.begin(), wanted.end(), [&words](const std::string& word) {
        return word.size() >= 3 && std::find(words.begin(), words.end(), word) != words.end();
    });
}

void Guess::propose_slot(int slot, SurveyDefinitions& proposal)
{
    for (const auto fits : {is_called, mentions}) {
        for (const std::string_view name : names_of_slot(slot)) {
            for (std::size_t column = 0; column < names_.size(); ++column) {
                if (!is_free_[column] || !fits(words_[column], words_of(name))) continue;
                proposal.fields[static_cast<std::size_t>(slot)].name = take(static_cast<int>(column));
                return;
            }
        }
    }
}

struct LineShape {
    std::size_t fields = 0;
    std::size_t numbers = 0;
};

LineShape shape_of(std::string_view line)
{
    LineShape shape;
    const HeaderColumns columns = header_columns_of(line);
    for (const std::string& field : columns.names()) {
        ++shape.fields;
        if (is_numeric(field)) ++shape.numbers;
    }
    return shape;
}

} // namespace

SurveyDefinitions guess_definitions(const HeaderColumns& header_columns, std::string_view first_data_line)
{
    return Guess(header_columns, first_data_line).definitions();
}

int guess_header_line_number(std::span<const std::string> first_lines)
{
    for (std::size_t line = 0; line + 1 < first_lines.size(); ++line) {
        const LineShape names = shape_of(first_lines[line]);
        const LineShape data = shape_of(first_lines[line + 1]);
        const bool as_many = names.fields >= 2 && names.fields == data.fields;
        if (as_many && 2 * names.numbers < names.fields && 2 * data.numbers > data.fields) {
            return static_cast<int>(line) + 1;
        }
    }
    return 1;
}

} // namespace tarvo

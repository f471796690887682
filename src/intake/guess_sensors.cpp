#include "intake/guess_sensors.h"

#include "intake/guess_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace tarvo {

namespace {

// The columns of one sensor, by component; -1: none.
using SensorColumns = std::array<int, 4>;
using SensorsByNumber = std::map<int, SensorColumns>;

constexpr double kWeakestField = 20'000; // nT, of the Earth
constexpr double kStrongestField = 70'000;

// A field that does not vary may be a constant of the survey: it is taken only where no other is found.
enum class Standstill { refused, allowed };

class SensorSearch {
public:
    SensorSearch(const std::vector<GuessColumn>& columns, const std::vector<bool>& is_free, SurveyDefinitions& proposal)
        : columns_(columns), is_free_(is_free), proposal_(proposal)
    {
    }

    SensorsGuess guess();

private:
    bool can_be_field(std::size_t column, Standstill standstill) const;
    std::map<std::string, SensorsByNumber> sensor_columns(Standstill standstill) const;
    bool are_positions(const SensorColumns& sensor) const;
    void take(const SensorsByNumber& sensors, const char* reason);
    std::string template_of(const SensorsByNumber& sensors, std::size_t component) const;
    bool take_components(const std::map<std::string, SensorsByNumber>& found);
    bool take_total_fields(const std::map<std::string, SensorsByNumber>& found);
    bool take_field_like(Standstill standstill);
    std::string use(int column);

    const std::vector<GuessColumn>& columns_;
    const std::vector<bool>& is_free_;
    SurveyDefinitions& proposal_;
    SensorsGuess guessed_;
};

bool has_all_components(const SensorColumns& columns)
{
    return columns[1] >= 0 && columns[2] >= 0 && columns[3] >= 0;
}

std::string SensorSearch::use(int column)
{
    guessed_.columns.push_back(static_cast<std::size_t>(column));
    return columns_[static_cast<std::size_t>(column)].name;
}

bool SensorSearch::can_be_field(std::size_t column, Standstill standstill) const
{
    const GuessColumn& candidate = columns_[column];
    const bool stands_still = standstill == Standstill::refused && candidate.is_constant();
    return is_free_[column] && candidate.can_be_named && candidate.is_numeric() && !stands_still;
}

// By stem, then by sensor number. Of columns that read the same, the first counts.
std::map<std::string, SensorsByNumber> SensorSearch::sensor_columns(Standstill standstill) const
{
    std::map<std::string, SensorsByNumber> found;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const GuessColumn& candidate = columns_[column];
        const std::optional<SensorName> name = sensor_name_of(candidate.name);
        if (!name || !can_be_field(column, name->component == 0 ? standstill : Standstill::allowed)) continue;
        SensorColumns& columns =
            found[name->stem].try_emplace(name->number, SensorColumns{-1, -1, -1, -1}).first->second;
        int& place = columns[static_cast<std::size_t>(name->component)];
        if (place < 0) place = static_cast<int>(column);
    }
    return found;
}

// "Mag1, Mag1_X, Mag1_Y, Mag1_Z" holds components when they are as long as the total field, else coordinates.
bool SensorSearch::are_positions(const SensorColumns& sensor) const
{
    constexpr double kTolerance = 0.1; // of the total field
    if (sensor[0] < 0) return false;
    std::array<double, 4> first = {};
    for (std::size_t j = 0; j < first.size(); ++j) {
        const GuessColumn& column = columns_[static_cast<std::size_t>(sensor[j])];
        if (column.numbers.empty()) return false;
        first[j] = column.numbers.front();
    }
    const double length = std::hypot(first[1], first[2], first[3]);
    return std::abs(length - std::abs(first[0])) > kTolerance * std::abs(first[0]);
}

// The name with "*" for the number when that names all sensors, counted from 1; else "N/A".
std::string SensorSearch::template_of(const SensorsByNumber& sensors, std::size_t component) const
{
    const auto name_of = [&](const SensorColumns& sensor) -> const std::string& {
        return columns_[static_cast<std::size_t>(sensor[component])].name;
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

void SensorSearch::take(const SensorsByNumber& sensors, const char* reason)
{
    const bool vector = proposal_.components_per_sensor == 3;
    const bool located = proposal_.read_sensor_location == 1;
    for (std::size_t j = 1; j <= 3; ++j) {
        if (vector) proposal_.component_templates[j] = template_of(sensors, j);
        if (located) proposal_.coordinate_templates[j] = template_of(sensors, j);
    }
    if (!vector) proposal_.component_templates[0] = template_of(sensors, 0);

    proposal_.sensors.resize(1);
    for (const auto& [number, columns] : sensors) {
        SensorDefinition& sensor = proposal_.sensors.emplace_back();
        if (!vector) sensor.component_columns[1] = use(columns[0]);
        for (std::size_t j = 1; j <= 3; ++j) {
            if (vector) sensor.component_columns[j] = use(columns[j]);
            if (located) sensor.coordinate_columns[j] = use(columns[j]);
        }
    }
    proposal_.number_of_sensors = static_cast<std::int32_t>(sensors.size());
    guessed_.found = true;
    guessed_.reason = reason;
}

bool SensorSearch::take_components(const std::map<std::string, SensorsByNumber>& found)
{
    for (const std::string& stem : component_stems()) {
        if (!found.contains(stem)) continue;
        SensorsByNumber sensors = found.at(stem);
        std::erase_if(sensors, [](const auto& sensor) { return !has_all_components(sensor.second); });
        if (sensors.empty()) continue;
        const bool located = are_positions(sensors.begin()->second);
        proposal_.components_per_sensor = located ? 1 : 3;
        proposal_.read_sensor_location = located ? 1 : 0;
        take(sensors, located ? "named like a field and its place" : "named like the components of a field");
        return true;
    }
    return false;
}

bool SensorSearch::take_total_fields(const std::map<std::string, SensorsByNumber>& found)
{
    for (const std::string& stem : total_field_stems()) {
        if (!found.contains(stem)) continue;
        SensorsByNumber sensors = found.at(stem);
        std::erase_if(sensors, [](const auto& sensor) { return sensor.second[0] < 0; });
        if (sensors.size() > 1) sensors.erase(-1); // beside numbered sensors, the plain name is their mean or a copy
        if (sensors.empty()) continue;
        take(sensors, "named like a magnetic field");
        return true;
    }
    return false;
}

// One column whose name speaks of a field, or whose values lie in the range of the Earth's.
bool SensorSearch::take_field_like(Standstill standstill)
{
    constexpr int kByValues = 4;
    constexpr int kNot = 5;
    int best_rank = kNot;
    std::size_t best = 0;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const GuessColumn& candidate = columns_[column];
        if (!can_be_field(column, standstill) || is_beside_a_field(candidate.words)) continue;
        const bool in_range =
            !candidate.numbers.empty() && candidate.lowest() >= kWeakestField && candidate.highest() <= kStrongestField;
        const int by_name = field_rank_of(candidate.words);
        const int rank = by_name > 0 ? by_name : in_range ? kByValues : kNot;
        if (rank >= best_rank) continue;
        best_rank = rank;
        best = column;
    }
    if (best_rank == kNot) return false;
    take({{-1, {static_cast<int>(best), -1, -1, -1}}},
         best_rank == kByValues ? "values of 20,000 to 70,000 nT" : "the name speaks of a magnetic field");
    return true;
}

SensorsGuess SensorSearch::guess()
{
    if (take_components(sensor_columns(Standstill::refused))) return guessed_;
    for (const Standstill standstill : {Standstill::refused, Standstill::allowed}) {
        if (take_total_fields(sensor_columns(standstill)) || take_field_like(standstill)) break;
    }
    return guessed_;
}

} // namespace

SensorsGuess guess_sensors(const std::vector<GuessColumn>& columns, const std::vector<bool>& is_free,
                           SurveyDefinitions& proposal)
{
    return SensorSearch(columns, is_free, proposal).guess();
}

} // namespace tarvo

#pragma once

#include "definitions/field_slots.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// What the names of columns tell a guess.

// The words of a column name, in upper case: "Tx_Bearing" has two, "Mag1_X" three, "Time [ms]" two.
std::vector<std::string> words_of(std::string_view name);

bool has_word(const std::vector<std::string>& words, std::string_view word);

// The words as they are, in any order, with or without separators: "UTC_Time" is called "TIME UTC".
bool is_called(const std::vector<std::string>& words, const std::vector<std::string>& wanted);

// Every wanted word is among the words. Single letters and pairs do not count: "Tx_Y" is not a northing.
bool mentions(const std::vector<std::string>& words, const std::vector<std::string>& wanted);

// Without the names and numbers of datums, zones and units: "E_Nad83" is called "E".
std::vector<std::string> without_datum(const std::vector<std::string>& words);

// What a quantity's column may be called, in order of preference. slot: of FieldSlotIndex.
std::vector<std::string_view> names_of_slot(FieldSlotIndex slot);

// What a magnetometer column is called, units and sensor number taken off.
struct SensorName {
    std::string stem;  // "TMI", "MAG", "B"
    int component = 0; // 0: total field, 1 to 3: x, y, z
    int number = -1;   // of the sensor; -1: none in the name
};
std::optional<SensorName> sensor_name_of(std::string_view column_name);

// In order of preference.
const std::vector<std::string>& total_field_stems();
const std::vector<std::string>& component_stems();

// How far a name that is no plain sensor name speaks of a field: 1 like TMI, 2 like Mag, 3 otherwise; 0: not at all.
int field_rank_of(const std::vector<std::string>& words);

// True for names of what is beside a field and no reading of a sensor: base stations, models, qualities.
bool is_beside_a_field(const std::vector<std::string>& words);

} // namespace tarvo

#pragma once

#include "text/civil_date.h"
#include "text/field_splitter.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

enum class PositionForm {
    grid,    // metres, or what the coordinate scale makes metres of
    degrees, // longitude and latitude, as decimals or with minutes and seconds
    nmea     // dddmm.mmmm and a letter
};

// How a logger's lines differ from the plain form: the block "Data Format" of a definitions file.
struct DataFormat {
    Separator separator = Separator::any;
    bool names_in_line = true; // false: columns are called 1, 2, ... and data begin at the header line number
    std::vector<std::string> time_columns; // up to three, read as one text; empty: the Time slot's
    std::string time_form = "s";           // for compile_time_form
    double time_offset = 0;                // seconds, added to the time read
    CivilDate survey_date;                 // of the first clock time without a date
    PositionForm position_form = PositionForm::grid;
    std::string survey_grid;                // "UTM 35N", or what PROJ knows; empty: not known
    std::vector<std::string> null_texts;    // what stands for nothing, in any column
    std::string valid_column;               // 0, empty or no number in it: the sensor values are nulls; empty: none
    double layback = 0;                     // metres, at least 0
    double latency = 0;                     // seconds, at least 0
    std::vector<std::string> unknown_lines; // of the block, written back last

    bool operator==(const DataFormat&) const = default;
};

inline constexpr std::size_t kMostTimeColumns = 3;
inline constexpr std::string_view kDataFormatTitle = "Data Format";

// One key of the block, as a person sees it.
struct DataFormatKey {
    std::string_view name; // "Time Offset (s)"
    std::string_view help;
    std::vector<std::string_view> choices; // the values in their order, the default first; empty: free text
};

// In the order in which the block holds them.
std::vector<DataFormatKey> data_format_keys();

// How numbers are written: decimals asked for.
using NumberText = std::string (*)(double value, int decimals);

// The value of a key as the block holds it; empty at its default. key: of data_format_keys.
std::string data_format_value(const DataFormat& format, std::string_view key, NumberText number_text);

enum class KeyOutcome { taken, unknown_key, bad_value };
struct KeyTaking {
    KeyOutcome outcome = KeyOutcome::taken;
    std::string key;      // as the block writes it; empty when unknown
    std::string expected; // of a bad value: what it should have been
};

// Sets a key, its name in any case; an empty value is the default. A bad value leaves the record as it was.
KeyTaking set_data_format_value(DataFormat& format, std::string_view key, std::string_view value);

// The same from a line "Key : value", taken whole: the key stands before the first ":", blanks around both do not
// count.
KeyTaking take_data_format_line(DataFormat& format, std::string_view line);

// The lines "Key : value" of what is not at its default, in their order, unknown ones last, without line ends.
// time_slot_name: of the definitions' Time slot; naming it alone is the default of the time columns.
std::vector<std::string> data_format_lines(const DataFormat& format, std::string_view time_slot_name,
                                           NumberText number_text);

// "Date, \"Time, s\"" for such names, and back; nullopt for an empty name, an open quote, none or too many.
std::string time_columns_text(std::span<const std::string> names);
std::optional<std::vector<std::string>> time_columns_of(std::string_view text);

} // namespace tarvo

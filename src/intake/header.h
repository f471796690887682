#pragma once

#include "definitions/operator.h"
#include "definitions/survey_definitions.h"
#include "text/line_reader.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarvo {

struct HeaderReading {
    int status = -1; // 0: read; -1: refused, the operator has seen why
    std::string header;
    std::unique_ptr<LineReader> stream; // at the first data line; kept in mode 1 alone
};

// The header line number that the operator typed, rounded; nullopt when it is not a number or below 1.
std::optional<int> header_line_number_of(std::string_view text);

// Reads the file up to its header line, whose number counts from 1. Mode 1 keeps the stream open for the data lines.
HeaderReading read_header_line(int mode, const std::string& file_name, int header_line_number, Operator& op);

struct FoundColumn {
    int index = 0;                // from 1; 0: not in the header
    std::string spelling = "N/A"; // the header's own
};

// The column names of a data file, in file order.
class HeaderColumns {
public:
    HeaderColumns() = default;
    explicit HeaderColumns(std::vector<std::string> names);

    const std::vector<std::string>& names() const { return names_; }
    int count() const { return static_cast<int>(names_.size()); }

    // The first column of that name, whatever the case and the blanks around it; "N/A" and "" are never found.
    FoundColumn find_column(std::string_view name) const;

private:
    std::vector<std::string> names_;
    std::unordered_map<std::string, int> index_by_name_; // upper case, trimmed
};

// The columns that a header line names. A comment mark ("/", "//", "#" or "%") set off from the first name by a blank
// is none of them.
HeaderColumns header_columns_of(std::string_view header_line);

// A header without leading blanks, its comment mark taken off when a name follows it after a blank.
std::string_view without_comment_mark(std::string_view header);

// What to tell the operator when the first data line does not hold one field for each column; else empty.
std::string field_count_warning(const HeaderColumns& header_columns, std::string_view first_data_line);

// Which quantity stands in which header column. Columns count from 0, -1: not located.
struct FieldLocations {
    std::array<std::int32_t, number_of_field_slots + 1> column = {-1, -1, -1, -1, -1, -1,
                                                                  -1, -1, -1, -1, -1}; // by slot
    std::int32_t located_field_count = 0;
    std::vector<int> depth_channels;                // of slots 4, 5 and 6, those located or derived, in that order
    std::vector<int> attitude_channels;             // of slots 8 and 9, those located
    bool derived_dem = false;                       // DEM is computed from Depth and Elevation
    std::vector<std::int32_t> sensor_column = {-1}; // by sensor channel, from 1
    int header_column_count = 0;

    bool has(FieldSlotIndex slot) const { return column[static_cast<std::size_t>(slot)] >= 0; }
    std::int32_t sensor_channel_count() const { return static_cast<std::int32_t>(sensor_column.size()) - 1; }
};

// Finds every column that the definitions name and notes in them what was found: field_index, column_slots and
// location_slots. Missing columns are told to the operator and count as absent. Sensor channels run from 1, sensor by
// sensor: its components, then its X, Y, Z columns when locations are read. Returns 0, or -1 after a fault.
int locate_header_fields(const HeaderColumns& header_columns, SurveyDefinitions& definitions, FieldLocations& locations,
                         Operator& op);

} // namespace tarvo

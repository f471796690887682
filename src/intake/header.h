#pragma once

#include "definitions/field_locations.h"
#include "definitions/header_columns.h"
#include "definitions/survey_definitions.h"
#include "ports/operator.h"
#include "text/line_reader.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

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

// The columns that a header line names. A comment mark ("/", "//", "#" or "%") set off from the first name by a blank
// is none of them.
HeaderColumns header_columns_of(std::string_view header_line);

// A header without leading blanks, its comment mark taken off when a name follows it after a blank.
std::string_view without_comment_mark(std::string_view header);

// One warning when the first data line does not hold one field for each column; else none.
Warnings field_count_warnings(const HeaderColumns& header_columns, std::string_view first_data_line);

struct ColumnLocating {
    int status = -1;   // 0: done
    std::string fault; // what the operator is to be shown after -1
    Warnings warnings; // of the columns that are missing, which count as absent
};

// Finds every column that the definitions name and notes in them what was found: field_index, column_slots and
// location_slots. Sensor channels run from 1, sensor by sensor: its components, then its X, Y, Z columns when locations
// are read.
ColumnLocating locate_header_fields(const HeaderColumns& header_columns, SurveyDefinitions& definitions,
                                    FieldLocations& locations);

} // namespace tarvo

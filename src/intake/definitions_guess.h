#pragma once

#include "definitions/survey_definitions.h"
#include "intake/header.h"

#include <span>
#include <string>
#include <string_view>

namespace tarvo {

// A first proposal of what the columns of a data file mean, from the names in its header, for the operator to correct.
// What no column seems to hold is "N/A". Columns whose field in first_data_line is not a number are left out; an empty
// line rules nothing out. Coordinates in degrees are never proposed: positions are metres.
SurveyDefinitions guess_definitions(const HeaderColumns& header_columns, std::string_view first_data_line = {});

// The number, from 1, of the line that names the columns: the first one that is mostly names and stands before a line
// of as many fields that are mostly numbers. 1 when none is.
int guess_header_line_number(std::span<const std::string> first_lines);

} // namespace tarvo

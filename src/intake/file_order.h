#pragma once

#include "definitions/survey_definitions.h"
#include "ports/operator.h"

#include <string>
#include <vector>

namespace tarvo {

// Looks into all files of a survey and puts them in the order of their first valid times; those whose times have no
// date, or that have no valid time, stay in the order given. False: one of them cannot be read, or lacks a column that
// the definitions name and another file has; the operator has been told which.
bool put_in_order(std::vector<std::string>& file_names, int header_line_number, const SurveyDefinitions& definitions,
                  Operator& op);

} // namespace tarvo

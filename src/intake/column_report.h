#pragma once

#include "definitions/survey_definitions.h"
#include "intake/header.h"

#include <string>
#include <vector>

namespace tarvo {

// A column that the definitions name.
struct DefinedColumn {
    std::string quantity; // "Time", "sensor 2", "sensor 2 Ty", "sensor 2 X"
    std::string name;
    bool is_found = false; // in the header
};

// Field slots in their order, then sensor by sensor; quantities that are not used are left out.
std::vector<DefinedColumn> defined_columns(const SurveyDefinitions& definitions, const HeaderColumns& header_columns);

// The columns of the report that are found, or that are missing, each as "name (quantity)", after a comma; the first
// few of many.
std::string found_columns_text(const std::vector<DefinedColumn>& report);
std::string missing_columns_text(const std::vector<DefinedColumn>& report); // empty: none is missing

// Warnings on one line, the first few of many.
std::string column_warnings_text(const Warnings& warnings);

} // namespace tarvo

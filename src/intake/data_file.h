#pragma once

#include "definitions/header_columns.h"
#include "definitions/survey_definitions.h"
#include "ports/operator.h"
#include "text/line_reader.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// A data file opened behind its names.
struct DataFile {
    HeaderColumns columns;
    std::string names_line;            // as it stands in the file; empty where columns are numbered
    std::unique_ptr<LineReader> lines; // at the first data line
};

// Opens the file and reads its line of names as the definitions say. Where the data format says that there is none, the
// header line number is that of the first data line. nullopt: refused, the operator has been told.
std::optional<DataFile> open_data_file(const std::string& file_name, int header_line_number,
                                       const SurveyDefinitions& definitions, Operator& op);

// The columns that a line of names holds.
HeaderColumns columns_of_names(std::string_view names_line, const SurveyDefinitions& definitions);

// Columns called 1, 2, ... as many as the longest of the first data lines has fields.
HeaderColumns numbered_columns(std::span<const std::string> first_data_lines, const SurveyDefinitions& definitions);

// The fields of a data line as texts. For a few lines.
std::vector<std::string> fields_by_format(std::string_view line, const SurveyDefinitions& definitions);

// Whether the file names its columns in a line.
bool has_line_of_names(const SurveyDefinitions& definitions);

} // namespace tarvo

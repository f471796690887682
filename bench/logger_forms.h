#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo::survey {

enum class LoggerForm {
    clock,            // date and clock time in two columns, ";" between fields
    clock_and_degrees // the same, with latitude and longitude for metres of UTM 32N
};

// Writes the lines of a generated survey (its time in the first column, then east and north) as a logger would, with
// definitions beside them. Throws std::runtime_error for a file that cannot be read or written.
void write_logger_form(const std::string& survey_file, LoggerForm form, const std::string& data_file);

// Cuts the survey into files of so many lines, with the names in every one and the definitions beside the first.
// Returns their names.
std::vector<std::string> write_in_parts(const std::string& survey_file, std::int64_t part_lines,
                                        const std::string& folder);

} // namespace tarvo::survey

#pragma once

#include "definitions/survey_definitions.h"
#include "ports/operator.h"

#include <string>
#include <string_view>

namespace tarvo {

struct DefinitionsReading {
    int status = -1;     // 0: read; -1: refused, the operator has seen why
    int version = 0;     // 1, 2 or 3; 0 when the first line was not recognised
    int field_lines = 0; // field lines that the file announces
};

// Reads a definitions file into `definitions`. The header line number changes only when the file names one. A file that
// is not a definitions file changes nothing; what was read before a later error keeps its new value. Lines of the data
// format that are not known are kept, and the operator is told of them.
DefinitionsReading read_definitions(const std::string& file_name, SurveyDefinitions& definitions,
                                    int& header_line_number, Operator& op);

// Decimals of the numbers in a definitions file, and of the boxes in which they are edited.
inline constexpr int kScaleDecimals = 4;
inline constexpr int kArmDecimals = 3; // millimetres and degrees

enum class NumberDigits {
    fixed, // as many decimals as above
    all    // as many as a number needs
};

// What fixed decimals would make of the scales and arms: "the coordinate scale 0.3048006 would be written as 0.3048".
// Empty: nothing is lost.
std::string lost_digits(const SurveyDefinitions& definitions);

// Writes the definitions as a version 3.0 file, replacing the old one whole or not at all. Where sensor positions come
// from lever arms, the coordinate columns become "N/A", in memory too. Returns 0, or -1 after telling the operator.
int write_definitions(const std::string& file_name, SurveyDefinitions& definitions, int header_line_number,
                      Operator& op, NumberDigits digits = NumberDigits::fixed);

// The same file as a text, but with every number in as many decimals as it needs: read back, nothing is lost.
std::string exact_definitions_text(const SurveyDefinitions& definitions, int header_line_number);

// "survey/line7.csv" gives "survey/line7.def".
std::string definitions_file_name_for(std::string_view data_file_name);

} // namespace tarvo

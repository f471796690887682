#pragma once

#include "definitions/survey_definitions.h"
#include "ports/operator.h"

#include <optional>
#include <string>

namespace tarvo {

// The menu entries of the definitions dialog. Both return the name of the file that was read or written, or nullopt
// when the operator chose none, would not overwrite one, or has been told of a failure.

// Reads a chosen file. One that is refused changes nothing.
std::optional<std::string> menu_file_read(SurveyDefinitions& working, int& header_line_number, Operator& op);

// Writes a chosen file, after a question when it exists, and reports it done.
std::optional<std::string> menu_file_save(SurveyDefinitions& working, int header_line_number, Operator& op);

// Writes definitions that were edited. Where the file's fixed decimals would change a scale or an arm, the operator is
// told and asked first. 0 or -1.
int write_edited_definitions(const std::string& file_name, SurveyDefinitions& working, int header_line_number,
                             Operator& op);

// "Data Field Definitions : bay.def"; without a file the words alone.
std::string definitions_caption(const std::string& file_name);

} // namespace tarvo

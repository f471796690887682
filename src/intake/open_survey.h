#pragma once

#include "ports/operator.h"
#include "survey/survey_state.h"

namespace tarvo {

enum class SurveyOpening {
    opened,
    without_definitions, // of a file that has a header line; the operator has not been told yet
    refused              // the operator has been told
};

// Makes data files, the first by name at the head, the open survey: nothing of the last one stays but the parameters
// and settings. The definitions beside it, its header line and its pick file are read; its data lines are not.
// header_line: overrides the number that the definitions give.
SurveyOpening open_survey(SurveyState& survey, PickWorkflow& pick_work, const std::vector<std::string>& data_files,
                          const std::optional<std::string>& header_line, Operator& op);

// Reads the header line again, after its number or the definitions were changed. 0 or -1; a refusal has been shown.
int read_survey_header(SurveyState& survey, Operator& op);

} // namespace tarvo

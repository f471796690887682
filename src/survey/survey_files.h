#pragma once

#include "survey/survey_state.h"

#include <string>
#include <vector>

namespace tarvo {

// The files that a survey is made of and keeps: data, definitions and picks. definitions_file: empty for the one beside
// the data. No export may take the place of one.
std::vector<std::string> files_of_survey(const std::string& data_file, const std::string& definitions_file);
std::vector<std::string> files_of_survey(const SurveyState& survey);

// The same name, or two names of one file.
bool is_same_file(const std::string& one, const std::string& other);

// Throws std::runtime_error when a file of this name belongs to the survey.
void refuse_file_of_survey(const SurveyState& survey, const std::string& file_name);

} // namespace tarvo

#include "survey/survey_files.h"

#include "definitions/definitions_file.h"

#include <filesystem>
#include <stdexcept>

namespace tarvo {

std::vector<std::string> files_of_survey(const std::string& data_file, const std::string& definitions_file)
{
    return {data_file, pick_file_name_for(data_file),
            definitions_file.empty() ? definitions_file_name_for(data_file) : definitions_file};
}

std::vector<std::string> files_of_survey(const SurveyState& survey)
{
    std::vector<std::string> files;
    if (!survey.data_file_name.empty()) {
        files = files_of_survey(survey.data_file_name, survey.definitions_file_name);
    }
    if (!survey.picks.pick_file_name.empty()) files.push_back(survey.picks.pick_file_name);
    return files;
}

bool is_same_file(const std::string& one, const std::string& other)
{
    std::error_code neither_is_there;
    return one == other || std::filesystem::equivalent(one, other, neither_is_there);
}

void refuse_file_of_survey(const SurveyState& survey, const std::string& file_name)
{
    for (const std::string& own : files_of_survey(survey)) {
        if (is_same_file(own, file_name)) {
            throw std::runtime_error(file_name + " would be overwritten: it belongs to the survey");
        }
    }
}

} // namespace tarvo

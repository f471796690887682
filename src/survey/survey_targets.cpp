#include "survey/survey_targets.h"

#include <exception>

namespace tarvo {

FitSurvey fit_survey(const SurveyState& survey)
{
    return {survey.processing, survey.survey_definitions, survey.locations};
}

EarthField earth_field_of(const SurveyState& survey, const FitSurvey& fitted, const Projection* grid)
{
    return earth_field(fitted, survey.target_settings, grid);
}

std::unique_ptr<Projection> survey_grid(const SurveyDefinitions& definitions, const Projections& projections,
                                        std::string& fault)
{
    if (!definitions.data_format || definitions.data_format->survey_grid.empty()) return nullptr;
    try {
        return projections.open(definitions.data_format->survey_grid);
    } catch (const std::exception& refused) {
        fault = refused.what();
        return nullptr;
    }
}

} // namespace tarvo

#include "survey/survey_targets.h"

#include "survey/survey_residual.h"
#include "targets/fit_export.h"

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

ProposalTask proposal_task(const SurveyState& survey, const FieldDirection& field)
{
    ProposalTask task;
    task.field = field;
    task.threshold = survey.target_settings.ProposalThreshold;
    task.picks = places_of_picks(survey.picks);
    if (!has_residual(survey)) return task;
    task.window = survey.residual.window.width;
    for (std::size_t sensor = 1; sensor < survey.residual.values.size(); ++sensor) {
        task.residual.push_back(survey.residual.values[sensor].data());
    }
    return task;
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

#include "survey/survey_targets.h"

namespace tarvo {

FitSurvey fit_survey(const SurveyState& survey)
{
    return {survey.processing, survey.survey_definitions, survey.locations};
}

EarthField earth_field_of(const SurveyState&, const FitSurvey& fitted, const Projection* grid)
{
    return earth_field(fitted, {}, grid);
}

} // namespace tarvo

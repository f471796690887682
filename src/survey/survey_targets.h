#pragma once

#include "ports/projection.h"
#include "survey/survey_state.h"
#include "targets/earth_field.h"
#include "targets/fit_survey.h"

namespace tarvo {

// The stored samples as fits see them. It looks at the survey, which must outlive it and stay as it is.
FitSurvey fit_survey(const SurveyState& survey);

// The Earth's field for the fits of this survey: as typed, by the model of the whole field, or assumed.
// grid: the survey's; nullptr: none.
EarthField earth_field_of(const SurveyState& survey, const FitSurvey& fitted, const Projection* grid);

} // namespace tarvo

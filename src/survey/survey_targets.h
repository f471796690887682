#pragma once

#include "ports/projection.h"
#include "survey/survey_state.h"
#include "targets/earth_field.h"
#include "targets/fit_survey.h"
#include "targets/proposals.h"

#include <memory>
#include <string>

namespace tarvo {

// The stored samples as fits see them. It looks at the survey, which must outlive it and stay as it is.
FitSurvey fit_survey(const SurveyState& survey);

// The Earth's field for the fits of this survey: as typed, by the model of the whole field, or assumed.
// grid: the survey's; nullptr: none.
EarthField earth_field_of(const SurveyState& survey, const FitSurvey& fitted, const Projection* grid);

// What proposals are made from: the survey's residual, threshold and picks. A survey without a residual has nothing to
// propose.
ProposalTask proposal_task(const SurveyState& survey, const FieldDirection& field);

// The grid that the definitions name; nullptr: they name none, or one that is refused, and then `fault` says why.
std::unique_ptr<Projection> survey_grid(const SurveyDefinitions& definitions, const Projections& projections,
                                        std::string& fault);

} // namespace tarvo

#pragma once

#include "ports/operator.h"
#include "survey/survey_state.h"
#include "tools/process_options.h"

namespace tarvo {

// Something of the targets was asked for.
bool wants_targets(const TargetFiles& files);

// Fits the survey's picks, which lie on the track, searches for more, and writes what was asked for. False: something
// failed and has been said. The report's map may make the survey's residual.
bool write_targets(SurveyState& survey, const TargetFiles& files, Operator& op);

} // namespace tarvo

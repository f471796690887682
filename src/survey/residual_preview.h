#pragma once

#include "survey/survey_state.h"

#include <string>
#include <vector>

namespace tarvo {

// A line as the preview of the residual shows it, by record; a value that is not known is a not-a-number. Near a line
// end, where the window is cut below half, the residual stands in `pale` instead.
struct ResidualPreview {
    std::vector<double> distance;
    std::vector<double> field;
    std::vector<double> background;
    std::vector<double> residual;
    std::vector<double> pale;
    std::string note; // the window in metres, or why the parameters do not suit the survey
};
ResidualPreview residual_preview(const SurveyState& survey, const ProcessingParameters& parameters, int line,
                                 int sensor);

// The lines by their numbers, the first one's at 0.
std::vector<std::string> preview_line_names(const SurveyState& survey);

// The line of the current record, else the longest; 0: none.
int first_preview_line(const SurveyState& survey);

} // namespace tarvo

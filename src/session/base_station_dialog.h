#pragma once

#include "ports/operator.h"
#include "survey/survey_state.h"

#include <string>
#include <utility>
#include <vector>

namespace tarvo {

// Survey > Base station: what is told of the readings in use.
struct BaseStationPage {
    bool has_base = false;
    std::vector<std::pair<std::string, std::string>> rows; // caption, text
    std::vector<TimeSpan> gaps;                            // seconds since 1970
};
BaseStationPage base_station_page(const SurveyState& survey);

// The readings as a curve: seconds since 1970 and nT, a not-a-number between two that say nothing of the time between.
struct BaseStationCurve {
    std::vector<double> time;
    std::vector<double> field;
};
BaseStationCurve base_station_curve(const BaseStation& base);

// Asks for a file of readings and puts it to use. False: none was chosen, or it was refused, which the operator has
// been told; nothing has changed then.
bool choose_base_station(SurveyState& survey, Operator& op);

void remove_base_station(SurveyState& survey);

} // namespace tarvo

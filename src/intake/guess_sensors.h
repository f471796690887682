#pragma once

#include "definitions/survey_definitions.h"
#include "intake/guess_columns.h"

#include <string>
#include <vector>

namespace tarvo {

struct SensorsGuess {
    bool found = false;
    std::vector<std::size_t> columns; // that the sensors use
    std::string reason;
};

// Proposes the sensors, their templates and, where they stand beside a total field, their positions. is_free: by
// column, whether it may be taken. Names count most: like TMI before Mag before other field-like ones; then values of
// 20,000 to 70,000 nT.
SensorsGuess guess_sensors(const std::vector<GuessColumn>& columns, const std::vector<bool>& is_free,
                           SurveyDefinitions& proposal);

} // namespace tarvo

#pragma once

#include "definitions/data_format.h"
#include "intake/guess_columns.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvo {

struct PositionGuess {
    std::size_t east = 0; // columns by index, from 0: the easting or longitude
    std::size_t north = 0;
    PositionForm form = PositionForm::grid;
    std::string survey_grid; // of degrees: the UTM zone of their median
    std::string reason;
};

// Metres win over degrees. nullopt: none; `open` says what stands against columns that look like positions.
std::optional<PositionGuess> guess_positions(const std::vector<GuessColumn>& columns, std::string& open);

} // namespace tarvo

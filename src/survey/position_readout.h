#pragma once

#include "display/track_view.h"
#include "ports/projection.h"
#include "survey/survey_state.h"

#include <memory>
#include <string>

namespace tarvo {

// A place of the survey's grid as people write it; empty: not known.
struct PositionTexts {
    std::string grid;                // "436944.93 7658810.64"
    std::string decimal_degrees;     // "69.032618 N, 169.420907 E", of WGS 84; likewise only with a survey grid
    std::string degrees_and_minutes; // "69\u00b0 01.9571' N, 169\u00b0 25.2544' E"
};

// Reads longitudes and latitudes off the grid that the definitions name. The grid is opened once.
class PositionReadout {
public:
    PositionTexts texts(const SurveyState& survey, const GridPlace& place);

private:
    void open_grid(const SurveyState& survey);

    std::string grid_name_;
    std::unique_ptr<Projection> grid_; // null: none is named, or one that is not known
};

} // namespace tarvo

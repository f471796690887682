#pragma once

#include "display/backdrop.h"
#include "ports/operator.h"

#include <span>
#include <string>

namespace tarvo {

// What lies under a picture of the track.
struct LayersUnderneath {
    Backdrop backdrop;
    bool all_read = true; // what could not be read has been told
};

// Reads the layers of files, the first lowest, for a view of the survey; a NAME.layers stands for the layers in it.
// survey_grid: as the definitions name it. What is to be known of a layer is told: that it is taken as lying in the
// survey's grid, or that it does not meet the survey (survey: its extent).
LayersUnderneath read_layers_underneath(std::span<const std::string> files, const std::string& survey_grid,
                                        const MapView& view, const WorldExtent& survey, Operator& op);

} // namespace tarvo

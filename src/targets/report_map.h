#pragma once

#include "processing/track_table.h"
#include "targets/target_list.h"

#include <span>
#include <string>
#include <vector>

namespace tarvo {

// What a report's map shows.
struct MapScene {
    TrackTable track;
    std::vector<const double*> residual = {nullptr}; // by sensor from 1 and by record, nT; only element 0: not known
    std::span<const Target> targets;
};

// The whole track as SVG, north up, with the residual in colours (blue below, red above the background), the targets'
// places by name, grid lines and a scale. Without a position: an empty text.
std::string survey_map(const MapScene& scene, double width);

} // namespace tarvo

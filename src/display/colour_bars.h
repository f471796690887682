#pragma once

#include "display/picture.h"
#include "display/track_scene.h"
#include "display/track_search.h"
#include "ports/operator.h"

#include <cstdint>
#include <span>

namespace tarvo {

// Redraws the sensors' colour bars: the shown values of the highlighted section against the distance along the
// track, the current record in the middle, as wide as "TrackAxisLength".
// bars: sensors 1.., element 0 unused; a sensor without values has a black bar.
// section: calculated around the current record when it is empty.
// Without track points nothing is drawn, without a current record the bars are cleared.
void display_TG_bars(std::span<Picture> bars, const TrackScene& scene, std::int32_t current_record,
                     SectionLimits& section, Operator& op);

} // namespace tarvo

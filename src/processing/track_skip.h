#pragma once

#include <cstdint>

namespace tarvo {

// The range of the pan control, whose positions must stay below 32767.
struct PanRange {
    std::int32_t PanSpan = 0;   // positions to pan over
    std::int32_t TrackSkip = 1; // records per pan step
    std::int32_t PanMax = 0;    // largest pan position
    std::int32_t position = 0;  // the control's position, brought to PanMax when it was beyond
};

// pan_span: the number of track points for the whole track, last - first - 1 for a displayed range of records; below
// 0 counts as 0.
PanRange calculate_track_skip(std::int32_t pan_span, std::int32_t position);

} // namespace tarvo

#include "processing/track_skip.h"

#include <algorithm>

namespace tarvo {

PanRange calculate_track_skip(std::int32_t pan_span, std::int32_t position)
{
    constexpr std::int32_t kPanLimit = 32767;

    PanRange range;
    range.PanSpan = std::max(pan_span, 0);
    range.PanMax = range.PanSpan;
    while (range.PanMax >= kPanLimit) {
        ++range.TrackSkip;
        range.PanMax = (range.PanSpan - 1) / range.TrackSkip + 1;
    }
    while (std::int64_t{range.PanMax} * range.TrackSkip > range.PanSpan) --range.PanMax;
    range.position = std::min(position, range.PanMax);
    return range;
}

} // namespace tarvo

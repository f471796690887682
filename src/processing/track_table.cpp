#include "processing/track_table.h"

#include <algorithm>

namespace tarvo {

std::optional<PositionExtent> position_extent(const TrackTable& track)
{
    std::optional<PositionExtent> extent;
    for (std::int32_t record = 1; record <= track.count; ++record) {
        if (!is_placed(track, record)) continue;
        const double x = track.easting[record];
        const double y = track.northing[record];
        if (!extent) extent = PositionExtent{x, x, y, y};
        extent->x_min = std::min(extent->x_min, x);
        extent->x_max = std::max(extent->x_max, x);
        extent->y_min = std::min(extent->y_min, y);
        extent->y_max = std::max(extent->y_max, y);
    }
    return extent;
}

} // namespace tarvo

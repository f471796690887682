#include "processing/track_speed.h"

#include "processing/fixed_time.h"

#include <algorithm>

namespace tarvo {

double speed_over_ground(const TrackTable& track, std::int32_t record)
{
    if (record < 2 || record > track.count) return kNull;
    if (!has_position(track, record - 1) || !has_position(track, record)) return kNull;
    const double seconds = (track.time[record] - track.time[record - 1]) * kSecondsPerDay;
    // Days as 64-bit floats resolve about a microsecond: anything below a millisecond is rounding.
    constexpr double kShortestStep = 0.001;
    if (!(seconds >= kShortestStep)) return kNull;
    return (track.distance[record] - track.distance[record - 1]) / seconds;
}

void fill_speeds(const TrackTable& track, std::int32_t first, std::int32_t last, std::vector<double>& speeds)
{
    speeds.resize(static_cast<std::size_t>(track.count) + 1, kNull);
    for (std::int32_t record = std::max(first, 1); record <= std::min(last, track.count); ++record) {
        speeds[static_cast<std::size_t>(record)] = speed_over_ground(track, record);
    }
}

} // namespace tarvo

#pragma once

#include "processing/track_table.h"

#include <cstdint>
#include <vector>

namespace tarvo {

// Metres a second from the record before to this one, kNull where a position is missing or no time has passed.
double speed_over_ground(const TrackTable& track, std::int32_t record);

// Those of records first to last into a column by record, made long enough for all of the track.
void fill_speeds(const TrackTable& track, std::int32_t first, std::int32_t last, std::vector<double>& speeds);

} // namespace tarvo

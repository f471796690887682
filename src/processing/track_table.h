#pragma once

#include "text/numbers.h"

#include <cstdint>
#include <optional>

namespace tarvo {

// The stored track, one row per stored record, seen column by column. Rows run from 1 to count; element 0 of every
// column is there and unused. A view: it owns nothing and holds until the sample store grows or is cleared.
struct TrackTable {
    std::int32_t count = 0;
    const double* distance = nullptr; // column 0: metres along the track, 0 at the first record, never falling
    const double* time = nullptr;     // column 1: record time, days since 1899-12-30
    const double* easting = nullptr;  // column 2: metres, kNull where the record has no position
    const double* northing = nullptr; // column 3: likewise
};

// A position is known as a whole or not at all.
inline bool has_position(const TrackTable& track, std::int32_t record)
{
    return is_valid_channel(track.easting[record]) && is_valid_channel(track.northing[record]);
}

// A known position that somebody can have been at.
inline bool is_placed(const TrackTable& track, std::int32_t record)
{
    return is_in_world(track.easting[record]) && is_in_world(track.northing[record]);
}

// The least and greatest coordinates of all positions in the world, metres; nullopt when there is none.
struct PositionExtent {
    double x_min = 0;
    double x_max = 0;
    double y_min = 0;
    double y_max = 0;
};
std::optional<PositionExtent> position_extent(const TrackTable& track);

} // namespace tarvo

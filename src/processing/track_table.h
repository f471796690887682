#pragma once

#include <cstdint>

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

} // namespace tarvo

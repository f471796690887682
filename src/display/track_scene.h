#pragma once

#include "display/display_settings.h"
#include "processing/track_table.h"

#include <cstdint>
#include <span>

namespace tarvo {

// The picks as the track image needs them.
struct PickMarks {
    std::span<const std::int32_t> records; // of picks 1.., element 0 unused; below 1: the pick is not on the track
    std::int32_t current_pick = -1;        // -1: none
};

struct Backdrop; // of display/backdrop.h

// What the display draws from. It owns nothing and holds as long as the sample store is not changed.
struct TrackScene {
    TrackTable track;
    const double* display_values = nullptr; // of sensor 1, records 1..track.count; null while there are none
    float sample_rate = 1.0F;               // stored samples per second
    DisplaySettings settings;
    PickMarks picks;
    const Backdrop* backdrop = nullptr; // what lies under the track; null: nothing, it is drawn on black
};

} // namespace tarvo

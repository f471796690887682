#pragma once

#include "display/colour_scale.h"
#include "display/display_settings.h"
#include "display/quantity.h"
#include "processing/track_speed.h"
#include "processing/track_table.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tarvo {

// The picks as the track image needs them.
struct PickMarks {
    std::span<const std::int32_t> records; // of picks 1.., element 0 unused; below 1: the pick is not on the track
    std::int32_t current_pick = -1;        // -1: none
    // Where they were marked: 1 easting, 2 northing, metres; empty: on their records.
    std::span<const std::array<double, 4>> places = {};
    double tolerance = 0; // metres: a pick farther from its record stands where it was marked
};

struct Backdrop;     // of display/backdrop.h
struct ColouredGrid; // of display/grid_picture.h

// What the display draws from. It owns nothing and holds as long as the sample store is not changed.
struct TrackScene {
    TrackTable track;
    const Quantity* quantity = &kQuantities[0]; // shown
    // Its values by sensor from 1, element 0 unused, and by record; null where there are none yet. Empty for the speed,
    // which is made from the track.
    std::vector<const double*> sensor_values;
    ColourScale colours;
    float sample_rate = 1.0F; // stored samples per second
    DisplaySettings settings;
    PickMarks picks;
    int symbol_scale = 1;               // pixels of squares, rings and lines for each of a common screen's
    const Backdrop* backdrop = nullptr; // what lies under the track; null: nothing, it is drawn on black
    const ColouredGrid* grid = nullptr; // lies over the backdrop; null: none
};

// The shown quantity's values of one sensor by record.
class ShownValues {
public:
    ShownValues(const TrackScene& scene, std::size_t sensor)
        : track_(scene.track), is_speed_(scene.quantity->id == QuantityId::speed)
    {
        if (sensor < scene.sensor_values.size()) values_ = scene.sensor_values[sensor];
    }
    bool exist() const { return is_speed_ || values_ != nullptr; }
    double operator[](std::int32_t record) const // only where they exist
    {
        return values_ != nullptr ? values_[record] : speed_over_ground(track_, record);
    }

private:
    const TrackTable& track_;
    const double* values_ = nullptr;
    bool is_speed_;
};

} // namespace tarvo

#pragma once

#include "display/profile_window.h"

namespace tarvo {

// The stretch of the track that the profiles show: as long as the axis and about a record, until the operator zooms
// along the track or moves it.
class ProfileStretch {
public:
    // About no record of the track: from 0 on.
    DistanceRange shown(const TrackTable& track, std::int32_t record, float axis_length) const;

    // Makes the stretch that is now shown `factor` times as long; `distance` stays in its place on the screen.
    void zoom(const DistanceRange& now_shown, double distance, double factor);
    void move(double metres) { shift_ += metres; }
    void centre() { shift_ = 0; } // on the record

private:
    double length_factor_ = 1; // of the axis length; below 1: enlarged
    double shift_ = 0;         // metres from the record to the middle
};

// The value axis of one of the profiles: a given range about the middle of its curves, under the operator's zoom.
struct ValueAxis {
    bool from_zero = false; // 0 stays at the bottom, whatever the middle
    double range = 1;       // its length unless zoomed, in the axis's unit
    double middle = 0;
    double factor = 1;      // of the range; below 1: enlarged
    bool is_fitted = false; // kept so that no curve leaves the axis, until the operator zooms

    ValueExtent shown() const;
    void zoom(double by);
    void reset() { factor = 1, is_fitted = false; }
    void follow(const ValueExtent& curves); // fits it to them where it is to be; without values it stays
};

// Where the middle of an axis shows all of its curves, if its range is long enough for them, and else the first one.
double middle_of_curves(const ValueExtent& first, const ValueExtent& all, double range);

// The wanted step from tick to tick of an axis, or a round one where the axis shows so little or so much that there
// were too few ticks, or more than it has room for. range: length of the axis in its units, above 0. wanted: 0 for
// none.
double readable_tick_step(double wanted, double range, int most_steps);

// Decimals that tell the ticks of such a step from each other, 6 at most.
int decimals_of_step(double step);

} // namespace tarvo

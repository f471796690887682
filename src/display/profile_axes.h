#pragma once

#include "display/profile_window.h"

namespace tarvo {

// The stretch of the track that graphs and bars show: as long as the section and about a record, from 0 on about no
// record of the track.
DistanceRange section_about(const TrackTable& track, std::int32_t record, float section_length);

// The length of the section, metres, made about `factor` times as long, within the limits of its setting: a round one
// after a whole notch of the wheel, else of four places.
double zoomed_section_length(float length, double factor);

// The least length of four places, within those limits, that has so many metres in it.
double section_length_over(double metres);

// The value axis of one of the profiles: a given range about the middle of its curves, under the operator's zoom.
struct ValueAxis {
    bool from_zero = false; // 0 stays at the bottom, whatever the middle
    double range = 1;       // its length unless zoomed, in the axis's unit
    double middle = 0;
    double factor = 1;      // of the range; below 1: enlarged
    bool is_fitted = false; // kept so that no curve leaves the axis, until the operator zooms
    double least_range = 0; // that a fit takes: quiet curves stay quiet

    ValueExtent shown() const;
    void zoom(double by);
    void reset(bool fitted) { factor = 1, is_fitted = fitted; }
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

#pragma once

#include "display/profile_window.h"

#include <span>
#include <vector>

namespace tarvo {

// The values of a curve that lie in a stretch of the track; what is no value is left out.
std::vector<double> values_in_stretch(const ProfileCurve& curve, const DistanceRange& range);

// What the heights of a graph are made for.
struct CurveHeights {
    ValueExtent extent; // of all curves; empty: there is no value
    double middle = 0;  // of the curves' medians
};

enum class HeightsOf { total_field, other_values };

// Numbers of nothing but nines (-9999.99, 99999), which stand for no value in many files, count for nothing beside
// others. Neither does a total field more than half away from that of the middle sensor: no anomaly is as large, while
// a dead sensor or a reading of 0 is farther off. curves: the values of each; in any order, which changes.
CurveHeights heights_of_curves(std::span<std::vector<double>> curves, HeightsOf of);

} // namespace tarvo

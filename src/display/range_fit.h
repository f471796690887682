#pragma once

#include "display/track_image.h"
#include "display/track_scene.h"

#include <optional>

namespace tarvo {

// The range that fits the part of the track that the picture shows, of the values of sensor 1 in view: for the gradient
// up to their 98th percentile (the least value that 98 of 100 do not exceed), rounded up to two digits; for others the
// automatic one of those values, rounded outwards likewise. nullopt without a value in view.
std::optional<ValueRange> fitted_range(const TrackImage& image, const TrackScene& scene);

// The least number with two significant digits that is not below the value: 12.3 gives 13, 0.071 stays. 0 for none
// above 0.
double rounded_up_to_two_digits(double value);

// A new range, at least 1; it also sets the step of the fine adjuster.
void set_gradient_range(DisplaySettings& settings, double range);
// The same for a range that was typed, which may be any above 0.
void type_gradient_range(DisplaySettings& settings, double range);

// The greatest length of the form 1, 2 or 5 times a power of ten that is at most most_metres: what a scale bar shows.
double scale_bar_length(double most_metres);

} // namespace tarvo

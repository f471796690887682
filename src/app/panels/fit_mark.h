#pragma once

#include "display/track_points.h"
#include "targets/dipole_fit.h"

class QPainter;

namespace tarvo {

// The fit of the current pick over the track: a line from the pick to the fitted place, the place with its error
// ellipse, and the place on the other side where the side is not known.
struct FitMark {
    GridVector pick;
    DipoleFit fit;
};
void draw_fit_mark(QPainter& painter, const FitMark& mark, const PixelTransform& transform, double pixel_ratio);

} // namespace tarvo

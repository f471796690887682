#pragma once

#include "display/picture.h"
#include "display/raster_placing.h"

namespace tarvo {

// The background layers as they were drawn last: once for a view and some room around it, from where every later
// picture takes what it needs.
struct Backdrop {
    Picture picture;
    PixelTransform transform;

    bool is_empty() const { return picture.is_empty(); }
};

// The view with room on every side, whole pixels of it, so that it can be panned for a while.
MapView with_room(const MapView& view);

// The view is a part of the backdrop, pixel by pixel.
bool holds_view(const Backdrop& backdrop, const MapView& view);

// The view's pixels all are in the backdrop, if need be not quite in their places.
bool covers_view(const Backdrop& backdrop, const MapView& view);

// Lays the backdrop on a part of a target that shows what the transform says: a block copy where both have one scale,
// to the nearest pixel, else each pixel from where its middle lies. Where the backdrop ends, the target stays.
void lay_backdrop(Picture& target, const PixelRectangle& part, const PixelTransform& transform,
                  const Backdrop& backdrop);
void lay_backdrop(Picture& target, const PixelTransform& transform, const Backdrop& backdrop); // on all of it

} // namespace tarvo

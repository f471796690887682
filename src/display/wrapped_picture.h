#pragma once

#include "display/picture.h"

namespace tarvo {

// A picture that is moved over a plane of pixels and not copied for it: the plane's pixel (x, y) lies at its
// coordinates modulo the picture's sides. Places and parts below are counted from the upper left pixel in view.
struct WrappedPicture {
    Picture pixels;
    PixelPlace origin; // the upper left pixel in view, in the plane; x to the right, y down
};

// A part of what is in view, to the upper left corner of a picture and back. The part lies within the view.
void copy_part(const WrappedPicture& source, const PixelRectangle& part, Picture& target);
void put_part(WrappedPicture& target, const PixelRectangle& part, const Picture& source);

void copy_picture(const WrappedPicture& source, Picture& target); // all that is in view

// The (2 * half_size + 1)^2 pixels centred on (x, y), as far as they are in view.
void fill_square(WrappedPicture& picture, int x, int y, int half_size, Colour colour);

// Moves all that is in view to the right and down, to the left and up where negative; what it leaves becomes black. The
// cost is that of the pixels left.
void scroll(WrappedPicture& picture, int right, int down);

} // namespace tarvo

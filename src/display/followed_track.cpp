#include "display/followed_track.h"

#include "text/numbers.h"

#include <cmath>

namespace tarvo {

namespace {

// Brings the picture's content to where a position in its middle needs it. False when the position is that of the
// last plotted one, to the pixel.
bool move_picture(Picture& picture, const FollowedTrack& followed, double easting, double northing, int half_size)
{
    const int dx = rounded_pixel(easting - followed.last_easting);
    const int dy = rounded_pixel(northing - followed.last_northing);
    if (dx == 0 && dy == 0) return false;
    const bool is_too_far =
        std::abs(dx) >= picture.width() / 2.0 - half_size || std::abs(dy) >= picture.height() / 2.0 - half_size;
    if (is_too_far) {
        clear(picture);
    } else {
        scroll(picture, -dx, dy);
    }
    return true;
}

} // namespace

void plot_followed_point(Picture& picture, FollowedTrack& followed, std::int32_t index, double easting, double northing,
                         const PointMark& mark)
{
    if (!is_valid_channel(easting) || !is_valid_channel(northing)) return;
    if (index == 1 || !followed.is_shown) {
        if (index != 1) clear(picture);
        followed.is_shown = true;
        followed.centre_x = picture.width() / 2.0;
        followed.centre_y = picture.height() / 2.0;
    } else {
        const bool has_moved = move_picture(picture, followed, easting, northing, mark.half_size);
        if (!has_moved && mark.half_size < 2) return;
    }
    fill_square(picture, rounded_pixel(followed.centre_x), rounded_pixel(followed.centre_y), mark.half_size,
                mark.colour);
    followed.last_easting = easting;
    followed.last_northing = northing;
}

} // namespace tarvo

#pragma once

#include "display/picture.h"
#include "display/track_points.h"

#include <cstdint>

namespace tarvo {

// The picture that follows the track: the newest position in its middle, one pixel to the metre.
struct FollowedTrack {
    bool is_shown = false;   // the picture holds the track as it was followed so far
    double last_easting = 0; // of the last plotted position
    double last_northing = 0;
    double centre_x = 0; // of the picture, pixels
    double centre_y = 0;
};

// Scrolls the picture so that a new sample comes to its middle, and draws it there. A sample that has not moved by a
// pixel since the last plotted one is not drawn unless its mark is larger than a track point's; one without a position
// is passed over. A jump of half a picture clears the picture, and so does the first sample after it showed something
// else; the first sample of a run (index 1) is drawn over what is there.
void plot_followed_point(Picture& picture, FollowedTrack& followed, std::int32_t index, double easting, double northing,
                         const PointMark& mark);

} // namespace tarvo

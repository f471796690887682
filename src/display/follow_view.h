#pragma once

#include "display/track_points.h"
#include "display/track_scene.h"
#include "display/track_view.h"
#include "display/wrapped_picture.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace tarvo {

// The view that keeps the newest position in its middle, true to scale and with all that lies about it. It moves by
// whole pixels over a plane of pixels that is fixed to the survey's grid, so that what has been drawn once stays: a
// frame draws the strips that came into view and the points that are new.
struct FollowView {
    GridPlace anchor; // of the plane: its pixel (0, 0)
    double scale = 1; // pixels a metre
    WrappedPicture buffer;
    bool buffer_valid = false;
    ColourScale drawn_colours;

    static constexpr std::int32_t kNoRecord = std::numeric_limits<std::int32_t>::max();
    std::int32_t newest_record = 0;        // plotted
    std::int32_t middle_record = 0;        // in the middle; 0: none has a position
    std::int32_t changed_from = kNoRecord; // the points from this record on are not as the buffer shows them

    // Where stretches of so many records lie, in their order: what is not in view is not looked at point by point.
    static constexpr std::int32_t kStretch = 256;
    std::vector<PositionExtent> stretches; // of none: x_min is over x_max
};

// A new sample, or one whose position became known; it is drawn with the next frame. One that takes the place of a
// dropped record makes the view draw itself anew.
void note_plotted_point(FollowView& view, const TrackTable& track, std::int32_t index);

// The points from a record on have other colours.
void note_changed_points(FollowView& view, std::int32_t first_record);

// Shows the track about its newest position on a picture, settings.follow_width metres across: the ground and the
// points. Without any position the picture is black.
void draw_followed_track(Picture& picture, FollowView& view, const TrackScene& scene);

PixelTransform follow_transform(const FollowView& view);

// The width after a turn of the wheel: enlarged by a factor above 1, within the limits.
double zoomed_follow_width(double width, double factor);

} // namespace tarvo

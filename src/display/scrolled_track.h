#pragma once

#include "display/track_points.h"
#include "display/track_scene.h"
#include "display/wrapped_picture.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tarvo {

// The picture that scrolls under the newest position, which stays in its middle, one pixel to the metre. Every step
// from one sample to the next is rounded to whole pixels, so that what is drawn drifts against the survey grid: where a
// sample was drawn is kept, not calculated from its position.
struct ScrolledTrack {
    WrappedPicture buffer; // what the picture shows with its next redraw

    double last_easting = 0; // of the last plotted position
    double last_northing = 0;
    double centre_x = 0; // of the picture, pixels
    double centre_y = 0;

    struct Sample {
        PixelPlace at;         // in a plane that does not move with the picture; x to the right, y down
        bool is_drawn = false; // has a position, and had moved by a pixel or is a tick
    };
    PixelPlace middle;                // of the picture, in that plane
    std::int32_t first_record = 1;    // of those kept
    std::vector<Sample> samples = {}; // since the picture was last cleared
};

// Brings the buffer to a picture's size, with what the picture shows, unless it has that size.
void take_over_picture(ScrolledTrack& scrolled, const Picture& picture);

// Scrolls the buffer so that a new sample comes to its middle, and draws it there. A sample that has not moved by a
// pixel since the last plotted one is not drawn unless it is a tick; one without a position is passed over. A jump of
// half a picture clears the buffer, and so does the first sample that is kept, unless it is the first of a run (index
// 1), which is drawn over what is there.
void plot_scrolled_point(ScrolledTrack& scrolled, std::int32_t index, double easting, double northing,
                         const PointMark& mark);

// The picture as it is after all stored samples were plotted one by one.
void scroll_through(ScrolledTrack& scrolled, const Picture& picture, const TrackScene& scene);

// Draws the samples from a record on again, each where the buffer shows it.
void redraw_scrolled_points(ScrolledTrack& scrolled, const TrackScene& scene, std::int32_t first_record);

// The whole of it at a picture's size, or in other colours.
void redraw_scrolled_track(ScrolledTrack& scrolled, const Picture& picture, const TrackScene& scene);

// Where the picture shows a record, inside or outside of it; nullopt for one that was not drawn.
std::optional<PixelPlace> scrolled_pixel(const ScrolledTrack& scrolled, std::int32_t record);

// The record drawn nearest to a pixel, within `reach` pixels of it, the newest of several; 0: none.
std::int32_t scrolled_record_at(const ScrolledTrack& scrolled, const PixelPlace& pixel, double reach);

} // namespace tarvo

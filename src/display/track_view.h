#pragma once

#include "display/picture.h"
#include "display/track_points.h"
#include "display/track_scene.h"
#include "ports/operator.h"
#include "processing/track_table.h"
#include "text/numbers.h"

namespace tarvo {

// A place in the survey grid, metres; a null coordinate stands for no place.
struct GridPlace {
    double easting = kNull;
    double northing = kNull;

    bool is_known() const { return is_valid_channel(easting) && is_valid_channel(northing); }
};

// A rectangle of the survey grid, metres.
struct WorldExtent {
    double x_min = 0;
    double x_max = 0;
    double y_min = 0;
    double y_max = 0;

    bool operator==(const WorldExtent&) const = default;
};

// The world rectangle that a whole picture shows, and the pixels per metre that follow from it.
struct MapFrame {
    WorldExtent extent; // the data extent
    double pixel_scale = 1;

    bool operator==(const MapFrame&) const = default;
};

// One view of the track: the whole survey, or a zoomed part of it.
struct TrackView {
    float zoom = 1.0F; // 1.0: the whole survey
    double centre_x = 0;
    double span_x = 0;
    double view_x_min = 0;
    double view_x_max = 0;
    double centre_y = 0;
    double span_y = 0;
    double view_y_min = 0;
    double view_y_max = 0;
    Picture buffer;            // the view's track, drawn once and then copied to the screen
    bool buffer_valid = false; // the track has been drawn into the buffer
};

// The frame that shows all valid positions of a track in a picture of this size, centred, with a margin around them.
MapFrame fitted_frame(const TrackTable& track, int picture_width, int picture_height);

PixelTransform view_transform(const TrackView& view, double pixel_scale);

// Releases the buffer, sets the zoom to 1.0 and takes over centre, span and limits of the full view.
void reset_track_view(TrackView& view, const TrackView& full_view);

// The operations below return 0, or -1 after a fault, which they show to the operator; the view or picture then stays
// as far as it was brought.

// A new black buffer of the picture's size.
int create_image_buffer(TrackView& view, int picture_width, int picture_height, Operator& op);

// Draws the whole track into the buffer and makes it valid.
int add_track_to_buffer(TrackView& view, const MapFrame& frame, const TrackScene& scene, Operator& op);

// Brings span and limits up to zoom, centre and data extent.
int calculate_zoom_settings(TrackView& view, const WorldExtent& data_extent, Operator& op);

// Draws the whole track right onto a picture, over what it shows.
int display_full_data_track(Picture& picture, const TrackView& view, const MapFrame& frame, const TrackScene& scene,
                            Operator& op);

} // namespace tarvo

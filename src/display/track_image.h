#pragma once

#include "display/followed_track.h"
#include "display/picture.h"
#include "display/track_layers.h"
#include "display/track_scene.h"
#include "display/track_search.h"
#include "display/track_view.h"
#include "ports/operator.h"
#include "text/numbers.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tarvo {

// How new samples are placed: in a fixed world rectangle, or with the newest one in the middle of the picture.
enum class MapExtent { fixed, following };

enum class Redraw { as_needed, requested };

// A place in the survey grid, metres; a null coordinate stands for no place.
struct GridPlace {
    double easting = kNull;
    double northing = kNull;

    bool is_known() const { return is_valid_channel(easting) && is_valid_channel(northing); }
};

inline constexpr PixelPlace kNoCrosshair = {-9999, -9999};
inline constexpr PixelPlace kNoMarker = {-99999, -99999};

// The ring that offers a new pick's location, and the pixels that it covers.
struct NewPickMarker {
    PixelPlace drawn_at = kNoMarker;
    GridPlace place;
    std::int32_t record = 0; // at that place; 0: none
    Colour colour = kMagenta;
    Picture covered;
};

// The plan view of the survey: its picture, and all that is needed to keep it.
struct TrackImage {
    Picture picture; // what the window shows
    TrackView full_view;
    TrackView zoomed_view; // in use while its zoom is above 1
    MapFrame frame;        // of the full view; the zoomed view is a part of it
    MapExtent map_extent = MapExtent::following;
    FollowedTrack followed;
    bool is_held = false;      // by a load: nothing is drawn until its end
    ColourScale drawn_colours; // when the full view was last drawn

    std::int32_t current_record = 0; // current track point, 0: none
    SectionLimits section;           // highlighted
    GridPlace location;              // current location, under the crosshair
    PixelPlace crosshair = kNoCrosshair;
    NewPickMarker marker;
    std::vector<PickLabel> pick_labels; // of the picks as last drawn

    bool redraw_pending = false;   // the next redraw counts as requested
    bool zoom_is_changing = false; // while a handler runs: a change that it causes is passed over
    bool pan_is_changing = false;
    std::function<void()> run_pending_events; // the window's: shows the picture and lets its events run
};

// A new size for picture and buffers. The picture is black until the next redraw, unless it follows the track.
void resize_track_image(TrackImage& image, const TrackScene& scene, int width, int height, Operator& op);

// Back to the state before a run: black, both views reset, nothing selected, nothing held.
void clear_track_image(TrackImage& image, Operator& op);

// Fits the views to the track, at the place and zoom that the operator chose.
void fit_data_extent(TrackImage& image, const TrackScene& scene, Operator& op);

// Fixed-extent mode from here on: everything stored so far is fitted and drawn.
void show_whole_track(TrackImage& image, const TrackScene& scene, Operator& op);

// The end of a run: fixed-extent mode, and the track shown whole whatever part was enlarged.
void show_finished_track(TrackImage& image, const TrackScene& scene, Operator& op);

// Following mode from here on, from a black picture.
void follow_track(TrackImage& image);

// Draws a new sample onto the picture: its own square and nothing else in fixed-extent mode, a scroll and its square
// in following mode. index counts stored samples from 1; a null coordinate keeps the sample off the picture.
void plot_track_point(TrackImage& image, const TrackScene& scene, std::int32_t index, double easting, double northing);

// Draws the stored samples from a record on again, at their places in the picture as it is, after the display value of
// that record has become known: it keeps its place under the newer ones.
void recolour_track_points(TrackImage& image, const TrackScene& scene, std::int32_t first_record);

// Redraws the view in use, from its buffer where that holds, with all layers over it. A picture that follows the track
// or is held stays as it is.
void update_image_display(TrackImage& image, const TrackScene& scene, Redraw redraw, Operator& op);

// Shows changed colours or ticks.
void redraw_colours(TrackImage& image, const TrackScene& scene, Operator& op);

// Moves the crosshair to a place, which becomes the current location, or takes it away when the place is not known.
// None is drawn while the picture follows the track.
void display_location_crosshair(TrackImage& image, const GridPlace& location);

// The marker of a pick's offered location, a ring of radius 6: draw_flag 1 draws it, -1 takes it away again and
// leaves the picture as it was. record: the one at that place; 0 when there is none.
void display_new_pick_location(TrackImage& image, const GridPlace& place, Colour colour, int draw_flag,
                               std::int32_t record = 0);

// From world to pixels, of the picture as it is shown, and back. In a picture that follows the track both hold about
// the newest sample, and are off by the drift of the others.
PixelTransform active_transform(const TrackImage& image);
GridPlace place_of_pixel(const TrackImage& image, int x, int y);

} // namespace tarvo

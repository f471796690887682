#pragma once

#include "display/follow_view.h"
#include "display/picture.h"
#include "display/scrolled_track.h"
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

// What the picture shows: a fixed world rectangle, the whole survey or an enlarged part of it; the surroundings of the
// newest sample, true to scale; or the newest samples alone, as the picture scrolled under them.
enum class TrackMode { whole, follow, scroll };

enum class Redraw { as_needed, requested };

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
    TrackMode mode = TrackMode::whole;
    FollowView follow_view;    // in use in TrackMode::follow
    ScrolledTrack scrolled;    // in use in TrackMode::scroll
    int symbol_scale = 1;      // the screen's: see TrackScene
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

// A new size for picture and buffers. The picture is black until the next redraw, unless it scrolls.
void resize_track_image(TrackImage& image, const TrackScene& scene, int width, int height, Operator& op);

// Back to the state before a run: black, both views reset, nothing selected, nothing held.
void clear_track_image(TrackImage& image, Operator& op);

// Fits the views to the track, at the place and zoom that the operator chose.
void fit_data_extent(TrackImage& image, const TrackScene& scene, Operator& op);

// The three modes; what is stored is shown in each from the first moment on.
void show_whole_track(TrackImage& image, const TrackScene& scene, Operator& op);
void follow_track(TrackImage& image, const TrackScene& scene, Operator& op);
void scroll_track(TrackImage& image, const TrackScene& scene);

// The end of a run: the whole mode, and the track shown whole whatever part was enlarged.
void show_finished_track(TrackImage& image, const TrackScene& scene, Operator& op);

// Takes note of a new sample. Whole: its own square and nothing else is drawn; scroll and follow: the next redraw shows
// it. index counts stored samples from 1; a null coordinate keeps the sample off the
// picture.
void plot_track_point(TrackImage& image, const TrackScene& scene, std::int32_t index, double easting, double northing);

// Draws the stored samples from a record on again, at their places in the picture as it is, after the display value of
// that record has become known: it keeps its place under the newer ones.
void recolour_track_points(TrackImage& image, const TrackScene& scene, std::int32_t first_record);

// Redraws the view in use, from its buffer where that holds, with all layers over it. A picture that scrolls shows what
// was plotted; one that is held stays as it is.
void update_image_display(TrackImage& image, const TrackScene& scene, Redraw redraw, Operator& op);

// What is drawn of the track, and of what lies under it, is made anew with the next redraw.
void drop_drawn_track(TrackImage& image);

// Shows changed colours or ticks.
void redraw_colours(TrackImage& image, const TrackScene& scene, Operator& op);

// Moves the crosshair to a place, which becomes the current location, or takes it away when the place is not known.
// None is drawn while the picture scrolls.
void display_location_crosshair(TrackImage& image, const GridPlace& location);

// The marker of a pick's offered location, a ring of radius 6: draw_flag 1 draws it, -1 takes it away again and
// leaves the picture as it was. record: the one at that place; 0 when there is none.
void display_new_pick_location(TrackImage& image, const GridPlace& place, Colour colour, int draw_flag,
                               std::int32_t record = 0);

// From world to pixels, of the picture as it is shown, and back. In a picture that scrolls both hold about the newest
// sample, and are off by the drift of the others.
PixelTransform active_transform(const TrackImage& image);
GridPlace place_of_pixel(const TrackImage& image, int x, int y);

} // namespace tarvo

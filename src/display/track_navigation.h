#pragma once

#include "display/track_image.h"
#include "display/track_scene.h"
#include "ports/operator.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

// The zoom factor of a zoom text such as "250%": 100 to 10000, with or without the percent sign; nullopt for anything
// else.
std::optional<float> zoom_of_text(std::string_view text);

// The zoom control, on change and on click. A text that is no zoom changes nothing. zoom_option: below 1, a click
// shows the whole survey, else it centres the zoomed view on the current track point.
void Combo_zoom_change(TrackImage& image, const TrackScene& scene, std::string_view text, Operator& op);
void Combo_zoom_click(TrackImage& image, const TrackScene& scene, std::string_view text, int zoom_option, Operator& op);

// The pan control: makes the track point of a position current, with the section around it. track_skip: records per
// position.
void HScroll_pan_change(TrackImage& image, const TrackScene& scene, std::int32_t position, std::int32_t track_skip,
                        Operator& op);

// The position that makes a record current, or the nearest record before it that has one.
std::int32_t pan_position_of(std::int32_t record, std::int32_t track_skip);

// "250%"
std::string zoom_text(float zoom);

// Enlarges the view by a factor, below 1 reduces it; the place under a pixel stays there. Back at the whole survey the
// full view is in use again.
void zoom_about_pixel(TrackImage& image, const TrackScene& scene, int x, int y, double factor, Operator& op);

// Moves the zoomed view so that its content follows the pointer by so many pixels; the whole survey stays.
void drag_view(TrackImage& image, const TrackScene& scene, int right, int down, Operator& op);

// Shows a place of the survey grid in the middle of the enlarged view, wherever the track is.
void show_place(TrackImage& image, const TrackScene& scene, const GridPlace& place, double zoom, Operator& op);

// The same with a stretch of records filling the picture, a margin around it; without positions nothing happens.
void show_records(TrackImage& image, const TrackScene& scene, std::int32_t first, std::int32_t last, Operator& op);

enum class Recentre { no, yes };

// Makes a record current, with the section around it and the crosshair on it; with Recentre::yes the zoomed view moves
// its middle there.
void make_record_current(TrackImage& image, const TrackScene& scene, std::int32_t record, Recentre recentre,
                         Operator& op);

// The whole mode, new samples keeping the track whole: fits the views anew once the newest position has left them.
void keep_newest_in_view(TrackImage& image, const TrackScene& scene, Operator& op);

} // namespace tarvo

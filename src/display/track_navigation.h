#pragma once

#include "definitions/operator.h"
#include "display/track_image.h"
#include "display/track_scene.h"

#include <cstdint>
#include <optional>
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

} // namespace tarvo

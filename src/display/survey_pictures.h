#pragma once

#include "display/picture.h"
#include "display/raster_placing.h"
#include "display/track_scene.h"
#include "ports/operator.h"

#include <cstdint>
#include <optional>
#include <span>

namespace tarvo {

// Pictures of a finished survey, drawn without a window. nullopt after a fault, which the operator has been shown.

// What the two pictures of the track below show of the survey's grid.
std::optional<MapView> whole_track_view(const TrackScene& scene, int width, int height, Operator& op);
std::optional<MapView> zoomed_track_view(const TrackScene& scene, int width, int height, double zoom_percent,
                                         std::int32_t record, Operator& op);

// The whole track on the scene's backdrop, on black where there is none; nothing over it.
std::optional<Picture> whole_track_picture(const TrackScene& scene, int width, int height, Operator& op);

// The same enlarged to zoom_percent (100 and below: the whole track), with a record in its middle. A record that is
// not stored or has no position is a fault.
std::optional<Picture> zoomed_track_picture(const TrackScene& scene, int width, int height, double zoom_percent,
                                            std::int32_t record, Operator& op);

// The colour bars of all sensors around a record, sensor 1 at the top, 40 pixels high each, without a gap, on black.
// A record that is not stored leaves the bars black.
std::optional<Picture> colour_bars_picture(const TrackScene& scene, int sensor_count, int width, std::int32_t record,
                                           Operator& op);

} // namespace tarvo

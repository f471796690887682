#pragma once

#include "display/colour_scale.h"
#include "display/picture.h"
#include "display/track_scene.h"

#include <cstdint>

namespace tarvo {

// How one track point is marked: a filled square.
struct PointMark {
    Colour colour = kYellow;
    int half_size = 1;
    bool is_tick = false; // of time
};
inline constexpr int kPointHalfSize = 1;
inline constexpr int kTickHalfSize = 3; // of a time tick

// The half-size of a square on a screen where `symbol_scale` pixels stand for one.
constexpr int mark_half_size(int half_size, int symbol_scale)
{
    return (2 * half_size + 1) * symbol_scale / 2;
}

// Stored samples from one time tick to the next, 0 when there are none: the product in 32-bit floats, truncated.
std::int64_t tick_step(float sample_rate, std::int32_t tick_minutes);

PointMark point_mark(const TrackScene& scene, std::int32_t record);

// From world coordinates in metres to pixels.
struct PixelTransform {
    double x_min = 0; // easting of pixel column 0
    double y_max = 0; // northing of pixel row 0
    double scale = 1; // pixels per metre at zoom 1
    double zoom = 1;
};

// A place beyond every picture, a null position among them, is kept off it: see rounded_pixel.
inline int pixel_x(const PixelTransform& transform, double easting)
{
    return rounded_pixel((easting - transform.x_min) * transform.scale * transform.zoom);
}
inline int pixel_y(const PixelTransform& transform, double northing)
{
    return rounded_pixel((transform.y_max - northing) * transform.scale * transform.zoom);
}

// Throws std::invalid_argument for a track table with rows but without their positions.
void require_positions(const TrackTable& track);

// Draws all track points in the order of their records, each marked by the rule of point_mark. Throws as above.
void paint_track(Picture& picture, const PixelTransform& transform, const TrackScene& scene);

// The same of the points from first to last, both of them stored.
void paint_records(Picture& picture, const PixelTransform& transform, const TrackScene& scene, std::int32_t first,
                   std::int32_t last);

} // namespace tarvo

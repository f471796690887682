#include "display/track_points.h"

#include <limits>
#include <stdexcept>

namespace tarvo {

namespace {

// Squares of half-size 1 that lie inside of the picture as a whole make up nearly all of a track: nine stores, without
// any clipping. limit_x, limit_y: number of columns and rows that can be such a square's centre.
class SmallSquares {
public:
    explicit SmallSquares(Picture& picture)
        : picture_(picture), stride_(picture.width()), limit_x_(limit(picture.width())),
          limit_y_(limit(picture.height()))
    {
    }
    void paint(int x, int y, Colour colour)
    {
        if (static_cast<unsigned>(x) - 1 >= limit_x_ || static_cast<unsigned>(y) - 1 >= limit_y_) {
            fill_square(picture_, x, y, 1, colour);
            return;
        }
        Colour* const top = picture_.row(y - 1) + x - 1;
        Colour* const middle = top + stride_;
        Colour* const bottom = middle + stride_;
        top[0] = top[1] = top[2] = colour;
        middle[0] = middle[1] = middle[2] = colour;
        bottom[0] = bottom[1] = bottom[2] = colour;
    }

private:
    static unsigned limit(int side) { return side > 2 ? static_cast<unsigned>(side) - 2 : 0; }

    Picture& picture_;
    std::ptrdiff_t stride_;
    unsigned limit_x_;
    unsigned limit_y_;
};

} // namespace

std::int64_t tick_step(float sample_rate, std::int32_t tick_minutes)
{
    constexpr float kSecondsPerMinute = 60.0F;
    constexpr auto kNever = static_cast<float>(std::numeric_limits<std::int32_t>::max());
    const float samples = sample_rate * static_cast<float>(tick_minutes) * kSecondsPerMinute;
    if (!(samples >= 1.0F)) return 0;
    return static_cast<std::int64_t>(samples < kNever ? samples : kNever);
}

PointMark point_mark(const TrackScene& scene, std::int32_t record)
{
    const std::int64_t step = tick_step(scene.sample_rate, scene.settings.timing_tick);
    if (step > 0 && (record - 1) % step == 0) return kTimeTick;
    if (scene.display_values == nullptr) return {};
    return {value_colour(scene.display_values[record], scene.settings.gradient_max_range), 1};
}

void require_positions(const TrackTable& track)
{
    if (track.count > 0 && (track.easting == nullptr || track.northing == nullptr)) {
        throw std::invalid_argument("the track table has no positions");
    }
}

void paint_track(Picture& picture, const PixelTransform& transform, const TrackScene& scene)
{
    const TrackTable& track = scene.track;
    require_positions(track);
    const double range = scene.settings.gradient_max_range;
    const std::int64_t step = tick_step(scene.sample_rate, scene.settings.timing_tick);
    std::int64_t next_tick = step > 0 ? 1 : std::numeric_limits<std::int64_t>::max();

    SmallSquares squares(picture);
    for (std::int32_t record = 1; record <= track.count; ++record) {
        const int x = pixel_x(transform, track.easting[record]);
        const int y = pixel_y(transform, track.northing[record]);
        if (record == next_tick) {
            next_tick += step;
            fill_square(picture, x, y, kTimeTick.half_size, kTimeTick.colour);
        } else {
            const Colour colour =
                scene.display_values == nullptr ? kYellow : value_colour(scene.display_values[record], range);
            squares.paint(x, y, colour);
        }
    }
}

} // namespace tarvo

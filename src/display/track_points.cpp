#include "display/track_points.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

namespace tarvo {

namespace {

// Squares of half-size 1 that lie inside of the picture as a whole make up nearly all of a track: nine stores, without
// any clipping. Larger ones take the general way.
class SmallSquares {
public:
    SmallSquares(Picture& picture, int half_size)
        : picture_(picture), half_size_(half_size), pixels_(picture.row(0)), width_(picture.width()),
          limit_x_(half_size == 1 ? limit(picture.width()) : 0), limit_y_(limit(picture.height()))
    {
    }
    void paint(int x, int y, Colour colour)
    {
        if (static_cast<unsigned>(x) - 1 >= limit_x_ || static_cast<unsigned>(y) - 1 >= limit_y_) {
            fill_square(picture_, x, y, half_size_, colour);
            return;
        }
        Colour* const top = pixels_ + width_ * (y - 1) + x - 1;
        Colour* const middle = top + width_;
        Colour* const bottom = middle + width_;
        top[0] = top[1] = top[2] = colour;
        middle[0] = middle[1] = middle[2] = colour;
        bottom[0] = bottom[1] = bottom[2] = colour;
    }

private:
    static unsigned limit(int side) { return side > 2 ? static_cast<unsigned>(side) - 2 : 0; }

    Picture& picture_;
    int half_size_;
    Colour* pixels_;
    std::ptrdiff_t width_;
    unsigned limit_x_; // columns and rows that can be the centre of such a square, counted from the second
    unsigned limit_y_;
};

// A run of records on its way into the picture; each step is done for the whole of it, in a short loop of its own.
constexpr std::int32_t kBlockSize = 256;
struct PointBlock {
    std::int32_t first_record = 1;
    std::int32_t size = 0;
    std::array<int, kBlockSize> x;
    std::array<int, kBlockSize> y;
};

void place_points(const TrackTable& track, const PixelTransform& transform, PointBlock& block)
{
    const double* const easting = track.easting + block.first_record;
    const double* const northing = track.northing + block.first_record;
    for (std::int32_t i = 0; i < block.size; ++i) {
        block.x[static_cast<std::size_t>(i)] = pixel_x(transform, easting[i]);
        block.y[static_cast<std::size_t>(i)] = pixel_y(transform, northing[i]);
    }
}

// Where the middle of a square can be whose pixels are in the picture.
class SeenArea {
public:
    SeenArea(const Picture& picture, int half_size)
        : half_size_(half_size), columns_(static_cast<unsigned>(picture.width() + 2 * half_size)),
          rows_(static_cast<unsigned>(picture.height() + 2 * half_size))
    {
    }
    unsigned contains(int x, int y) const // 1 or 0
    {
        return static_cast<unsigned>(static_cast<unsigned>(x + half_size_) < columns_) &
               static_cast<unsigned>(static_cast<unsigned>(y + half_size_) < rows_);
    }

private:
    int half_size_;
    unsigned columns_;
    unsigned rows_;
};

// The points from <= i < end of a block that can be seen: one whose follower comes to the same pixel is hidden by it.
struct SeenPoints {
    std::size_t count = 0;
    std::array<std::int32_t, kBlockSize> points;
};

SeenPoints seen_points(const PointBlock& block, std::int32_t from, std::int32_t end, const SeenArea& area)
{
    SeenPoints seen;
    for (std::int32_t i = from; i + 1 < end; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const int difference = (block.x[at] ^ block.x[at + 1]) | (block.y[at] ^ block.y[at + 1]);
        seen.points[seen.count] = i; // without a branch: the next one takes the place of a hidden one
        seen.count += static_cast<unsigned>(difference != 0) & area.contains(block.x[at], block.y[at]);
    }
    if (from < end) seen.points[seen.count++] = end - 1;
    return seen;
}

// Draws a part of a block that holds no time tick.
void paint_small_squares(Picture& picture, const TrackScene& scene, const PointBlock& block, std::int32_t from,
                         std::int32_t end)
{
    const int half_size = mark_half_size(kPointHalfSize, scene.symbol_scale);
    const SeenPoints seen = seen_points(block, from, end, SeenArea(picture, half_size));
    const ShownValues values(scene, 1);
    const bool have_values = values.exist();
    SmallSquares squares(picture, half_size);
    for (std::size_t i = 0; i < seen.count; ++i) {
        const auto point = static_cast<std::size_t>(seen.points[i]);
        const Colour colour = have_values ? value_colour(values[block.first_record + seen.points[i]], scene.colours)
                                          : scene.colours.map->null_colour;
        squares.paint(block.x[point], block.y[point], colour);
    }
}

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
    if (step > 0 && (record - 1) % step == 0) {
        return {scene.colours.tick, mark_half_size(kTickHalfSize, scene.symbol_scale), true};
    }
    const int half_size = mark_half_size(kPointHalfSize, scene.symbol_scale);
    const ShownValues values(scene, 1);
    if (!values.exist()) return {scene.colours.map->null_colour, half_size};
    return {value_colour(values[record], scene.colours), half_size};
}

void require_positions(const TrackTable& track)
{
    if (track.count > 0 && (track.easting == nullptr || track.northing == nullptr)) {
        throw std::invalid_argument("the track table has no positions");
    }
}

void paint_track(Picture& picture, const PixelTransform& transform, const TrackScene& scene)
{
    require_positions(scene.track);
    paint_records(picture, transform, scene, 1, scene.track.count);
}

void paint_records(Picture& picture, const PixelTransform& transform, const TrackScene& scene, std::int32_t first,
                   std::int32_t last)
{
    const int tick_half_size = mark_half_size(kTickHalfSize, scene.symbol_scale);
    const std::int64_t step = tick_step(scene.sample_rate, scene.settings.timing_tick);
    std::int64_t next_tick = std::numeric_limits<std::int64_t>::max();
    if (step > 0) next_tick = (first - 1 + step - 1) / step * step + 1;

    PointBlock block;
    block.first_record = first;
    while (block.first_record <= last) {
        block.size = std::min(kBlockSize, last - block.first_record + 1);
        place_points(scene.track, transform, block);
        std::int32_t from = 0;
        for (; next_tick < std::int64_t{block.first_record} + block.size; next_tick += step) {
            const auto tick = static_cast<std::int32_t>(next_tick - block.first_record);
            const auto at = static_cast<std::size_t>(tick);
            paint_small_squares(picture, scene, block, from, tick);
            fill_square(picture, block.x[at], block.y[at], tick_half_size, scene.colours.tick);
            from = tick + 1;
        }
        paint_small_squares(picture, scene, block, from, block.size);
        block.first_record += block.size;
    }
}

} // namespace tarvo

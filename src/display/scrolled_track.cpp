#include "display/scrolled_track.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tarvo {

namespace {

// What a new sample does to the picture.
struct ScrollStep {
    bool clears = false;
    int right = 0; // by which the content moves, pixels
    int down = 0;
    bool is_drawn = false;
};

void centre_picture(ScrolledTrack& scrolled)
{
    scrolled.centre_x = scrolled.buffer.pixels.width() / 2.0;
    scrolled.centre_y = scrolled.buffer.pixels.height() / 2.0;
}

// Nothing is kept of what was plotted; the buffer stays as it is.
void begin_anew(ScrolledTrack& scrolled)
{
    ScrolledTrack fresh;
    fresh.buffer = std::move(scrolled.buffer);
    scrolled = std::move(fresh);
    centre_picture(scrolled);
}

// Brings the plane to where a position in the picture's middle needs it. Not drawn: the position is that of the last
// plotted one, to the pixel.
ScrollStep step_to(ScrolledTrack& scrolled, double easting, double northing, int half_size)
{
    const int dx = rounded_pixel(easting - scrolled.last_easting);
    const int dy = rounded_pixel(northing - scrolled.last_northing);
    if (dx == 0 && dy == 0) return {};
    const Picture& picture = scrolled.buffer.pixels;
    const bool is_too_far =
        std::abs(dx) >= picture.width() / 2.0 - half_size || std::abs(dy) >= picture.height() / 2.0 - half_size;
    if (is_too_far) {
        scrolled.samples.clear();
        scrolled.middle = {};
        return {true, 0, 0, true};
    }
    scrolled.middle.x += dx;
    scrolled.middle.y -= dy;
    return {false, -dx, dy, true};
}

// Takes note of a sample in the middle of the picture. One that is stored a second time, after those from it on were
// dropped, takes the place of the former.
void keep_sample(ScrolledTrack& scrolled, std::int32_t index, bool is_drawn)
{
    if (scrolled.samples.empty() || index < scrolled.first_record) {
        scrolled.first_record = index;
        scrolled.samples.clear();
    }
    const auto before = static_cast<std::size_t>(index - scrolled.first_record);
    scrolled.samples.resize(before, {scrolled.middle, false});
    scrolled.samples.push_back({scrolled.middle, is_drawn});
}

ScrollStep take_sample(ScrolledTrack& scrolled, std::int32_t index, double easting, double northing,
                       const PointMark& mark)
{
    if (!is_in_world(easting) || !is_in_world(northing)) return {};
    ScrollStep step;
    if (index == 1 || scrolled.samples.empty()) {
        begin_anew(scrolled);
        step = {index != 1, 0, 0, true};
    } else {
        step = step_to(scrolled, easting, northing, mark.half_size);
    }
    step.is_drawn |= mark.is_tick;
    keep_sample(scrolled, index, step.is_drawn);
    if (!step.is_drawn) return step;
    scrolled.last_easting = easting;
    scrolled.last_northing = northing;
    return step;
}

} // namespace

void take_over_picture(ScrolledTrack& scrolled, const Picture& picture)
{
    const Picture& pixels = scrolled.buffer.pixels;
    if (pixels.width() != picture.width() || pixels.height() != picture.height()) scrolled.buffer = {picture, {}};
}

void plot_scrolled_point(ScrolledTrack& scrolled, std::int32_t index, double easting, double northing,
                         const PointMark& mark)
{
    const ScrollStep step = take_sample(scrolled, index, easting, northing, mark);
    if (!step.is_drawn) return;
    if (step.clears) clear(scrolled.buffer.pixels);
    if (step.right != 0 || step.down != 0) scroll(scrolled.buffer, step.right, step.down);
    fill_square(scrolled.buffer, rounded_pixel(scrolled.centre_x), rounded_pixel(scrolled.centre_y), mark.half_size,
                mark.colour);
}

void scroll_through(ScrolledTrack& scrolled, const Picture& picture, const TrackScene& scene)
{
    scrolled = {};
    take_over_picture(scrolled, picture);
    for (std::int32_t record = 1; record <= scene.track.count; ++record) {
        take_sample(scrolled, record, scene.track.easting[record], scene.track.northing[record],
                    point_mark(scene, record));
    }
    redraw_scrolled_track(scrolled, picture, scene);
}

void redraw_scrolled_points(ScrolledTrack& scrolled, const TrackScene& scene, std::int32_t first_record)
{
    for (std::int32_t record = std::max(first_record, scrolled.first_record); record <= scene.track.count; ++record) {
        const std::optional<PixelPlace> pixel = scrolled_pixel(scrolled, record);
        if (!pixel) continue;
        const PointMark mark = point_mark(scene, record);
        fill_square(scrolled.buffer, pixel->x, pixel->y, mark.half_size, mark.colour);
    }
}

void redraw_scrolled_track(ScrolledTrack& scrolled, const Picture& picture, const TrackScene& scene)
{
    take_over_picture(scrolled, picture);
    clear(scrolled.buffer.pixels);
    centre_picture(scrolled);
    redraw_scrolled_points(scrolled, scene, scrolled.first_record);
}

std::optional<PixelPlace> scrolled_pixel(const ScrolledTrack& scrolled, std::int32_t record)
{
    const auto at = static_cast<std::ptrdiff_t>(record) - scrolled.first_record;
    if (at < 0 || at >= std::ssize(scrolled.samples)) return std::nullopt;
    const ScrolledTrack::Sample& sample = scrolled.samples[static_cast<std::size_t>(at)];
    if (!sample.is_drawn) return std::nullopt;
    return PixelPlace{rounded_pixel(scrolled.centre_x) + sample.at.x - scrolled.middle.x,
                      rounded_pixel(scrolled.centre_y) + sample.at.y - scrolled.middle.y};
}

std::int32_t scrolled_record_at(const ScrolledTrack& scrolled, const PixelPlace& pixel, double reach)
{
    std::int32_t nearest = 0;
    double least_square = reach * reach;
    const auto count = static_cast<std::int32_t>(scrolled.samples.size());
    for (std::int32_t record = scrolled.first_record; record < scrolled.first_record + count; ++record) {
        const std::optional<PixelPlace> shown = scrolled_pixel(scrolled, record);
        if (!shown) continue;
        const double right = shown->x - pixel.x;
        const double down = shown->y - pixel.y;
        const double square = right * right + down * down;
        if (square > least_square) continue;
        nearest = record;
        least_square = square;
    }
    return nearest;
}

} // namespace tarvo

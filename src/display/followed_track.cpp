#include "display/followed_track.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarvo {

namespace {

// Brings the picture's content to where a position in its middle needs it. False when the position is that of the
// last plotted one, to the pixel.
bool move_picture(Picture& picture, FollowedTrack& followed, double easting, double northing, int half_size)
{
    const int dx = rounded_pixel(easting - followed.last_easting);
    const int dy = rounded_pixel(northing - followed.last_northing);
    if (dx == 0 && dy == 0) return false;
    const bool is_too_far =
        std::abs(dx) >= picture.width() / 2.0 - half_size || std::abs(dy) >= picture.height() / 2.0 - half_size;
    if (is_too_far) {
        clear(picture);
        followed.samples.clear();
        followed.middle = {};
    } else {
        scroll(picture, -dx, dy);
        followed.middle.x += dx;
        followed.middle.y -= dy;
    }
    return true;
}

// Takes note of a sample in the middle of the picture. One that is stored a second time, after those from it on were
// dropped, takes the place of the former.
void keep_sample(FollowedTrack& followed, std::int32_t index, bool is_drawn)
{
    if (followed.samples.empty() || index < followed.first_record) {
        followed.first_record = index;
        followed.samples.clear();
    }
    const auto before = static_cast<std::size_t>(index - followed.first_record);
    followed.samples.resize(before, {followed.middle, false});
    followed.samples.push_back({followed.middle, is_drawn});
}

void centre_picture(const Picture& picture, FollowedTrack& followed)
{
    followed.centre_x = picture.width() / 2.0;
    followed.centre_y = picture.height() / 2.0;
}

} // namespace

void plot_followed_point(Picture& picture, FollowedTrack& followed, std::int32_t index, double easting, double northing,
                         const PointMark& mark)
{
    if (!is_in_world(easting) || !is_in_world(northing)) return;
    if (index == 1 || !followed.is_shown) {
        if (index != 1) clear(picture);
        followed = {};
        followed.is_shown = true;
        centre_picture(picture, followed);
    } else {
        const bool has_moved = move_picture(picture, followed, easting, northing, mark.half_size);
        if (!has_moved && mark.half_size < 2) {
            keep_sample(followed, index, false);
            return;
        }
    }
    fill_square(picture, rounded_pixel(followed.centre_x), rounded_pixel(followed.centre_y), mark.half_size,
                mark.colour);
    keep_sample(followed, index, true);
    followed.last_easting = easting;
    followed.last_northing = northing;
}

void redraw_followed_points(Picture& picture, const FollowedTrack& followed, const TrackScene& scene,
                            std::int32_t first_record)
{
    for (std::int32_t record = std::max(first_record, followed.first_record); record <= scene.track.count; ++record) {
        const std::optional<PixelPlace> pixel = followed_pixel(followed, record);
        if (!pixel) continue;
        const PointMark mark = point_mark(scene, record);
        fill_square(picture, pixel->x, pixel->y, mark.half_size, mark.colour);
    }
}

void redraw_followed_track(Picture& picture, FollowedTrack& followed, const TrackScene& scene)
{
    clear(picture);
    centre_picture(picture, followed);
    redraw_followed_points(picture, followed, scene, followed.first_record);
}

std::optional<PixelPlace> followed_pixel(const FollowedTrack& followed, std::int32_t record)
{
    const auto at = static_cast<std::ptrdiff_t>(record) - followed.first_record;
    if (at < 0 || at >= std::ssize(followed.samples)) return std::nullopt;
    const FollowedTrack::Sample& sample = followed.samples[static_cast<std::size_t>(at)];
    if (!sample.is_drawn) return std::nullopt;
    return PixelPlace{rounded_pixel(followed.centre_x) + sample.at.x - followed.middle.x,
                      rounded_pixel(followed.centre_y) + sample.at.y - followed.middle.y};
}

std::int32_t followed_record_at(const FollowedTrack& followed, const PixelPlace& pixel, double reach)
{
    std::int32_t nearest = 0;
    double least_square = reach * reach;
    const auto count = static_cast<std::int32_t>(followed.samples.size());
    for (std::int32_t record = followed.first_record; record < followed.first_record + count; ++record) {
        const std::optional<PixelPlace> shown = followed_pixel(followed, record);
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

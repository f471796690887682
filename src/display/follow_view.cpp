#include "display/follow_view.h"

#include "display/grid_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tarvo {

namespace {

constexpr PositionExtent kNowhere = {1, 0, 1, 0};

std::int32_t first_of_stretch(std::size_t stretch)
{
    return static_cast<std::int32_t>(stretch) * FollowView::kStretch + 1;
}

std::size_t stretch_of(std::int32_t record)
{
    return static_cast<std::size_t>((record - 1) / FollowView::kStretch);
}

PositionExtent extent_of_stretch(const TrackTable& track, std::size_t stretch)
{
    const std::int32_t first = first_of_stretch(stretch);
    const std::int32_t size = std::min(FollowView::kStretch, track.count - first + 1);
    const std::int32_t before = first - 1; // so that the stretch is a table of its own, from row 1
    return position_extent({size, nullptr, nullptr, track.easting + before, track.northing + before})
        .value_or(kNowhere);
}

// Stretches that are complete and unchanged keep their places.
void update_stretches(FollowView& view, const TrackTable& track)
{
    const std::size_t needed = track.count > 0 ? stretch_of(track.count) + 1 : 0;
    const std::size_t known = view.stretches.empty() ? 0 : view.stretches.size() - 1; // the last may have grown
    const std::size_t unchanged =
        view.changed_from == FollowView::kNoRecord ? known : std::min(known, stretch_of(view.changed_from));
    view.stretches.resize(needed, kNowhere);
    for (std::size_t stretch = unchanged; stretch < needed; ++stretch) {
        view.stretches[stretch] = extent_of_stretch(track, stretch);
    }
}

// The newest record with a position; the one in the middle so far when none has followed it.
std::int32_t record_for_middle(const FollowView& view, const TrackTable& track)
{
    const std::int32_t known = view.middle_record <= track.count ? view.middle_record : 0;
    for (std::int32_t record = track.count; record > known; --record) {
        if (is_placed(track, record)) return record;
    }
    return known;
}

// In the plane, unless it is too far away to be one of the view's pixels.
PixelPlace plane_pixel(const FollowView& view, double easting, double northing)
{
    return {rounded_pixel((easting - view.anchor.easting) * view.scale),
            rounded_pixel((view.anchor.northing - northing) * view.scale)};
}

PixelTransform transform_of_part(const FollowView& view, const PixelRectangle& part)
{
    return {view.anchor.easting + (view.buffer.origin.x + part.x) / view.scale,
            view.anchor.northing - (view.buffer.origin.y + part.y) / view.scale, view.scale, 1};
}

// All points whose squares may touch a picture, in the order of their records.
void paint_points_near(Picture& picture, const PixelTransform& transform, const FollowView& view,
                       const TrackScene& scene)
{
    const double reach = (mark_half_size(kTickHalfSize, scene.symbol_scale) + 1) / view.scale; // metres
    const double x_min = transform.x_min - reach;
    const double x_max = transform.x_min + picture.width() / view.scale + reach;
    const double y_min = transform.y_max - picture.height() / view.scale - reach;
    const double y_max = transform.y_max + reach;
    for (std::size_t stretch = 0; stretch < view.stretches.size(); ++stretch) {
        const PositionExtent& extent = view.stretches[stretch];
        const bool is_near =
            extent.x_max >= x_min && extent.x_min <= x_max && extent.y_max >= y_min && extent.y_min <= y_max;
        if (!is_near) continue;
        const std::int32_t first = first_of_stretch(stretch);
        paint_records(picture, transform, scene, first, std::min(first + FollowView::kStretch - 1, scene.track.count));
    }
}

void paint_part(FollowView& view, const TrackScene& scene, const PixelRectangle& part)
{
    if (part.width <= 0 || part.height <= 0) return;
    Picture picture(part.width, part.height);
    const PixelTransform transform = transform_of_part(view, part);
    lay_ground(picture, transform, scene);
    paint_points_near(picture, transform, view, scene);
    put_part(view.buffer, part, picture);
}

void paint_anew(FollowView& view, const TrackScene& scene, int width, int height)
{
    const PixelPlace middle = {width / 2, height / 2};
    view.scale = width / scene.settings.follow_width;
    view.anchor.easting = scene.track.easting[view.middle_record] - middle.x / view.scale;
    view.anchor.northing = scene.track.northing[view.middle_record] + middle.y / view.scale;
    view.buffer.origin = {0, 0}; // the buffer is the view, without a seam
    if (view.buffer.pixels.width() == width && view.buffer.pixels.height() == height) {
        clear(view.buffer.pixels);
    } else {
        view.buffer.pixels = Picture(width, height);
    }
    const PixelTransform transform = follow_transform(view);
    lay_ground(view.buffer.pixels, transform, scene);
    paint_points_near(view.buffer.pixels, transform, view, scene);
    view.drawn_colours = scene.colours;
    view.buffer_valid = true;
    view.changed_from = FollowView::kNoRecord;
}

// Moves the view over the plane and draws what came into it.
void move_view(FollowView& view, const TrackScene& scene, const PixelPlace& origin)
{
    const int width = view.buffer.pixels.width();
    const int height = view.buffer.pixels.height();
    const int right = origin.x - view.buffer.origin.x;
    const int down = origin.y - view.buffer.origin.y;
    view.buffer.origin = origin;
    paint_part(view, scene, {right > 0 ? width - right : 0, 0, std::abs(right), height});
    paint_part(view, scene, {0, down > 0 ? height - down : 0, width, std::abs(down)});
}

// The newest points lie over all others, and so does what is drawn of them again.
void paint_changed_points(FollowView& view, const TrackScene& scene)
{
    const std::int32_t first = std::max(view.changed_from, 1);
    view.changed_from = FollowView::kNoRecord;
    if (first > scene.track.count) return;
    const PixelTransform transform = follow_transform(view);
    const int reach = mark_half_size(kTickHalfSize, scene.symbol_scale);
    int left = view.buffer.pixels.width();
    int top = view.buffer.pixels.height();
    int right = 0; // behind the last column
    int bottom = 0;
    for (std::int32_t record = first; record <= scene.track.count; ++record) {
        if (!is_placed(scene.track, record)) continue;
        const int x = pixel_x(transform, scene.track.easting[record]);
        const int y = pixel_y(transform, scene.track.northing[record]);
        left = std::min(left, x - reach);
        right = std::max(right, x + reach + 1);
        top = std::min(top, y - reach);
        bottom = std::max(bottom, y + reach + 1);
    }
    left = std::max(left, 0);
    top = std::max(top, 0);
    const PixelRectangle part = {left, top, std::min(right, view.buffer.pixels.width()) - left,
                                 std::min(bottom, view.buffer.pixels.height()) - top};
    if (part.width <= 0 || part.height <= 0) return;
    Picture picture(part.width, part.height);
    copy_part(view.buffer, part, picture);
    paint_records(picture, transform_of_part(view, part), scene, first, scene.track.count);
    put_part(view.buffer, part, picture);
}

void bring_up_to_date(FollowView& view, const TrackScene& scene, int width, int height)
{
    const double scale = width / scene.settings.follow_width;
    const bool is_same_view = view.buffer_valid && view.buffer.pixels.width() == width &&
                              view.buffer.pixels.height() == height && view.scale == scale &&
                              view.drawn_colours == scene.colours;
    if (!is_same_view) return paint_anew(view, scene, width, height);
    const PixelPlace middle =
        plane_pixel(view, scene.track.easting[view.middle_record], scene.track.northing[view.middle_record]);
    const PixelPlace origin = {middle.x - width / 2, middle.y - height / 2};
    const bool has_jumped =
        std::abs(origin.x - view.buffer.origin.x) >= width || std::abs(origin.y - view.buffer.origin.y) >= height;
    if (has_jumped) return paint_anew(view, scene, width, height);
    if (origin != view.buffer.origin) move_view(view, scene, origin);
    if (view.changed_from != FollowView::kNoRecord) paint_changed_points(view, scene);
}

} // namespace

void note_plotted_point(FollowView& view, const TrackTable& track, std::int32_t index)
{
    if (index == track.count) {
        if (index <= view.newest_record) { // what was drawn of the dropped ones is in the way
            view.buffer_valid = false;
            view.middle_record = 0;
        }
        view.newest_record = index;
    }
    note_changed_points(view, index);
}

void note_changed_points(FollowView& view, std::int32_t first_record)
{
    view.changed_from = std::min(view.changed_from, std::max(first_record, 1));
}

void draw_followed_track(Picture& picture, FollowView& view, const TrackScene& scene)
{
    if (picture.is_empty()) return;
    require_positions(scene.track);
    update_stretches(view, scene.track);
    view.middle_record = record_for_middle(view, scene.track);
    if (view.middle_record < 1) {
        clear(picture);
        view.buffer_valid = false;
        return;
    }
    bring_up_to_date(view, scene, picture.width(), picture.height());
    copy_picture(view.buffer, picture);
}

PixelTransform follow_transform(const FollowView& view)
{
    if (!view.anchor.is_known()) return {};
    return transform_of_part(view, {});
}

double zoomed_follow_width(double width, double factor)
{
    return std::clamp(width / factor, kNarrowestFollowWidth, kWidestFollowWidth);
}

} // namespace tarvo

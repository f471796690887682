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
    return {view.anchor.easting + (view.origin.x + part.x) / view.scale,
            view.anchor.northing - (view.origin.y + part.y) / view.scale, view.scale, 1};
}

// Calls copy(part, x, y) for each piece of a part of the view that lies in one place of the buffer: (x, y) is its
// upper left pixel there, the part is counted from the given one's corner.
template <class Copy>
void for_each_piece(const FollowView& view, const PixelRectangle& part, Copy copy)
{
    const int width = view.buffer.width();
    const int height = view.buffer.height();
    const auto wrapped = [](int pixel, int side) { return (pixel % side + side) % side; };
    for (int y = 0; y < part.height;) {
        const int buffer_y = wrapped(view.origin.y + part.y + y, height);
        const int rows = std::min(part.height - y, height - buffer_y);
        for (int x = 0; x < part.width;) {
            const int buffer_x = wrapped(view.origin.x + part.x + x, width);
            const int columns = std::min(part.width - x, width - buffer_x);
            copy(PixelRectangle{x, y, columns, rows}, buffer_x, buffer_y);
            x += columns;
        }
        y += rows;
    }
}

void copy_from_buffer(const FollowView& view, const PixelRectangle& part, Picture& target)
{
    for_each_piece(view, part, [&](const PixelRectangle& piece, int x, int y) {
        copy_block(view.buffer, {x, y, piece.width, piece.height}, target, piece.x, piece.y);
    });
}

void copy_to_buffer(FollowView& view, const PixelRectangle& part, const Picture& source)
{
    for_each_piece(view, part,
                   [&](const PixelRectangle& piece, int x, int y) { copy_block(source, piece, view.buffer, x, y); });
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
    copy_to_buffer(view, part, picture);
}

void paint_anew(FollowView& view, const TrackScene& scene, int width, int height)
{
    view.scale = width / scene.settings.follow_width;
    view.anchor.easting = scene.track.easting[view.middle_record] - width / 2 / view.scale;
    view.anchor.northing = scene.track.northing[view.middle_record] + height / 2 / view.scale;
    view.origin = {0, 0}; // the buffer is the view, without a seam
    if (view.buffer.width() == width && view.buffer.height() == height) {
        clear(view.buffer);
    } else {
        view.buffer = Picture(width, height);
    }
    const PixelTransform transform = follow_transform(view);
    lay_ground(view.buffer, transform, scene);
    paint_points_near(view.buffer, transform, view, scene);
    view.drawn_colours = scene.colours;
    view.buffer_valid = true;
    view.changed_from = FollowView::kNoRecord;
}

// Moves the view over the plane and draws what came into it.
void move_view(FollowView& view, const TrackScene& scene, const PixelPlace& origin)
{
    const int width = view.buffer.width();
    const int height = view.buffer.height();
    const int right = origin.x - view.origin.x;
    const int down = origin.y - view.origin.y;
    view.origin = origin;
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
    int left = view.buffer.width();
    int top = view.buffer.height();
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
    const PixelRectangle part = {left, top, std::min(right, view.buffer.width()) - left,
                                 std::min(bottom, view.buffer.height()) - top};
    if (part.width <= 0 || part.height <= 0) return;
    Picture picture(part.width, part.height);
    copy_from_buffer(view, part, picture);
    paint_records(picture, transform_of_part(view, part), scene, first, scene.track.count);
    copy_to_buffer(view, part, picture);
}

void bring_up_to_date(FollowView& view, const TrackScene& scene, int width, int height)
{
    const double scale = width / scene.settings.follow_width;
    const bool is_same_view = view.buffer_valid && view.buffer.width() == width && view.buffer.height() == height &&
                              view.scale == scale && view.drawn_colours == scene.colours;
    if (!is_same_view) return paint_anew(view, scene, width, height);
    const PixelPlace middle =
        plane_pixel(view, scene.track.easting[view.middle_record], scene.track.northing[view.middle_record]);
    const PixelPlace origin = {middle.x - width / 2, middle.y - height / 2};
    const bool has_jumped = std::abs(origin.x - view.origin.x) >= width || std::abs(origin.y - view.origin.y) >= height;
    if (has_jumped) return paint_anew(view, scene, width, height);
    if (origin != view.origin) move_view(view, scene, origin);
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
    copy_from_buffer(view, {0, 0, picture.width(), picture.height()}, picture);
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

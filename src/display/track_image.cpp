#include "display/track_image.h"

#include "ports/guarded_operation.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kMarkerRadius = 6;

bool zoomed_view_is_active(const TrackImage& image)
{
    return image.zoomed_view.zoom > 1;
}
const TrackView& active_view(const TrackImage& image)
{
    return zoomed_view_is_active(image) ? image.zoomed_view : image.full_view;
}

// Done a second time, it takes the crosshair away. Where its lines meet, the pixels stay as they are.
void invert_crosshair(TrackImage& image)
{
    if (image.crosshair == kNoCrosshair) return;
    const auto [x, y] = image.crosshair;
    for (int beside = 0; beside < image.symbol_scale; ++beside) {
        invert_line(image.picture, x + beside, 0, x + beside, image.picture.height() - 1);
        invert_line(image.picture, 0, y + beside, image.picture.width() - 1, y + beside);
    }
}

void lay_crosshair(TrackImage& image)
{
    const bool is_shown = image.location.is_known() && image.mode != TrackMode::scroll;
    image.crosshair = kNoCrosshair;
    if (!is_shown) return;
    const PixelTransform transform = active_transform(image);
    image.crosshair = {pixel_x(transform, image.location.easting), pixel_y(transform, image.location.northing)};
    invert_crosshair(image);
}

void lift_crosshair(TrackImage& image)
{
    invert_crosshair(image);
    image.crosshair = kNoCrosshair;
}

// From its middle to its outermost pixels.
int marker_reach(const TrackImage& image)
{
    return kMarkerRadius * image.symbol_scale + image.symbol_scale / 2;
}

void lay_marker(TrackImage& image)
{
    NewPickMarker& marker = image.marker;
    marker.drawn_at = kNoMarker;
    if (!marker.place.is_known()) return;
    const PixelTransform transform = active_transform(image);
    PixelPlace at = {pixel_x(transform, marker.place.easting), pixel_y(transform, marker.place.northing)};
    if (image.mode == TrackMode::scroll) at = scrolled_pixel(image.scrolled, marker.record).value_or(at);
    const int reach = marker_reach(image);
    const int side = 2 * reach + 1;
    marker.covered = Picture(side, side);
    copy_block(image.picture, {at.x - reach, at.y - reach, side, side}, marker.covered, 0, 0);
    draw_scaled_ring(image.picture, at.x, at.y, kMarkerRadius, image.symbol_scale, marker.colour);
    marker.drawn_at = at;
}

void lift_marker(TrackImage& image)
{
    const NewPickMarker& marker = image.marker;
    if (marker.drawn_at == kNoMarker) return;
    const int reach = marker_reach(image);
    copy_block(marker.covered, {0, 0, 2 * reach + 1, 2 * reach + 1}, image.picture, marker.drawn_at.x - reach,
               marker.drawn_at.y - reach);
    image.marker.drawn_at = kNoMarker;
}

// The crosshair lies over the marker: it is taken off first and laid last.
void lift_overlays(TrackImage& image)
{
    lift_crosshair(image);
    lift_marker(image);
}
void lay_overlays(TrackImage& image)
{
    lay_marker(image);
    lay_crosshair(image);
}

void rebuild_buffer(TrackImage& image, TrackView& view, const TrackScene& scene, Operator& op)
{
    const int width = image.picture.width();
    const int height = image.picture.height();
    const bool fits = view.buffer.width() == width && view.buffer.height() == height;
    if (!fits && create_image_buffer(view, width, height, op) < 0) return;
    add_track_to_buffer(view, image.frame, scene, op);
}

// The view in use, brought up to date.
const TrackView& refreshed_view(TrackImage& image, const TrackScene& scene, Redraw redraw, Operator& op)
{
    if (zoomed_view_is_active(image)) {
        const bool is_requested = redraw == Redraw::requested || image.redraw_pending;
        if (is_requested || !image.zoomed_view.buffer_valid) rebuild_buffer(image, image.zoomed_view, scene, op);
        return image.zoomed_view;
    }
    if (!image.full_view.buffer_valid || scene.colours != image.drawn_colours) {
        image.drawn_colours = scene.colours;
        rebuild_buffer(image, image.full_view, scene, op);
    }
    return image.full_view;
}

// The section of the view in use, and below it what the view shows, brought up to date.
void show_view(TrackImage& image, const TrackScene& scene, Redraw redraw, Operator& op)
{
    if (image.mode != TrackMode::follow) {
        const TrackView& view = refreshed_view(image, scene, redraw, op);
        if (scene.track.count > 0) display_data_track(image.picture, view, image.frame, image.section, scene, op);
        return;
    }
    if (redraw == Redraw::requested || image.redraw_pending) image.follow_view.buffer_valid = false;
    const int status = run_guarded(op, "An error occurred while displaying the data track: ", [&] {
        draw_followed_track(image.picture, image.follow_view, scene);
    });
    if (status == 0) {
        display_highlighted_section(image.picture, active_transform(image), image.section, scene, op);
    }
}

void show_scrolled(TrackImage& image)
{
    lift_overlays(image);
    take_over_picture(image.scrolled, image.picture);
    copy_picture(image.scrolled.buffer, image.picture);
    lay_overlays(image);
}

// Always by the full view: the new sample's square does not follow the zoom.
void plot_in_fixed_extent(TrackImage& image, const PointMark& mark, double easting, double northing)
{
    const PixelTransform transform = view_transform(image.full_view, image.frame.pixel_scale);
    const int x = pixel_x(transform, easting);
    const int y = pixel_y(transform, northing);
    fill_square(image.picture, x, y, mark.half_size, mark.colour);
    if (image.full_view.buffer_valid) fill_square(image.full_view.buffer, x, y, mark.half_size, mark.colour);
}

} // namespace

void resize_track_image(TrackImage& image, const TrackScene& scene, int width, int height, Operator& op)
{
    run_guarded(op, "An error occurred while creating the image buffer: ", [&] {
        lift_overlays(image);
        image.picture = Picture(width, height);
        image.full_view.buffer_valid = false;
        image.zoomed_view.buffer_valid = false;
        if (image.mode == TrackMode::scroll) {
            redraw_scrolled_track(image.scrolled, image.picture, scene);
            copy_picture(image.scrolled.buffer, image.picture);
        }
        lay_overlays(image);
    });
    fit_data_extent(image, scene, op);
}

void clear_track_image(TrackImage& image, Operator& op)
{
    lift_overlays(image);
    clear(image.picture);
    image.follow_view = {};
    image.scrolled = {};
    image.is_held = false;
    image.current_record = 0;
    image.section = {};
    image.location = {};
    image.marker = {};
    image.pick_labels.clear();
    image.redraw_pending = false;
    reset_track_view(image.full_view, image.full_view);
    fit_data_extent(image, {}, op);
    reset_track_view(image.zoomed_view, image.full_view);
}

void fit_data_extent(TrackImage& image, const TrackScene& scene, Operator& op)
{
    const MapFrame fitted = fitted_frame(scene.track, image.picture.width(), image.picture.height());
    if (fitted == image.frame) return;
    image.frame = fitted;
    for (TrackView* const view : {&image.full_view, &image.zoomed_view}) {
        calculate_zoom_settings(*view, fitted.extent, op);
        view->buffer_valid = false;
    }
}

void show_whole_track(TrackImage& image, const TrackScene& scene, Operator& op)
{
    image.mode = TrackMode::whole;
    image.follow_view = {};
    image.scrolled = {};
    drop_drawn_track(image);
    fit_data_extent(image, scene, op);
    update_image_display(image, scene, Redraw::as_needed, op);
}

void show_finished_track(TrackImage& image, const TrackScene& scene, Operator& op)
{
    image.is_held = false;
    reset_track_view(image.zoomed_view, image.full_view);
    show_whole_track(image, scene, op);
}

void follow_track(TrackImage& image, const TrackScene& scene, Operator& op)
{
    image.mode = TrackMode::follow;
    image.follow_view = {};
    image.scrolled = {};
    update_image_display(image, scene, Redraw::as_needed, op);
}

void scroll_track(TrackImage& image, const TrackScene& scene)
{
    if (image.is_held) return;
    lift_overlays(image);
    image.mode = TrackMode::scroll;
    image.follow_view = {};
    image.pick_labels.clear();
    scroll_through(image.scrolled, image.picture, scene);
    show_scrolled(image);
}

void plot_track_point(TrackImage& image, const TrackScene& scene, std::int32_t index, double easting, double northing)
{
    image.zoomed_view.buffer_valid = false; // it does not hold this sample
    if (image.mode == TrackMode::follow) {
        image.full_view.buffer_valid = false; // likewise
        note_plotted_point(image.follow_view, scene.track, index);
        return;
    }
    if (image.mode == TrackMode::scroll) {
        image.full_view.buffer_valid = false;
        take_over_picture(image.scrolled, image.picture);
        plot_scrolled_point(image.scrolled, index, easting, northing, point_mark(scene, index));
        return;
    }
    lift_overlays(image);
    plot_in_fixed_extent(image, point_mark(scene, index), easting, northing);
    lay_overlays(image);
}

void recolour_track_points(TrackImage& image, const TrackScene& scene, std::int32_t first_record)
{
    image.zoomed_view.buffer_valid = false; // its colours are older
    if (image.mode == TrackMode::follow) {
        note_changed_points(image.follow_view, first_record);
        return;
    }
    if (image.mode == TrackMode::scroll) {
        redraw_scrolled_points(image.scrolled, scene, first_record);
        return;
    }
    lift_overlays(image);
    for (std::int32_t record = std::max(first_record, 1); record <= scene.track.count; ++record) {
        plot_in_fixed_extent(image, point_mark(scene, record), scene.track.easting[record],
                             scene.track.northing[record]);
    }
    lay_overlays(image);
}

void update_image_display(TrackImage& image, const TrackScene& scene, Redraw redraw, Operator& op)
{
    if (image.is_held) return;
    if (image.mode == TrackMode::scroll) return show_scrolled(image);
    lift_overlays(image);
    show_view(image, scene, redraw, op);
    if (scene.track.count > 0) {
        image.pick_labels = draw_located_picks(image.picture, active_transform(image), scene);
        lay_marker(image);
    }
    image.redraw_pending = false;
    display_location_crosshair(image, image.location);
    if (image.run_pending_events) image.run_pending_events();
}

void drop_drawn_track(TrackImage& image)
{
    image.full_view.buffer_valid = false;
    image.zoomed_view.buffer_valid = false;
    image.follow_view.buffer_valid = false;
}

void redraw_colours(TrackImage& image, const TrackScene& scene, Operator& op)
{
    image.full_view.buffer_valid = false;
    if (!zoomed_view_is_active(image)) image.zoomed_view.buffer_valid = false;
    image.redraw_pending = true;
    if (image.mode == TrackMode::scroll) redraw_scrolled_track(image.scrolled, image.picture, scene);
    update_image_display(image, scene, Redraw::as_needed, op);
}

void display_location_crosshair(TrackImage& image, const GridPlace& location)
{
    lift_crosshair(image);
    image.location = location;
    if (!location.is_known()) image.redraw_pending = false;
    lay_crosshair(image);
}

void display_new_pick_location(TrackImage& image, const GridPlace& place, Colour colour, int draw_flag,
                               std::int32_t record)
{
    lift_overlays(image);
    image.marker.place = draw_flag > 0 ? place : GridPlace{};
    image.marker.record = record;
    image.marker.colour = colour;
    lay_overlays(image);
}

PixelTransform active_transform(const TrackImage& image)
{
    if (image.mode == TrackMode::follow) return follow_transform(image.follow_view);
    if (image.mode == TrackMode::scroll) {
        const ScrolledTrack& scrolled = image.scrolled;
        return {scrolled.last_easting - scrolled.centre_x, scrolled.last_northing + scrolled.centre_y, 1, 1};
    }
    return view_transform(active_view(image), image.frame.pixel_scale);
}

GridPlace place_of_pixel(const TrackImage& image, int x, int y)
{
    if (image.is_held) return {};
    const PixelTransform transform = active_transform(image);
    const double pixels_per_metre = transform.scale * transform.zoom;
    return {transform.x_min + x / pixels_per_metre, transform.y_max - y / pixels_per_metre};
}

} // namespace tarvo

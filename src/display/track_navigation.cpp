#include "display/track_navigation.h"

#include "display/track_layers.h"
#include "ports/busy_flag.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

constexpr double kLargestZoom = 100;

// The current track point's place, where there is a point after it.
GridPlace current_place(const TrackImage& image, const TrackTable& track)
{
    const std::int32_t record = image.current_record;
    if (record < 1 || record >= track.count) return {};
    return {track.easting[record], track.northing[record]};
}

void centre_zoomed_view(TrackView& view, const GridPlace& place)
{
    view.centre_x = place.easting;
    view.centre_y = place.northing;
}

// The picture is one of the fitted views.
bool shows_whole_survey(const TrackImage& image)
{
    return image.mode == TrackMode::whole && !image.is_held;
}

// An empty view rectangle with its centre at (0, 0): the zoom settings then take the middle of the data.
void leave_centre_open(TrackView& view)
{
    view.centre_x = view.centre_y = 0;
    view.view_x_min = view.view_x_max = 0;
    view.view_y_min = view.view_y_max = 0;
}

// An enlarged picture is a part of the whole survey: it no longer moves with the track. False while a load holds it.
bool leave_following(TrackImage& image, const TrackScene& scene, Operator& op)
{
    if (image.is_held) return false;
    if (image.mode == TrackMode::whole) return true;
    image.mode = TrackMode::whole;
    image.follow_view = {};
    image.scrolled = {};
    image.full_view.buffer_valid = false;
    fit_data_extent(image, scene, op);
    return true;
}

void show_zoomed_view(TrackImage& image, const TrackScene& scene, Operator& op)
{
    image.zoomed_view.buffer_valid = false;
    if (calculate_zoom_settings(image.zoomed_view, image.frame.extent, op) < 0) return;
    update_image_display(image, scene, Redraw::as_needed, op);
}

} // namespace

std::optional<float> zoom_of_text(std::string_view text)
{
    constexpr double kSmallestPercent = 100;
    constexpr double kLargestPercent = 10000;
    if (text.ends_with('%')) text = trimmed(text.substr(0, text.size() - 1));
    const std::optional<double> percent = numeric_value(text);
    if (!percent || *percent < kSmallestPercent || *percent > kLargestPercent) return std::nullopt;
    return static_cast<float>(*percent / 100);
}

void Combo_zoom_change(TrackImage& image, const TrackScene& scene, std::string_view text, Operator& op)
{
    if (image.zoom_is_changing) return;
    const BusyFlag busy(image.zoom_is_changing);
    const std::optional<float> zoom = zoom_of_text(text);
    if (!zoom || !leave_following(image, scene, op)) return;
    image.zoomed_view.zoom = *zoom;
    show_zoomed_view(image, scene, op);
}

void Combo_zoom_click(TrackImage& image, const TrackScene& scene, std::string_view text, int zoom_option, Operator& op)
{
    if (image.zoom_is_changing) return;
    const BusyFlag busy(image.zoom_is_changing);
    if (zoom_option < 1) {
        reset_track_view(image.zoomed_view, image.full_view);
        update_image_display(image, scene, Redraw::as_needed, op);
        return;
    }
    const std::optional<float> zoom = zoom_of_text(text);
    if (!zoom || !leave_following(image, scene, op)) return;
    image.zoomed_view.zoom = *zoom;
    const GridPlace place = current_place(image, scene.track);
    if (place.is_known()) {
        centre_zoomed_view(image.zoomed_view, place);
    } else {
        leave_centre_open(image.zoomed_view);
    }
    show_zoomed_view(image, scene, op);
}

void HScroll_pan_change(TrackImage& image, const TrackScene& scene, std::int32_t position, std::int32_t track_skip,
                        Operator& op)
{
    if (image.pan_is_changing || scene.track.count < 1) return;
    const BusyFlag busy(image.pan_is_changing);
    // Positions 0 and 1 both stand for the first track point.
    const std::int64_t record = position >= 2 ? std::int64_t{position - 1} * track_skip + 1 : 1;
    const std::int64_t last_with_follower = std::max(scene.track.count - 1, 1);
    make_record_current(image, scene, static_cast<std::int32_t>(std::min(record, last_with_follower)), Recentre::yes,
                        op);
}

std::int32_t pan_position_of(std::int32_t record, std::int32_t track_skip)
{
    return (std::max(record, 1) - 1) / std::max(track_skip, 1) + 1;
}

std::string zoom_text(float zoom)
{
    return format_fixed(std::round(static_cast<double>(zoom) * 100), 0) + '%';
}

void zoom_about_pixel(TrackImage& image, const TrackScene& scene, int x, int y, double factor, Operator& op)
{
    if (image.zoom_is_changing || scene.track.count < 1 || !shows_whole_survey(image)) return;
    const BusyFlag busy(image.zoom_is_changing);
    TrackView& view = image.zoomed_view;
    const float zoom = static_cast<float>(std::min(static_cast<double>(view.zoom) * factor, kLargestZoom));
    if (!(zoom > 1)) {
        reset_track_view(view, image.full_view);
        update_image_display(image, scene, Redraw::as_needed, op);
        return;
    }
    const GridPlace fixed = place_of_pixel(image, x, y);
    const double pixels_per_metre = image.frame.pixel_scale * static_cast<double>(zoom);
    view.zoom = zoom;
    centre_zoomed_view(view, {fixed.easting + (image.picture.width() / 2.0 - x) / pixels_per_metre,
                              fixed.northing - (image.picture.height() / 2.0 - y) / pixels_per_metre});
    show_zoomed_view(image, scene, op);
}

void drag_view(TrackImage& image, const TrackScene& scene, int right, int down, Operator& op)
{
    TrackView& view = image.zoomed_view;
    if (!(view.zoom > 1) || image.zoom_is_changing || !shows_whole_survey(image)) return;
    const BusyFlag busy(image.zoom_is_changing);
    const double pixels_per_metre = image.frame.pixel_scale * static_cast<double>(view.zoom);
    centre_zoomed_view(view, {view.centre_x - right / pixels_per_metre, view.centre_y + down / pixels_per_metre});
    show_zoomed_view(image, scene, op);
}

void show_place(TrackImage& image, const TrackScene& scene, const GridPlace& place, double zoom, Operator& op)
{
    if (image.zoom_is_changing || scene.track.count < 1 || !leave_following(image, scene, op)) return;
    const BusyFlag busy(image.zoom_is_changing);
    image.zoomed_view.zoom = static_cast<float>(std::min(zoom, kLargestZoom));
    centre_zoomed_view(image.zoomed_view, place);
    show_zoomed_view(image, scene, op);
}

void show_records(TrackImage& image, const TrackScene& scene, std::int32_t first, std::int32_t last, Operator& op)
{
    const std::optional<WorldExtent> extent = calculate_highlighted_limits(scene.track, {first, last}, op);
    if (!extent) return;
    constexpr double kMargin = 1.2; // of the stretch's extent
    const WorldExtent& whole = image.frame.extent;
    const double zoom_x = (whole.x_max - whole.x_min) / std::max(extent->x_max - extent->x_min, 1.0);
    const double zoom_y = (whole.y_max - whole.y_min) / std::max(extent->y_max - extent->y_min, 1.0);
    const GridPlace middle = {(extent->x_min + extent->x_max) / 2, (extent->y_min + extent->y_max) / 2};
    show_place(image, scene, middle, std::max(std::min(zoom_x, zoom_y) / kMargin, 1.0), op);
}

void make_record_current(TrackImage& image, const TrackScene& scene, std::int32_t record, Recentre recentre,
                         Operator& op)
{
    if (record < 1 || record > scene.track.count) return;
    image.current_record = record;
    image.section = calculate_section_limits(scene.track, record, scene.settings.track_axis_length, op);
    const GridPlace place = {scene.track.easting[record], scene.track.northing[record]};
    image.location = place;
    if (recentre == Recentre::yes && place.is_known() && image.zoomed_view.zoom > 1) {
        centre_zoomed_view(image.zoomed_view, place);
        show_zoomed_view(image, scene, op);
        return;
    }
    update_image_display(image, scene, Redraw::as_needed, op);
}

void keep_newest_in_view(TrackImage& image, const TrackScene& scene, Operator& op)
{
    const std::int32_t newest = scene.track.count;
    if (image.mode != TrackMode::whole || newest < 1) return;
    const GridPlace place = {scene.track.easting[newest], scene.track.northing[newest]};
    const WorldExtent& extent = image.frame.extent;
    const bool is_inside = place.easting >= extent.x_min && place.easting <= extent.x_max &&
                           place.northing >= extent.y_min && place.northing <= extent.y_max;
    if (place.is_known() && !is_inside) show_whole_track(image, scene, op);
}

} // namespace tarvo

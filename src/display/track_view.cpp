#include "display/track_view.h"

#include "display/grid_picture.h"
#include "ports/guarded_operation.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tarvo {

namespace {

// An interval of one world coordinate.
struct Range {
    double min = 0;
    double max = 0;

    double length() const { return max - min; }
};

Range widened(Range range, double length)
{
    const double margin = (length - range.length()) / 2;
    return {range.min - margin, range.max + margin};
}

Range with_margin(Range range)
{
    constexpr double kSmallestLength = 1.0; // metres
    constexpr double kMarginShare = 0.02;   // of the length, on each side
    if (range.length() < kSmallestLength) range = widened(range, kSmallestLength);
    return widened(range, range.length() * (1 + 2 * kMarginShare));
}

// One axis of a view.
struct ViewAxis {
    double centre = 0;
    double span = 0;
    double min = 0;
    double max = 0;
};

ViewAxis whole_axis(double data_min, double data_max)
{
    return {(data_min + data_max) / 2, data_max - data_min, data_min, data_max};
}

ViewAxis zoomed_axis(double data_min, double data_max, double centre, double zoom)
{
    const double span = (data_max - data_min) / zoom;
    return {centre, span, centre - span / 2, centre + span / 2};
}

void set_axes(TrackView& view, const ViewAxis& x, const ViewAxis& y)
{
    view.centre_x = x.centre;
    view.span_x = x.span;
    view.view_x_min = x.min;
    view.view_x_max = x.max;
    view.centre_y = y.centre;
    view.span_y = y.span;
    view.view_y_min = y.min;
    view.view_y_max = y.max;
}

void check_extent(const WorldExtent& extent)
{
    const bool is_rectangle = extent.x_max > extent.x_min && extent.y_max > extent.y_min;
    const bool is_finite = std::isfinite(extent.x_max - extent.x_min) && std::isfinite(extent.y_max - extent.y_min);
    if (!is_rectangle || !is_finite) throw std::domain_error("the data extent is empty");
}

} // namespace

MapFrame fitted_frame(const TrackTable& track, int picture_width, int picture_height)
{
    const PositionExtent positions = position_extent(track).value_or(PositionExtent());
    Range x = with_margin({positions.x_min, positions.x_max});
    Range y = with_margin({positions.y_min, positions.y_max});
    const double width = std::max(picture_width, 1);
    const double height = std::max(picture_height, 1);
    if (x.length() * height < y.length() * width) {
        x = widened(x, y.length() * width / height);
    } else {
        y = widened(y, x.length() * height / width);
    }
    return {{x.min, x.max, y.min, y.max}, width / x.length()};
}

PixelTransform view_transform(const TrackView& view, double pixel_scale)
{
    return {view.view_x_min, view.view_y_max, pixel_scale, view.zoom};
}

void reset_track_view(TrackView& view, const TrackView& full_view)
{
    view.buffer = Picture();
    view.buffer_valid = false;
    view.zoom = 1.0F;
    set_axes(view, {full_view.centre_x, full_view.span_x, full_view.view_x_min, full_view.view_x_max},
             {full_view.centre_y, full_view.span_y, full_view.view_y_min, full_view.view_y_max});
}

int create_image_buffer(TrackView& view, int picture_width, int picture_height, Operator& op)
{
    return run_guarded(op, "An error occurred while creating the image buffer: ", [&] {
        view.buffer_valid = false;
        view.buffer = Picture(); // released first: never two of them at a time
        view.buffer = Picture(picture_width, picture_height);
    });
}

int add_track_to_buffer(TrackView& view, const MapFrame& frame, const TrackScene& scene, Operator& op)
{
    return run_guarded(op, "An error occurred while adding the track to the image buffer: ", [&] {
        const PixelTransform transform = view_transform(view, frame.pixel_scale);
        clear(view.buffer);
        lay_ground(view.buffer, transform, scene);
        paint_track(view.buffer, transform, scene);
        view.buffer_valid = true;
    });
}

int calculate_zoom_settings(TrackView& view, const WorldExtent& data_extent, Operator& op)
{
    return run_guarded(op, "An error occurred while calculating the zoom settings: ", [&] {
        check_extent(data_extent);
        const ViewAxis whole_x = whole_axis(data_extent.x_min, data_extent.x_max);
        const ViewAxis whole_y = whole_axis(data_extent.y_min, data_extent.y_max);
        if (view.zoom <= 1) {
            view.zoom = 1.0F;
            set_axes(view, whole_x, whole_y);
            return;
        }
        const bool is_empty = view.view_x_min >= view.view_x_max || view.view_y_min >= view.view_y_max;
        if (is_empty && (view.centre_x == 0 || view.centre_y == 0)) {
            view.centre_x = whole_x.centre;
            view.centre_y = whole_y.centre;
        }
        set_axes(view, zoomed_axis(data_extent.x_min, data_extent.x_max, view.centre_x, view.zoom),
                 zoomed_axis(data_extent.y_min, data_extent.y_max, view.centre_y, view.zoom));
    });
}

int display_full_data_track(Picture& picture, const TrackView& view, const MapFrame& frame, const TrackScene& scene,
                            Operator& op)
{
    return run_guarded(op, "An error occurred while displaying the full data track: ", [&] {
        paint_track(picture, view_transform(view, frame.pixel_scale), scene);
    });
}

} // namespace tarvo

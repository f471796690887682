#include "display/track_navigation.h"

#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

// Set as long as a handler runs.
class BusyFlag {
public:
    explicit BusyFlag(bool& flag) : flag_(flag) { flag_ = true; }
    BusyFlag(const BusyFlag&) = delete;
    BusyFlag& operator=(const BusyFlag&) = delete;
    ~BusyFlag() { flag_ = false; }

private:
    bool& flag_;
};

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

// An empty view rectangle with its centre at (0, 0): the zoom settings then take the middle of the data.
void leave_centre_open(TrackView& view)
{
    view.centre_x = view.centre_y = 0;
    view.view_x_min = view.view_x_max = 0;
    view.view_y_min = view.view_y_max = 0;
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
    if (!zoom) return;
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
    if (!zoom) return;
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
    image.current_record = static_cast<std::int32_t>(std::min(record, last_with_follower));
    image.section = calculate_section_limits(scene.track, image.current_record, scene.settings.track_axis_length, op);

    const GridPlace place = current_place(image, scene.track);
    if (place.is_known()) image.location = place;
    if (place.is_known() && image.zoomed_view.zoom > 1) {
        centre_zoomed_view(image.zoomed_view, place);
        show_zoomed_view(image, scene, op);
        return;
    }
    update_image_display(image, scene, Redraw::as_needed, op);
}

} // namespace tarvo

#include "display/survey_pictures.h"

#include "display/colour_bars.h"
#include "display/grid_picture.h"
#include "display/track_view.h"
#include "ports/guarded_operation.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarvo {

namespace {

constexpr const char* kFaultText = "An error occurred while drawing the picture of the survey: ";
constexpr int kBarHeight = 40;

// A view of the survey with the frame that it is a part of.
struct FramedView {
    MapFrame frame;
    TrackView view;

    PixelTransform transform() const { return view_transform(view, frame.pixel_scale); }
};

std::optional<FramedView> whole_view(const TrackScene& scene, int width, int height, Operator& op)
{
    FramedView whole;
    whole.frame = fitted_frame(scene.track, width, height);
    if (calculate_zoom_settings(whole.view, whole.frame.extent, op) < 0) return std::nullopt;
    return whole;
}

void check_record(const TrackTable& track, std::int32_t record)
{
    if (record < 1 || record > track.count) {
        throw std::out_of_range("there is no record " + std::to_string(record) + " among the " +
                                std::to_string(track.count) + " stored");
    }
    if (!has_position(track, record)) {
        throw std::domain_error("record " + std::to_string(record) + " has no position");
    }
}

std::optional<FramedView> zoomed_view(const TrackScene& scene, int width, int height, double zoom_percent,
                                      std::int32_t record, Operator& op)
{
    if (run_guarded(op, kFaultText, [&] { check_record(scene.track, record); }) < 0) return std::nullopt;
    std::optional<FramedView> zoomed = whole_view(scene, width, height, op);
    if (!zoomed) return zoomed;
    zoomed->view.zoom = static_cast<float>(zoom_percent / 100);
    zoomed->view.centre_x = scene.track.easting[record];
    zoomed->view.centre_y = scene.track.northing[record];
    if (calculate_zoom_settings(zoomed->view, zoomed->frame.extent, op) < 0) zoomed.reset();
    return zoomed;
}

std::optional<MapView> map_view(const std::optional<FramedView>& view, int width, int height)
{
    if (!view) return std::nullopt;
    return MapView{view->transform(), width, height};
}

std::optional<Picture> drawn_view(const std::optional<FramedView>& view, const TrackScene& scene, int width, int height,
                                  Operator& op)
{
    std::optional<Picture> picture;
    if (!view) return picture;
    run_guarded(op, kFaultText, [&] {
        picture.emplace(width, height);
        lay_ground(*picture, view->transform(), scene);
    });
    if (picture && display_full_data_track(*picture, view->view, view->frame, scene, op) < 0) picture.reset();
    return picture;
}

} // namespace

std::optional<MapView> whole_track_view(const TrackScene& scene, int width, int height, Operator& op)
{
    return map_view(whole_view(scene, width, height, op), width, height);
}

std::optional<MapView> zoomed_track_view(const TrackScene& scene, int width, int height, double zoom_percent,
                                         std::int32_t record, Operator& op)
{
    return map_view(zoomed_view(scene, width, height, zoom_percent, record, op), width, height);
}

std::optional<Picture> whole_track_picture(const TrackScene& scene, int width, int height, Operator& op)
{
    return drawn_view(whole_view(scene, width, height, op), scene, width, height, op);
}

std::optional<Picture> zoomed_track_picture(const TrackScene& scene, int width, int height, double zoom_percent,
                                            std::int32_t record, Operator& op)
{
    return drawn_view(zoomed_view(scene, width, height, zoom_percent, record, op), scene, width, height, op);
}

std::optional<Picture> colour_bars_picture(const TrackScene& scene, int sensor_count, int width, std::int32_t record,
                                           Operator& op)
{
    std::optional<Picture> stack;
    run_guarded(op, kFaultText, [&] {
        std::vector<Picture> bars(static_cast<std::size_t>(sensor_count) + 1, Picture(width, kBarHeight));
        SectionLimits section;
        display_TG_bars(bars, scene, record, section, op);

        Picture picture(width, kBarHeight * sensor_count);
        for (int sensor = 1; sensor <= sensor_count; ++sensor) {
            copy_block(bars[static_cast<std::size_t>(sensor)], {0, 0, width, kBarHeight}, picture, 0,
                       kBarHeight * (sensor - 1));
        }
        stack = std::move(picture);
    });
    return stack;
}

} // namespace tarvo

#include "display/survey_pictures.h"

#include "display/colour_bars.h"
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

std::optional<Picture> drawn_view(TrackView view, const MapFrame& frame, const TrackScene& scene, int width, int height,
                                  Operator& op)
{
    std::optional<Picture> picture;
    if (calculate_zoom_settings(view, frame.extent, op) < 0) return picture;
    run_guarded(op, kFaultText, [&] { picture.emplace(width, height); });
    if (picture && display_full_data_track(*picture, view, frame, scene, op) < 0) picture.reset();
    return picture;
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

} // namespace

std::optional<Picture> whole_track_picture(const TrackScene& scene, int width, int height, Operator& op)
{
    return drawn_view({}, fitted_frame(scene.track, width, height), scene, width, height, op);
}

std::optional<Picture> zoomed_track_picture(const TrackScene& scene, int width, int height, double zoom_percent,
                                            std::int32_t record, Operator& op)
{
    if (run_guarded(op, kFaultText, [&] { check_record(scene.track, record); }) < 0) return std::nullopt;
    const MapFrame frame = fitted_frame(scene.track, width, height);
    TrackView view;
    if (calculate_zoom_settings(view, frame.extent, op) < 0) return std::nullopt; // the whole survey, to zoom into
    view.zoom = static_cast<float>(zoom_percent / 100);
    view.centre_x = scene.track.easting[record];
    view.centre_y = scene.track.northing[record];
    return drawn_view(view, frame, scene, width, height, op);
}

std::optional<Picture> colour_bars_picture(const TrackScene& scene, std::span<const double* const> sensor_values,
                                           int width, std::int32_t record, Operator& op)
{
    std::optional<Picture> stack;
    run_guarded(op, kFaultText, [&] {
        std::vector<Picture> bars(sensor_values.size(), Picture(width, kBarHeight));
        SectionLimits section;
        display_TG_bars(bars, sensor_values, scene, record, section, op);

        const int sensor_count = sensor_values.empty() ? 0 : static_cast<int>(sensor_values.size()) - 1;
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

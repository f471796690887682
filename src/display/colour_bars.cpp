#include "display/colour_bars.h"

#include "display/colour_scale.h"

#include <algorithm>
#include <optional>

namespace tarvo {

namespace {

void draw_bar(Picture& bar, const double* values, const TrackScene& scene, std::int32_t current_record,
              const SectionLimits& section)
{
    const double* const distance = scene.track.distance;
    const double axis_length = scene.settings.track_axis_length;
    const double axis_start = distance[current_record] - axis_length / 2;

    const std::int32_t last = std::min(section.last, scene.track.count);
    std::optional<int> previous_x;
    for (std::int32_t record = section.first; record <= last; ++record) {
        const int x = rounded_pixel((distance[record] - axis_start) / axis_length * bar.width());
        if (x <= 0) continue;
        const Colour colour = value_colour(values[record], scene.settings.gradient_max_range);
        fill_rectangle(bar, previous_x.value_or(x - 1), 0, x, bar.height(), colour);
        previous_x = x;
    }
}

} // namespace

void display_TG_bars(std::span<Picture> bars, std::span<const double* const> sensor_values, const TrackScene& scene,
                     std::int32_t current_record, SectionLimits& section, Operator& op)
{
    const std::int32_t count = scene.track.count;
    if (count < 1) return;
    if (section.is_empty()) {
        section = calculate_section_limits(scene.track, current_record, scene.settings.track_axis_length, op);
    }
    const bool has_current_record = current_record >= 1 && current_record <= count;
    for (std::size_t sensor = 1; sensor < bars.size(); ++sensor) {
        clear(bars[sensor]);
        const bool has_values = sensor < sensor_values.size() && sensor_values[sensor] != nullptr;
        if (has_values && has_current_record && section.first >= 1) {
            draw_bar(bars[sensor], sensor_values[sensor], scene, current_record, section);
        }
    }
}

} // namespace tarvo

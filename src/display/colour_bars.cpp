#include "display/colour_bars.h"

#include "display/colour_scale.h"

#include <algorithm>
#include <optional>

namespace tarvo {

namespace {

void draw_bar(Picture& bar, const ShownValues& values, const TrackScene& scene, std::int32_t current_record,
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
        const Colour colour = value_colour(values[record], scene.colours);
        fill_rectangle(bar, previous_x.value_or(x - 1), 0, x, bar.height(), colour);
        previous_x = x;
    }
}

} // namespace

void display_TG_bars(std::span<Picture> bars, const TrackScene& scene, std::int32_t current_record,
                     SectionLimits& section, Operator& op)
{
    const std::int32_t count = scene.track.count;
    if (count < 1) return;
    if (section.is_empty()) {
        section = calculate_section_limits(scene.track, current_record, scene.settings.track_axis_length, op);
    }
    const bool has_current_record = current_record >= 1 && current_record <= count;
    for (std::size_t sensor = 1; sensor < bars.size(); ++sensor) {
        clear(bars[sensor]);
        const ShownValues values(scene, sensor);
        if (values.exist() && has_current_record && section.first >= 1) {
            draw_bar(bars[sensor], values, scene, current_record, section);
        }
    }
}

} // namespace tarvo

#include "display/lever_arm_sketch.h"

#include "processing/sensor_positions.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvo {

namespace {

using Offset = std::array<double, 3>; // u ahead, v to port, w along the vertical channel: metres

std::vector<Offset> offsets_of(const SurveyDefinitions& definitions)
{
    std::vector<Offset> offsets(1);
    for (std::size_t sensor = 1; sensor <= static_cast<std::size_t>(definitions.number_of_sensors); ++sensor) {
        const auto& arm = definitions.sensors[sensor].lever_arm;
        offsets.push_back(lever_arm_offset(arm[SensorDefinition::kOffset], arm[SensorDefinition::kLength],
                                           arm[SensorDefinition::kRotation]));
    }
    return offsets;
}

// Of the sensor farthest out, at least a tenth of a metre.
double reach_of(const std::vector<Offset>& offsets)
{
    double reach = 0.1;
    for (const Offset& offset : offsets) {
        for (const double along_axis : offset) reach = std::max(reach, std::abs(along_axis));
    }
    return reach;
}

// The longest of 1, 2 and 5 times a power of ten that is not above `longest`.
double round_length(double longest)
{
    const double power = std::pow(10.0, std::floor(std::log10(longest)));
    if (5 * power <= longest) return 5 * power;
    return 2 * power <= longest ? 2 * power : power;
}

// 1 when a growing vertical channel goes up, -1 when it goes down.
double upwards(const SurveyDefinitions& definitions)
{
    const bool from_depth = !is_unused_name(definitions.fields[kDepth].name);
    return from_depth && definitions.flip_depth_sign != 1 ? -1.0 : 1.0;
}

} // namespace

LeverArmSketch lever_arm_sketch(const SurveyDefinitions& definitions, double side, double margin)
{
    const double middle = side / 2;
    LeverArmSketch sketch;
    sketch.fish = {middle, middle};
    if (definitions.read_sensor_location == 1) return sketch;

    const std::vector<Offset> offsets = offsets_of(definitions);
    const double scale = (middle - margin) / reach_of(offsets);
    const double up = upwards(definitions);
    sketch.pixels_per_metre = scale;
    sketch.scale_bar = round_length(middle / scale);
    for (const auto& [u, v, w] : offsets) {
        const double across = middle - v * scale;
        sketch.sensors.push_back(
            {{middle, middle - u * scale}, {across, middle - u * scale}, {across, middle - up * w * scale}});
    }
    return sketch;
}

} // namespace tarvo

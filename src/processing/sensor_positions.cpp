#include "processing/sensor_positions.h"

#include <cmath>

namespace tarvo {

namespace {

// Degrees to radians in single precision: the last digits of all positions depend on it.
constexpr double kRadiansPerDegree = 0.017453292F;

double radians(double degrees)
{
    return is_valid_channel(degrees) ? degrees * kRadiansPerDegree : 0.0;
}

} // namespace

Rotation fish_rotation(const FishPose& fish, HeadingSense sense)
{
    const double known_heading = is_valid_channel(fish.heading) ? fish.heading : 0.0;
    const double heading = radians(sense == HeadingSense::compass ? 90.0 - known_heading : known_heading);
    const double pitch = radians(fish.pitch);
    const double roll = radians(fish.roll);
    const double cH = std::cos(heading);
    const double sH = std::sin(heading);
    const double cP = std::cos(pitch);
    const double sP = std::sin(pitch);
    const double cR = std::cos(roll);
    const double sR = std::sin(roll);
    return {{{cH * cP, cH * sP * sR - sH * cR, cH * sP * cR + sH * sR},
             {sH * cP, sH * sP * sR + cH * cR, sH * sP * cR - cH * sR},
             {-sP, cP * sR, cP * cR}}};
}

std::array<double, 3> sensor_position(const FishPose& fish, const Rotation& rotation,
                                      const std::array<double, 3>& offset)
{
    const std::array<double, 3> from = {fish.easting, fish.northing, fish.vertical};
    std::array<double, 3> position = {kNull, kNull, kNull};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (!is_valid_channel(from[axis])) continue;
        const auto& row = rotation[axis];
        position[axis] = from[axis] + (row[0] * offset[0] + row[1] * offset[1] + row[2] * offset[2]);
    }
    return position;
}

std::array<double, 3> lever_arm_offset(double along_track, double arm_length, double arm_rotation)
{
    constexpr double kMetresPerMillimetre = 1000.0;
    const double length = arm_length / kMetresPerMillimetre;
    const double rotation = radians(arm_rotation);
    return {along_track / kMetresPerMillimetre, length * std::cos(rotation), length * std::sin(rotation)};
}

} // namespace tarvo

#pragma once

#include "text/numbers.h"

#include <array>

namespace tarvo {

// Where the fish is and how it lies: metres and degrees, kNull for what is not known.
struct FishPose {
    double easting = kNull;
    double northing = kNull;
    double vertical = kNull;
    double heading = kNull;
    double pitch = kNull;
    double roll = kNull;
};

// Rows east, north, vertical; columns u (along track), v, w.
using Rotation = std::array<std::array<double, 3>, 3>;

// The rotation by heading, pitch and roll, in that order from the outside; an unknown angle counts as 0. Compass
// headings count clockwise from north: u then points ahead, v to port, w up.
enum class HeadingSense { from_east, compass };
Rotation fish_rotation(const FishPose& fish, HeadingSense sense);

// The sensor's easting, northing and vertical for its offset (u, v, w) in metres; a coordinate that the fish does not
// have is kNull.
std::array<double, 3> sensor_position(const FishPose& fish, const Rotation& rotation,
                                      const std::array<double, 3>& offset);

// The offset (u, v, w) in metres of a sensor on an arm across the track: offset and length in millimetres, the rotation
// of the arm in degrees.
std::array<double, 3> lever_arm_offset(double along_track, double arm_length, double arm_rotation);

} // namespace tarvo

#pragma once

namespace tarvo {

inline constexpr double kDegreesPerRadian = 180 / 3.14159265358979323846;
inline constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180;

} // namespace tarvo

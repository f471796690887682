#pragma once

#include <cmath>

namespace tarvo {

// A place (metres), a field (nT) or a moment (A m2) along the survey grid's axes.
struct GridVector {
    double east = 0;
    double north = 0;
    double up = 0;

    bool operator==(const GridVector&) const = default;
};

inline GridVector operator+(const GridVector& a, const GridVector& b)
{
    return {a.east + b.east, a.north + b.north, a.up + b.up};
}
inline GridVector operator-(const GridVector& a, const GridVector& b)
{
    return {a.east - b.east, a.north - b.north, a.up - b.up};
}
inline GridVector operator*(double factor, const GridVector& a)
{
    return {factor * a.east, factor * a.north, factor * a.up};
}
inline double dot(const GridVector& a, const GridVector& b)
{
    return a.east * b.east + a.north * b.north + a.up * b.up;
}
inline double length(const GridVector& a)
{
    return std::sqrt(dot(a, a));
}
inline double plan_length(const GridVector& a)
{
    return std::hypot(a.east, a.north);
}

} // namespace tarvo

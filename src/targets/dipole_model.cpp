#include "targets/dipole_model.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tarvo {

namespace {

constexpr double kNanoteslaScale = 100; // mu0 / (4 pi) = 1e-7 T m / A, in nT
constexpr double kLeastSquare = 1e-6;   // square metres: a reading in the source itself has no field

// The powers of the distance from a source that its field takes.
struct Distance {
    GridVector from; // the source to the reading
    double cube = 0; // 1 / |from|^3, times the scale
    double per_square = 0;

    explicit Distance(const GridVector& d) : from(d)
    {
        const double apart = dot(d, d);
        const double square = apart > kLeastSquare ? apart : kLeastSquare; // std::max would be a branch
        per_square = 1 / square;
        cube = kNanoteslaScale * per_square * std::sqrt(per_square);
    }
};

GridVector anomaly_at(const GridVector& d, const GridVector& earth)
{
    const Distance distance(d);
    const double along = 3 * dot(earth, d) * distance.per_square;
    return distance.cube * (along * d - earth);
}

GridVector place_change_at(const GridVector& d, const GridVector& earth, const GridVector& moment)
{
    const Distance distance(d);
    const double by_earth = dot(earth, d);
    const double by_moment = dot(moment, d);
    const double factor = 3 * distance.cube * distance.per_square;
    const double radial = dot(earth, moment) - 5 * by_earth * by_moment * distance.per_square;
    return -factor * (by_moment * earth + by_earth * moment + radial * d);
}

GridVector field_at(const GridVector& d, const GridVector& moment)
{
    const Distance distance(d);
    return distance.cube * (3 * dot(moment, d) * distance.per_square * d - moment);
}

// Readings are worked on in blocks, a column for each axis, so that several fit into a processor's wide registers.
constexpr std::size_t kBlock = 64; // readings

struct VectorBlock {
    std::array<double, kBlock> east;
    std::array<double, kBlock> north;
    std::array<double, kBlock> up;
};

// From a place to so many readings from the first on, or to the points so many ways ahead of them. Behind the last the
// block is filled with the source itself.
VectorBlock points_of(const FitReadings& readings, const GridVector& place, std::size_t first, std::size_t count,
                      double ways_ahead)
{
    VectorBlock points = {};
    for (std::size_t at = 0; at < count; ++at) {
        const GridVector& reading = readings.place[first + at];
        points.east[at] = reading.east - place.east;
        points.north[at] = reading.north - place.north;
        points.up[at] = reading.up - place.up;
    }
    if (ways_ahead == 0) return points;
    for (std::size_t at = 0; at < count; ++at) {
        const GridVector& way = readings.way[first + at];
        points.east[at] += ways_ahead * way.east;
        points.north[at] += ways_ahead * way.north;
        points.up[at] += ways_ahead * way.up;
    }
    return points;
}

// Calls take(first, count, values) for every block of readings; what: of the vector from the place to a point. The
// values are means over the points that stand for a reading's way. outer: how much the outer two of them count.
template <typename What, typename Take>
void for_blocks(const FitReadings& readings, const GridVector& place, double outer, What what, Take take)
{
    struct Point {
        double ways_ahead;
        double weight;
    };
    const std::array<Point, 3> points = {{{0, 1 - 2 * outer}, {1, outer}, {-1, outer}}};
    const std::size_t point_count = outer == 0 ? 1 : points.size();
    for (std::size_t first = 0; first < readings.count(); first += kBlock) {
        const std::size_t count = std::min(kBlock, readings.count() - first);
        VectorBlock values = {};
        for (std::size_t point = 0; point < point_count; ++point) {
            const VectorBlock from = points_of(readings, place, first, count, points[point].ways_ahead);
            const double weight = points[point].weight;
            for (std::size_t at = 0; at < kBlock; ++at) {
                const GridVector value = what(GridVector{from.east[at], from.north[at], from.up[at]});
                values.east[at] += weight * value.east;
                values.north[at] += weight * value.north;
                values.up[at] += weight * value.up;
            }
        }
        take(first, count, values);
    }
}

template <typename What>
void fill_columns(const FitReadings& readings, const GridVector& place, ModelColumns& columns, What what)
{
    for (std::vector<double>& column : columns) column.resize(readings.count());
    const auto take = [&columns](std::size_t first, std::size_t count, const VectorBlock& values) {
        std::copy_n(values.east.begin(), count, &columns[0][first]);
        std::copy_n(values.north.begin(), count, &columns[1][first]);
        std::copy_n(values.up.begin(), count, &columns[2][first]);
    };
    for_blocks(readings, place, readings.way_weight, what, take);
}

void add_block(const VectorBlock& block, double factor, std::size_t first, std::size_t count,
               std::vector<GridVector>& fields)
{
    for (std::size_t at = 0; at < count; ++at) {
        GridVector& field = fields[first + at];
        field.east += factor * block.east[at];
        field.north += factor * block.north[at];
        field.up += factor * block.up[at];
    }
}

} // namespace

void anomaly_columns(const FitReadings& readings, const GridVector& earth, const GridVector& place,
                     ModelColumns& columns)
{
    fill_columns(readings, place, columns, [&earth](const GridVector& d) { return anomaly_at(d, earth); });
}

void place_columns(const FitReadings& readings, const GridVector& earth, const Dipole& dipole, ModelColumns& columns)
{
    fill_columns(readings, dipole.place, columns,
                 [&](const GridVector& d) { return place_change_at(d, earth, dipole.moment); });
}

void add_dipole_field(const FitReadings& readings, const Dipole& dipole, double factor, std::vector<GridVector>& fields)
{
    const auto what = [&dipole](const GridVector& d) { return field_at(d, dipole.moment); };
    for_blocks(
        readings, dipole.place, readings.way_weight, what,
        [&](std::size_t first, std::size_t count, auto& block) { add_block(block, factor, first, count, fields); });
}

void add_far_change(const FitReadings& readings, const Dipole& before, const Dipole& after,
                    std::vector<GridVector>& fields)
{
    const GridVector moved = after.place - before.place;
    const auto what = [&](const GridVector& d) {
        return field_at(d - moved, after.moment) - field_at(d, before.moment);
    };
    for_blocks(readings, before.place, 0, what,
               [&](std::size_t first, std::size_t count, auto& block) { add_block(block, 1, first, count, fields); });
}

double beyond_linear(const GridVector& field, const GridVector& earth, double strength)
{
    // |B0 b + B| - B0 - b.B, written so that nothing large is taken off something large
    const double along = dot(earth, field);
    const double total = length(strength * earth + field);
    const double across = dot(field, field) - along * along;
    return across / (total + strength + along);
}

} // namespace tarvo

#include "targets/dipole_model.h"

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
        const double square = std::max(dot(d, d), kLeastSquare);
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

// The mean over the points that stand for a reading's way; what: of the vector from the source to a point.
template <typename What>
GridVector mean_over_way(const FitReadings& readings, std::size_t reading, const GridVector& place, What what)
{
    const GridVector middle = readings.place[reading] - place;
    if (readings.way_weight == 0) return what(middle);
    const GridVector& reach = readings.way[reading];
    return (1 - 2 * readings.way_weight) * what(middle) +
           readings.way_weight * (what(middle + reach) + what(middle - reach));
}

template <typename What>
void fill_columns(const FitReadings& readings, const GridVector& place, ModelColumns& columns, What what)
{
    for (std::vector<double>& column : columns) column.resize(readings.count());
    for (std::size_t reading = 0; reading < readings.count(); ++reading) {
        const GridVector value = mean_over_way(readings, reading, place, what);
        columns[0][reading] = value.east;
        columns[1][reading] = value.north;
        columns[2][reading] = value.up;
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
    for (std::size_t reading = 0; reading < readings.count(); ++reading) {
        const GridVector field = mean_over_way(readings, reading, dipole.place,
                                               [&dipole](const GridVector& d) { return field_at(d, dipole.moment); });
        fields[reading] = fields[reading] + factor * field;
    }
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

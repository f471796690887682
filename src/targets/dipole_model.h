#pragma once

#include "targets/fit_readings.h"
#include "targets/grid_vector.h"

#include <array>
#include <vector>

namespace tarvo {

// A magnetic dipole: its place, metres from the readings' origin, and its moment, A m2.
struct Dipole {
    GridVector place;
    GridVector moment;
};

// Three columns of one value a reading, along east, north and up.
using ModelColumns = std::array<std::vector<double>, 3>;

// The total-field anomaly that a moment of 1 A m2 along each axis at `place` gives at every reading, nT: the part of
// its field along the Earth's field, whose direction is the unit vector `earth`, averaged over the reading's way.
void anomaly_columns(const FitReadings& readings, const GridVector& earth, const GridVector& place,
                     ModelColumns& columns);

// How the anomaly of a dipole changes with its place along each axis, nT per metre.
void place_columns(const FitReadings& readings, const GridVector& earth, const Dipole& dipole, ModelColumns& columns);

// Adds factor x the dipole's field to `fields`, nT, averaged over the way of each reading.
void add_dipole_field(const FitReadings& readings, const Dipole& dipole, double factor,
                      std::vector<GridVector>& fields);

// Adds what the field at every reading changes by, nT, when one dipole takes the place of another. Both are so far away
// that the field over the way of a reading is that in its middle.
void add_far_change(const FitReadings& readings, const Dipole& before, const Dipole& after,
                    std::vector<GridVector>& fields);

// What the length of the Earth's field and a source's together adds to the Earth's beyond the part along it, nT:
// strength: of the Earth's field, nT.
double beyond_linear(const GridVector& field, const GridVector& earth, double strength);

} // namespace tarvo

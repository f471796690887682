#pragma once

#include "targets/baselines.h"
#include "targets/dipole_model.h"
#include "targets/fit_readings.h"
#include "targets/grid_vector.h"

#include <array>
#include <span>
#include <vector>

namespace tarvo {

// The place of one dipole by least squares. The moment and a constant and a slope for each segment are linear and
// solved for at every place (variable projection: Golub and Pereyra 1973, SIAM J. Numer. Anal. 10, 413-432, with the
// derivative of Kaufman 1975, BIT 15, 49-57), so that three unknowns are left to search for.

// Where a place may lie, metres from the readings' origin.
struct FitBounds {
    GridVector low;
    GridVector high;
};

GridVector held_within(const GridVector& place, const FitBounds& bounds);
bool touches_bound(const GridVector& place, const FitBounds& bounds);

// A place that the search came to.
struct FittedPlace {
    Dipole dipole;
    double square_sum = 0; // of the residuals, nT squared
    bool at_bound = false;
};

// A background that is curved in plan and not plane, along one of three ways: east x east, east x north, north x north.
struct CurvedBackground {
    double size = 0;      // nT per square metre, as far as the readings tell it from a move of the place
    double deviation = 0; // of the size, were residuals independent
    GridVector moves;     // metres that the place moves by for a size of 1
};
using CurvedBackgrounds = std::array<CurvedBackground, 3>;

// What is left of the readings at a fitted place, and how well the place is known.
struct FitQuality {
    std::vector<double> residuals;                              // nT, by reading
    std::array<std::array<double, 3>, 3> place_covariance = {}; // square metres, of records that do not hang together
    CurvedBackgrounds background;
    double lag_correlation = 0; // of neighbouring residuals of a segment
};

// Another source near by, metres from the readings' origin. Its moment is left open, so that an error in it is not paid
// for by the place; with may_move its place is too, to the first order.
struct OpenNeighbour {
    Dipole dipole;
    bool may_move = false;
};

class ProjectedFit {
public:
    // values: nT by reading; The readings must outlive the fit.
    ProjectedFit(const FitReadings& readings, const GridVector& earth, std::vector<double> values,
                 std::span<const OpenNeighbour> neighbours = {});

    const GridVector& earth() const { return earth_; }
    double signal() const { return signal_; } // sum of squares of the values without baselines, nT squared

    // The moment that fits best at a place, and what it leaves.
    FittedPlace at(const GridVector& place);

    // The sum of squares that it leaves alone, by a shorter way: for comparing many places.
    double square_sum_at(const GridVector& place);

    // The nearest least sum of squares, by Levenberg and Marquardt (Marquardt 1963, J. SIAM 11, 431-441).
    FittedPlace refined(const GridVector& start, const FitBounds& bounds, int most_steps);

    FitQuality quality(const FittedPlace& fitted);

private:
    struct Step {
        std::array<std::array<double, 3>, 3> normal = {};
        std::array<double, 3> gradient = {}; // how the fit's sum of squares falls along each axis, halved
    };
    void open_neighbours(std::span<const OpenNeighbour> neighbours);
    void without_baselines(std::vector<double>& column) const;
    void take_out_earlier(std::vector<double>& column, std::size_t earlier) const;
    Step linearised(const Dipole& dipole);
    std::array<std::array<double, 3>, 3> record_spread(const std::array<std::array<double, 3>, 3>& lower,
                                                       double lag_correlation) const;
    CurvedBackgrounds curved_backgrounds(const std::array<std::array<double, 3>, 3>& lower) const;

    const FitReadings& readings_;
    GridVector earth_;
    std::vector<std::vector<double>> neighbours_; // orthonormal: what the neighbours' moments can explain
    Baselines baselines_;
    std::vector<double> values_; // without baselines
    double signal_ = 0;
    ModelColumns basis_; // orthonormal, of the anomalies at the place that at() was asked for last
    ModelColumns change_;
    std::vector<double> left_; // residuals there
};

} // namespace tarvo

#pragma once

#include "targets/dipole_model.h"
#include "targets/fit_readings.h"
#include "targets/grid_vector.h"
#include "targets/projected_fit.h"
#include "text/numbers.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

// What is known about the ground before a fit.
struct FitGround {
    GridVector earth;    // unit vector of the Earth's field
    double strength = 0; // nT, of the Earth's field
    double altitude = 5; // metres of the sensors above the ground; kAltitudeWhenUnknown without one
    bool has_altitude = true;
    double seabed = kNull; // height; kNull: not known
    double sensors = 0;    // their height, where the seabed is not known
    double pick_east = 0;  // metres, survey grid
    double pick_north = 0;
};

inline constexpr double kAltitudeWhenUnknown = 5; // metres

enum class FitDoubt { poor_match, at_bound, far_from_pick, second_solution, shared_place, loose_place };

// Something that the fit does not explain: where the residuals are largest.
struct Misfit {
    GridVector place; // survey grid, of the reading
    double size = 0;  // nT
};

// What a fit says of a target. Places are those of the survey grid, heights up.
struct DipoleFit {
    std::string refusal; // why there are no numbers; empty: there are
    Dipole dipole;
    std::optional<GridVector> other_place; // with one pass of one sensor: it may lie on either side
    std::vector<FitDoubt> doubts;

    double below_sensor = kNull; // metres, of the nearest reading
    double below_seabed = kNull; // metres; kNull: no seabed
    double slant_range = kNull;  // metres, from the nearest reading
    double rms = kNull;          // nT
    double r2 = kNull;
    int lines = 0;
    std::size_t readings = 0;
    GridVector error;                 // metres: three standard deviations, and what a curved background may do
    double east_north_covariance = 0; // square metres, of three deviations, for the ellipse in plan
    CurvedBackgrounds background;
    std::optional<Misfit> misfit;

    bool is_fitted() const { return refusal.empty(); }
    bool is_doubtful() const { return !doubts.empty(); }
    bool is_side_unknown() const { return other_place.has_value(); }
};

// What a dipole's moment says: degrees and kilogrammes.
double moment_inclination(const GridVector& moment); // below the horizon
double moment_declination(const GridVector& moment); // from grid north, clockwise
double lowest_mass(double moment);                   // of iron, that may have such a moment
double highest_mass(double moment);

// The background around each of some fits is at least as curved as it is around most of them: where readings cannot
// tell that from a move of the place, it shows beside the neighbours only. Widens the errors by it.
void share_backgrounds(std::vector<DipoleFit>& fits);

// Doubts a place that its readings leave open. altitude: metres.
void doubt_loose_place(DipoleFit& fit, double altitude);

// Doubts fits that came to one place from different picks: one source was picked twice, or one was not found.
// altitudes: metres, by fit.
void doubt_shared_places(std::vector<DipoleFit>& fits, const std::vector<double>& altitudes);

// "side unknown" and "doubtful", as far as they hold, joined by ";".
std::string flag_text(const DipoleFit& fit);

// Why the readings are too few for a fit; empty: they are enough.
std::string too_few_readings(const FitReadings& readings, const FitGround& ground);

// Where the source may lie, metres from the readings' origin.
FitBounds fit_bounds(const FitReadings& readings, const FitGround& ground);

// The places that a search over the bounds found, the best first, each apart from the others.
std::vector<FittedPlace> searched_places(ProjectedFit& fit, const FitReadings& readings,
                                         const std::vector<double>& values, const FitGround& ground,
                                         std::span<const OpenNeighbour> neighbours);

// The numbers of a fitted place; values: nT by reading, as the fit got them; others: places that fit too.
DipoleFit described_fit(ProjectedFit& fit, const FitReadings& readings, const FitGround& ground,
                        const FittedPlace& best, const std::vector<FittedPlace>& others);

} // namespace tarvo

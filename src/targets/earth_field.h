#pragma once

#include "ports/projection.h"
#include "targets/fit_survey.h"
#include "targets/group_fit.h"
#include "targets/target_settings.h"

#include <string>

namespace tarvo {

// The direction that fits take the Earth's field to have, and how it is known.
struct EarthField {
    FieldDirection direction;
    double inclination = 90; // degrees below the horizon
    double declination = 0;  // degrees from grid north, clockwise
    std::string source;      // "IGRF-14 at 54.10 N 7.90 E, 2025.46", for the reader of a fit
    bool is_assumed = false; // nothing was known: straight down
};

// grid: nullptr without a survey grid.
EarthField earth_field(const FitSurvey& survey, const TargetSettings& typed, const Projection* grid);

// The direction of grid north from true north at a place, degrees clockwise; kNull where the grid has no image.
double grid_convergence(const Projection& grid, const GridCoordinates& place);

// The unit vector of a direction.
GridVector field_unit(double inclination, double declination);

} // namespace tarvo

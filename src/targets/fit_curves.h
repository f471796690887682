#pragma once

#include "targets/dipole_fit.h"
#include "targets/fit_survey.h"
#include "targets/group_fit.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tarvo {

// One sensor's readings on one pass of a line, and what a fit says of them. All arrays are of one length.
struct FitCurve {
    std::int32_t line = 0;         // from 1
    int sensor = 0;                // from 1
    std::vector<GridVector> place; // of the readings, survey grid
    std::vector<double> along;     // metres along the track from where it passes the target
    std::vector<double> measured;  // nT: less the neighbours' models and the baseline
    std::vector<double> model;     // nT; empty: there is no fit
};

// The fits of several places, as fit_places gives them.
struct FittedTargets {
    std::span<const FitPlace> places;
    std::span<const DipoleFit> fits;
    FieldDirection field;
};

// All curves that the fit of one of the targets was made from.
std::vector<FitCurve> fit_curves(const FitSurvey& survey, const FittedTargets& targets, std::size_t target);

// The ellipse of a fit's error in plan, three standard deviations.
struct ErrorEllipse {
    double long_half = 0; // metres
    double short_half = 0;
    double direction = 0; // radians of the long axis, from east to north
};
ErrorEllipse error_ellipse(const DipoleFit& fit);

} // namespace tarvo

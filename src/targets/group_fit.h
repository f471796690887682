#pragma once

#include "targets/dipole_fit.h"
#include "targets/fit_readings.h"
#include "targets/fit_survey.h"
#include "targets/grid_vector.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tarvo {

// A place to fit a dipole at, and what the operator wants of it.
struct FitPlace {
    double east = 0; // metres, survey grid
    double north = 0;
    std::int32_t record = 0;      // the nearest of the track; 0: none
    std::optional<double> radius; // of the readings, metres; none: by the altitude
    std::vector<std::int32_t> lines_left_out;
    std::vector<int> sensors_left_out;

    bool operator==(const FitPlace&) const = default;
};

// The direction of the Earth's field and its strength, nT.
struct FieldDirection {
    GridVector unit = {0, 0, -1};
    double strength = 50'000;
};

// All that a fit at one place works on, copied out of the survey.
struct FitTask {
    FitPlace place;
    double radius = 0; // metres
    FitGround ground;
    double noise = 0; // nT, deviation
    FitReadings readings;
};

// How long work is watched: both may be empty. stop: asked now and then; true ends it.
struct FitWatch {
    std::function<bool()> stop;
    std::function<void(std::size_t done, std::size_t all)> progress;
};

double altitude_near(const FitSurvey& survey, std::int32_t record); // metres; kAltitudeWhenUnknown without one
double fit_radius(const FitSurvey& survey, const FitPlace& place); // metres: what is wanted, or by the altitude
FitTask fit_task(const FitSurvey& survey, const FitPlace& place, const FieldDirection& field);

// The numbers of places that hang together, as neighbours of neighbours.
std::vector<std::vector<std::size_t>> fit_groups(const FitSurvey& survey, const std::vector<FitPlace>& places);

// Fits neighbours together: each with the others' models taken off its readings, the strongest first, in rounds until
// none moves any more. The results stand in the order of the tasks; empty when it was stopped.
std::vector<DipoleFit> fit_together(const std::vector<FitTask>& tasks, const FitWatch& watch);

// All of some places, group by group.
std::vector<DipoleFit> fit_places(const FitSurvey& survey, const std::vector<FitPlace>& places,
                                  const FieldDirection& field, const FitWatch& watch);

} // namespace tarvo

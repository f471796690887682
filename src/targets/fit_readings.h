#pragma once

#include "targets/grid_vector.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo {

// The readings of one sensor on one pass of a survey line: they share a constant and a slope that no source explains.
struct FitSegment {
    std::int32_t line = 0; // from 1
    int sensor = 0;        // from 1
    std::size_t first = 0; // reading
    std::size_t count = 0;
};

// The readings that a fit works on, segment by segment, in the order of the records. Everything is copied out of the
// survey, so that a worker may use them while the survey goes on.
struct FitReadings {
    GridVector origin;             // of the places: survey grid, heights up
    std::vector<GridVector> place; // metres from the origin: the mean of what a reading was averaged from
    std::vector<double> field;     // nT
    std::vector<double> distance;  // metres along the track
    std::vector<std::int32_t> record;
    std::vector<FitSegment> segments;

    // A reading is the mean over its way: three points stand for it, its place and two a `way` ahead and astern, which
    // count way_weight each. 0: a reading was taken in its place.
    std::vector<GridVector> way;
    double way_weight = 0;

    std::size_t count() const { return place.size(); }
};

// How far from a stored sample's middle, in time, its two outer points lie, and how much each of them counts.
struct SampleWay {
    double seconds = 0;
    double weight = 0;
};

// Three points with the spread and the fourth moment of `lines` data lines that follow each other every so many
// seconds, so that a mean over them is the mean over the lines up to the fifth order of the field along the way.
SampleWay sample_way(double lines, double seconds_between_lines);

} // namespace tarvo

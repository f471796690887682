#pragma once

#include "ports/projection.h"
#include "ports/warning.h"
#include "processing/sample_processing.h"

#include <span>
#include <string>

namespace tarvo {

// What a run tells of its data besides what it counts. file_names: of the run's files in the order of reading; none for
// a live survey.

// Files in which fewer than half of the first lines have a time, and surveys of which fewer than half of the stored
// samples have a position, though both coordinates are read: the definitions may not fit.
Warnings misfit_warnings(const SampleProcessing& run, std::span<const std::string> file_names);

// Files that begin before an earlier one ends; those behind the first `told`.
Warnings overlap_warnings(const SampleProcessing& run, std::span<const std::string> file_names, std::size_t told);

// A position for which the grid is not made: by the wrong hemisphere, or so far off that a metre of the grid is none
// (1.2 % is what a transverse Mercator grid is off by 1,000 km from its meridian). None for a position that is not
// known.
Warnings grid_warnings(const Projection& grid, const GridCoordinates& position);

} // namespace tarvo

#pragma once

#include "processing/sample_store.h"

#include <cstdint>
#include <optional>

namespace tarvo {

// Height of the fish above the ground in metres: Elevation, less the DEM where the survey gives the ground's height in
// a column of its own. kNull where it is not known.
double altitude(const SampleStore& store, std::int32_t record);

// Over all stored records; nullopt when none has an altitude.
std::optional<double> median_altitude(const SampleStore& store);

} // namespace tarvo

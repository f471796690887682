#pragma once

#include <cstdint>

namespace tarvo {

// How many records on either side of a record it is judged by.
inline constexpr std::int32_t kSpikeReach = 3;

// A single reading that no source in the ground explains: off the median of the valid ones among the seven records
// around it by more than 2 nT and by more than 5 times their spread (1.4826 x the median distance from that median),
// while both neighbours lie within a fifth of its distance. A null is no spike, nor is a record whose neighbours are
// not both known or with fewer than five valid values around it.
// field: nT, by record; first, last: of the survey line, beyond which nothing is looked at.
bool is_spike(const double* field, std::int32_t record, std::int32_t first, std::int32_t last);

} // namespace tarvo

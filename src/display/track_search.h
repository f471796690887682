#pragma once

#include "ports/operator.h"
#include "processing/track_table.h"

#include <cstdint>

namespace tarvo {

// The row of a track column that a value leads to. column: rows 1..count in ascending order. An equal row is the
// answer itself, the first of several when stepping forward and the last when stepping back. Else the search starts
// from the row that bounds the value on the side it comes from and takes one step, and a second one when the row it
// finds is still on that side. The answer is brought into 1..count; 0 when there are no rows, and after a fault, which
// the operator is shown.
std::int32_t calculate_track_index(const double* column, std::int32_t count, double value, std::int32_t step,
                                   Operator& op);
std::int32_t calculate_track_index_from_distance(const TrackTable& track, double distance, std::int32_t step,
                                                 Operator& op);

// The highlighted section of the track, by its records.
struct SectionLimits {
    std::int32_t first = 0;
    std::int32_t last = 0;

    bool is_empty() const { return last <= first; }
    bool operator==(const SectionLimits&) const = default;
};

// The records whose distance is within half of axis_length (metres) of that of a record; empty when the track has no
// such record.
SectionLimits calculate_section_limits(const TrackTable& track, std::int32_t record, float axis_length, Operator& op);

} // namespace tarvo

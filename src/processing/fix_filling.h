#pragma once

#include "processing/sample_processing.h"

#include <cstdint>

namespace tarvo {

// Places the records between the newest one and the positioned record before it on the straight line between the two,
// by their times, where both lie on the open line and at most two seconds apart; what follows from a position (sensor
// positions, distances) with them. before: the positioned record before the newest; 0: none.
void place_records_between(SampleProcessing& run, std::int32_t before);

} // namespace tarvo

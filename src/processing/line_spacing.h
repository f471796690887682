#pragma once

#include "processing/sample_store.h"
#include "processing/survey_lines.h"

#include <cstdint>
#include <vector>

namespace tarvo {

// How the mean distance from record to record of a survey line is counted.
enum class SpacingRule {
    over_records, // from its first record to its last, those without a position among them
    over_fixes    // from its first record with a position to its last one
};

// Metres; first and last are the line's records. Without a distance between fixes the records count. The cost grows
// with the stretches without a position at the ends alone.
double mean_spacing(const SampleStore& store, std::int32_t first, std::int32_t last, SpacingRule rule);

// Lines whose ends have no position, so that their spacing over the records comes out too small, and their gradients
// too large.
std::vector<std::int32_t> lines_with_short_spacing(const SampleStore& store, const SurveyLines& lines);

} // namespace tarvo

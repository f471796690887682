#pragma once

#include "display/profile_window.h"
#include "processing/sample_processing.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// A survey line that runs beside another one, in the same direction or against it.
struct LineBeside {
    std::int32_t line = 0; // its place in the table of lines
    double offset = 0;     // metres across, to port of the other line's direction; mean along both

    bool operator==(const LineBeside&) const = default;
};

// The nearest lines beside a line, from port to starboard: those at most 45 degrees off its direction that lie beside
// half of it or of themselves. Directions are from a line's first position to its last.
std::vector<LineBeside> lines_beside(const SampleProcessing& run, std::int32_t line, std::size_t most);

// The values of a line at the distances along the track at which their places lie beside `beside`; for that line
// itself about its own distances. Empty where either has no positions.
ProfileCurve curve_beside(const SampleProcessing& run, std::int32_t beside, std::int32_t line, const double* values);

// The record of a line whose place lies beside `beside` at a distance along the track; 0: none.
std::int32_t record_beside(const SampleProcessing& run, std::int32_t beside, std::int32_t line, double distance);

// "line 12, 7.3 m to port"
std::string line_beside_text(const SampleProcessing& run, const LineBeside& line);

} // namespace tarvo

#include "targets/fit_readings.h"

#include <cmath>

namespace tarvo {

SampleWay sample_way(double lines, double seconds_between_lines)
{
    if (lines < 2) return {};
    // moments of `lines` even places, one apart, about their middle
    const double square = (lines * lines - 1) / 12;
    const double fourth = (lines * lines - 1) * (3 * lines * lines - 7) / 240;
    const double reach = std::sqrt(fourth / square);
    return {reach * seconds_between_lines, square / (2 * reach * reach)};
}

} // namespace tarvo

#include "display/axis_ticks.h"

#include <cmath>
#include <initializer_list>

namespace tarvo {

double readable_tick_step(double wanted, double range)
{
    constexpr double kFewestSteps = 2;
    constexpr double kMostSteps = 9;
    constexpr double kRoundSteps = 5; // at most, of the steps chosen here
    if (wanted > 0 && range / wanted >= kFewestSteps && range / wanted <= kMostSteps) return wanted;
    const double smallest = range / kRoundSteps;
    const double decade = std::pow(10.0, std::floor(std::log10(smallest)));
    for (const double digit : {1.0, 2.0, 5.0}) {
        if (digit * decade >= smallest) return digit * decade;
    }
    return 10 * decade;
}

int decimals_of_step(double step)
{
    constexpr int kMostDecimals = 6;
    constexpr double kNearness = 1e-3; // of a step to a whole number
    int decimals = 0;
    for (double scaled = step; decimals < kMostDecimals && std::abs(scaled - std::round(scaled)) > kNearness * scaled;
         scaled *= 10) {
        ++decimals;
    }
    return decimals;
}

} // namespace tarvo

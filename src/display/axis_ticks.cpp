#include "display/axis_ticks.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace tarvo {

double readable_tick_step(double wanted, double range, int most_steps)
{
    constexpr double kFewestSteps = 2;
    constexpr int kRoundSteps = 5; // at most, of the steps chosen here
    if (wanted > 0 && range / wanted >= kFewestSteps && range / wanted <= most_steps) return wanted;
    const double smallest = range / std::clamp(most_steps, 1, kRoundSteps);
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

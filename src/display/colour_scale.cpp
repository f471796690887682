#include "display/colour_scale.h"

#include <algorithm>

namespace tarvo {

void VScroll_TG_change(int index, int value, DisplaySettings& settings)
{
    constexpr double kNarrower = 0.75;
    constexpr double kWider = 1.25;
    constexpr double kFineStepsPerReference = 50.0;

    const bool narrows = value == 1;
    double range = settings.gradient_max_range;
    if (index != 0) {
        range *= narrows ? kNarrower : kWider;
    } else {
        const double step = settings.reference_gradient_range / kFineStepsPerReference;
        range += narrows ? -step : step;
    }
    settings.gradient_max_range = std::max(range, kSmallestGradientRange);
    if (index != 0) settings.reference_gradient_range = settings.gradient_max_range;
}

} // namespace tarvo

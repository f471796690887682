#include "display/profile_axes.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace tarvo {

namespace {

double limited_factor(double factor)
{
    constexpr double kSmallest = 1e-3;
    constexpr double kLargest = 1e3;
    return std::clamp(factor, kSmallest, kLargest);
}

} // namespace

DistanceRange ProfileStretch::shown(const TrackTable& track, std::int32_t record, float axis_length) const
{
    DistanceRange whole = distance_range_about(track, record, axis_length);
    if (!(whole.length() > 0)) whole = {0, static_cast<double>(axis_length)};
    const double middle = whole.middle() + shift_;
    const double reach = whole.length() / 2 * length_factor_;
    return {middle - reach, middle + reach};
}

void ProfileStretch::zoom(const DistanceRange& now_shown, double distance, double factor)
{
    const double before = length_factor_;
    length_factor_ = limited_factor(before * factor);
    shift_ += (distance - now_shown.middle()) * (1 - length_factor_ / before);
}

ValueExtent ValueAxis::shown() const
{
    const double length = range * factor;
    const double bottom = from_zero ? 0 : middle - length / 2;
    return {bottom, bottom + length};
}

void ValueAxis::zoom(double by)
{
    is_fitted = false;
    factor = limited_factor(factor * by);
}

void ValueAxis::follow(const ValueExtent& curves)
{
    if (!is_fitted || curves.is_empty()) return;
    constexpr double kAir = 1.1; // about the curves
    const double needed = from_zero ? curves.greatest : 2 * std::max(curves.greatest - middle, middle - curves.least);
    if (needed > 0) factor = limited_factor(kAir * needed / range);
}

double middle_of_curves(const ValueExtent& first, const ValueExtent& all, double range)
{
    const bool has_room = all.greatest - all.least <= range;
    return has_room || first.is_empty() ? all.middle() : first.middle();
}

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

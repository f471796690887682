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

DistanceRange section_about(const TrackTable& track, std::int32_t record, float section_length)
{
    const DistanceRange section = distance_range_about(track, record, section_length);
    return section.length() > 0 ? section : DistanceRange{0, static_cast<double>(section_length)};
}

double zoomed_section_length(float length, double factor)
{
    constexpr double kShortest = 26; // the setting is over 25
    constexpr double kLongest = 1e6;
    constexpr double kDigits = 1000; // of a length: of four places
    const double wanted = std::clamp(static_cast<double>(length) * factor, kShortest, kLongest);
    const double unit = std::pow(10.0, std::floor(std::log10(wanted))) / kDigits;
    return std::clamp(std::round(wanted / unit) * unit, kShortest, kLongest);
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
    const double wanted = std::max(kAir * needed, least_range);
    if (wanted > 0) factor = limited_factor(wanted / range);
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

#include "display/profile_axes.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <iterator>

namespace tarvo {

namespace {

double limited_factor(double factor)
{
    constexpr double kSmallest = 1e-3;
    constexpr double kLargest = 1e3;
    return std::clamp(factor, kSmallest, kLargest);
}

constexpr double kShortestSection = 26; // the setting is over 25
constexpr double kLongestSection = 1e6;

// Of the first place of a number, which is above 0.
double first_place(double number)
{
    return std::pow(10.0, std::floor(std::log10(number)));
}

// Ten to the decade, in even proportions: three steps double.
double nearest_round_length(double length)
{
    constexpr double kRound[] = {1, 1.25, 1.6, 2, 2.5, 3.15, 4, 5, 6.3, 8, 10};
    const double unit = first_place(length);
    const auto off = [length, unit](double round) { return std::abs(std::log(round * unit / length)); };
    return unit * *std::min_element(std::begin(kRound), std::end(kRound),
                                    [&off](double a, double b) { return off(a) < off(b); });
}

} // namespace

DistanceRange section_about(const TrackTable& track, std::int32_t record, float section_length)
{
    const DistanceRange section = distance_range_about(track, record, section_length);
    return section.length() > 0 ? section : DistanceRange{0, static_cast<double>(section_length)};
}

double zoomed_section_length(float length, double factor)
{
    const double wanted = std::clamp(static_cast<double>(length) * factor, kShortestSection, kLongestSection);
    constexpr double kStep = 1.1; // what changes the length by more is a notch of the wheel
    const double unit = first_place(wanted) / 1000;
    const double rounded =
        std::max(factor, 1 / factor) > kStep ? nearest_round_length(wanted) : std::round(wanted / unit) * unit;
    return std::clamp(rounded, kShortestSection, kLongestSection);
}

double section_length_over(double metres)
{
    const double wanted = std::clamp(metres, kShortestSection, kLongestSection);
    const double unit = first_place(wanted) / 1000;
    return std::clamp(std::ceil(wanted / unit) * unit, kShortestSection, kLongestSection);
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

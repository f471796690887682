#include "display/profile_heights.h"

#include "display/quantity.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

bool is_all_nines(double value)
{
    constexpr double kNearness = 1e-6;
    const double size = std::abs(value);
    for (const double next : {1e4, 1e5, 1e6, 1e7}) {
        for (const double last_digit : {1.0, 0.1, 0.01, 0.001}) {
            if (std::abs(next - last_digit - size) < kNearness) return true;
        }
    }
    return false;
}

template <typename Predicate>
void leave_out(std::span<std::vector<double>> curves, const Predicate& is_nothing)
{
    const auto all_are_nothing = [&](const std::vector<double>& curve) {
        return std::all_of(curve.begin(), curve.end(), is_nothing);
    };
    if (std::all_of(curves.begin(), curves.end(), all_are_nothing)) return; // there is nothing beside them
    for (std::vector<double>& curve : curves) std::erase_if(curve, is_nothing);
}

// Rising; a curve without values has none.
std::vector<double> medians_of(std::span<std::vector<double>> curves)
{
    std::vector<double> medians;
    for (std::vector<double>& curve : curves) {
        if (!curve.empty()) medians.push_back(value_at_share(curve, 0.5));
    }
    std::sort(medians.begin(), medians.end());
    return medians;
}

} // namespace

std::vector<double> values_in_stretch(const ProfileCurve& curve, const DistanceRange& range)
{
    std::vector<double> values;
    for (std::size_t at = 0; at < curve.value.size(); ++at) {
        const bool is_inside = curve.distance[at] >= range.from && curve.distance[at] <= range.to;
        if (is_inside && !std::isnan(curve.value[at])) values.push_back(curve.value[at]);
    }
    return values;
}

CurveHeights heights_of_curves(std::span<std::vector<double>> curves, HeightsOf of)
{
    leave_out(curves, is_all_nines);
    std::vector<double> medians = medians_of(curves);
    if (medians.empty()) return {};
    if (of == HeightsOf::total_field) {
        const double field = medians[medians.size() / 2];
        leave_out(curves, [field](double value) { return std::abs(value - field) > std::abs(field) / 2; });
        medians = medians_of(curves);
    }
    CurveHeights heights;
    heights.middle = (medians.front() + medians.back()) / 2;
    for (const std::vector<double>& curve : curves) {
        for (const double value : curve) heights.extent.include(value);
    }
    return heights;
}

} // namespace tarvo

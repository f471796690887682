#include "display/range_fit.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tarvo {

namespace {

constexpr double kFittedShare = 0.98;

std::vector<double> values_in_view(const TrackImage& image, const TrackScene& scene, const ShownValues& shown)
{
    const TrackTable& track = scene.track;
    const PixelTransform transform = active_transform(image);
    std::vector<double> values;
    for (std::int32_t record = 1; record <= track.count; ++record) {
        const double value = shown[record];
        if (!is_valid_sensor(value)) continue;
        const int x = pixel_x(transform, track.easting[record]);
        const int y = pixel_y(transform, track.northing[record]);
        const bool is_in_view = x >= 0 && x < image.picture.width() && y >= 0 && y < image.picture.height();
        if (is_in_view) values.push_back(value);
    }
    return values;
}

// Outwards to two digits of the width.
ValueRange rounded_range(const ValueRange& range)
{
    const double unit = std::pow(10.0, std::floor(std::log10(range.width())) - 1);
    return {std::floor(range.low / unit) * unit, std::ceil(range.high / unit) * unit};
}

} // namespace

std::optional<ValueRange> fitted_range(const TrackImage& image, const TrackScene& scene)
{
    const ShownValues shown(scene, 1);
    if (!shown.exist()) return std::nullopt;
    std::vector<double> values = values_in_view(image, scene, shown);
    if (values.empty()) return std::nullopt;
    if (scene.quantity->id == QuantityId::gradient) {
        return ValueRange{0, rounded_up_to_two_digits(value_at_share(values, kFittedShare))};
    }
    const ValueRange range = automatic_range(values, scene.quantity->sign);
    if (scene.quantity->sign == QuantitySign::unsigned_values) return rounded_range(range);
    const double reach = rounded_up_to_two_digits(range.high);
    return ValueRange{-reach, reach};
}

double rounded_up_to_two_digits(double value)
{
    if (!(value > 0)) return 0;
    const int exponent = static_cast<int>(std::floor(std::log10(value))) - 1;
    // A power of ten below 1 is no 64-bit float: dividing by its inverse keeps 0.071 at 0.071.
    const double unit = std::pow(10.0, std::abs(exponent));
    constexpr double kSlack = 1e-12; // of what only the binary form of a decimal adds
    const double digits = std::ceil((exponent >= 0 ? value / unit : value * unit) * (1 - kSlack));
    return exponent >= 0 ? digits * unit : digits / unit;
}

void set_gradient_range(DisplaySettings& settings, double range)
{
    type_gradient_range(settings, std::max(range, kSmallestGradientRange));
}

void type_gradient_range(DisplaySettings& settings, double range)
{
    settings.gradient_max_range = range;
    settings.reference_gradient_range = settings.gradient_max_range;
}

double scale_bar_length(double most_metres)
{
    if (!(most_metres > 0) || !std::isfinite(most_metres)) return 0;
    const double power = std::pow(10.0, std::floor(std::log10(most_metres)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= most_metres) return factor * power;
    }
    return power;
}

} // namespace tarvo

#include "display/quantity.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

constexpr double kLowShare = 0.02;
constexpr double kHighShare = 0.98;

} // namespace

const Quantity& quantity_of_key(std::string_view key)
{
    const auto* const found =
        std::find_if(kQuantities.begin(), kQuantities.end(), [key](const Quantity& known) { return key == known.key; });
    return found == kQuantities.end() ? kQuantities.front() : *found;
}

std::optional<QuantityRange> quantity_range_of(std::string_view text)
{
    text = trimmed(text);
    if (text == "auto") return QuantityRange{};
    const std::size_t blank = text.find_first_of(" \t");
    if (blank == std::string_view::npos) return std::nullopt;
    const std::optional<double> low = numeric_value(text.substr(0, blank));
    const std::optional<double> high = numeric_value(text.substr(blank));
    if (!low || !high || !(*low < *high)) return std::nullopt;
    return QuantityRange{ValueRange{*low, *high}};
}

std::string quantity_range_text(const QuantityRange& range)
{
    if (!range.typed) return "auto";
    return format_shortest(range.typed->low) + " " + format_shortest(range.typed->high);
}

double value_at_share(std::span<double> values, double share)
{
    const auto rank = static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(values.size()))) - 1;
    std::nth_element(values.begin(), values.begin() + rank, values.end());
    return values[static_cast<std::size_t>(rank)];
}

ValueRange automatic_range(std::span<double> values, QuantitySign sign)
{
    const bool is_signed = sign == QuantitySign::signed_values;
    if (values.empty()) return {is_signed ? -1.0 : 0.0, 1};
    const double high = value_at_share(values, kHighShare);
    const double low = value_at_share(values, kLowShare);
    if (is_signed) {
        const double reach = std::max(std::abs(low), std::abs(high));
        return reach > 0 ? ValueRange{-reach, reach} : ValueRange{-1, 1};
    }
    constexpr double kHalfUnit = 0.5;
    return low < high ? ValueRange{low, high} : ValueRange{low - kHalfUnit, high + kHalfUnit};
}

ValueRange adjusted_range(const ValueRange& range, int index, int value)
{
    constexpr double kCoarse = 0.25;
    constexpr double kFine = 1.0 / 50;
    const double step = index != 0 ? kCoarse : kFine;
    const double change = range.width() / 2 * (value == 1 ? -step : step);
    const ValueRange adjusted = {range.low - change, range.high + change};
    return adjusted.low < adjusted.high ? adjusted : range;
}

} // namespace tarvo

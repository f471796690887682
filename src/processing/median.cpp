#include "processing/median.h"

#include <algorithm>
#include <cstddef>

namespace tarvo {

std::optional<double> median(std::vector<double>& values)
{
    if (values.empty()) return std::nullopt;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1) return *middle;
    return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

std::optional<double> percentile(std::vector<double>& values, double share)
{
    if (values.empty()) return std::nullopt;
    const double at = share * static_cast<double>(values.size() - 1);
    const auto below = std::min(static_cast<std::size_t>(at), values.size() - 1);
    const auto lower = values.begin() + static_cast<std::ptrdiff_t>(below);
    std::nth_element(values.begin(), lower, values.end());
    if (below + 1 == values.size()) return *lower;
    const double upper = *std::min_element(lower + 1, values.end());
    return *lower + (upper - *lower) * (at - static_cast<double>(below));
}

} // namespace tarvo

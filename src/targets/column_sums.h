#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace tarvo {

// Sums over columns of one value a reading. Each is made of partial sums side by side, which a processor adds at the
// same time; one after the other it would wait for every addition.

inline constexpr std::size_t kPartialSums = 8;

inline double total_of(const std::array<double, kPartialSums>& sums)
{
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) + ((sums[4] + sums[5]) + (sums[6] + sums[7]));
}

inline double sum_of(std::span<const double> values)
{
    std::array<double, kPartialSums> sums = {};
    const std::size_t whole = values.size() - values.size() % kPartialSums;
    for (std::size_t at = 0; at < whole; at += kPartialSums) {
        for (std::size_t part = 0; part < kPartialSums; ++part) sums[part] += values[at + part];
    }
    double sum = 0;
    for (std::size_t at = whole; at < values.size(); ++at) sum += values[at];
    return sum + total_of(sums);
}

// Of two columns of one length.
inline double inner_product(std::span<const double> a, std::span<const double> b)
{
    std::array<double, kPartialSums> sums = {};
    const std::size_t whole = a.size() - a.size() % kPartialSums;
    for (std::size_t at = 0; at < whole; at += kPartialSums) {
        for (std::size_t part = 0; part < kPartialSums; ++part) sums[part] += a[at + part] * b[at + part];
    }
    double sum = 0;
    for (std::size_t at = whole; at < a.size(); ++at) sum += a[at] * b[at];
    return sum + total_of(sums);
}

// column - factor x other.
inline void take_off(std::span<double> column, double factor, std::span<const double> other)
{
    for (std::size_t at = 0; at < column.size(); ++at) column[at] -= factor * other[at];
}

} // namespace tarvo

#pragma once

#include <array>
#include <cstdint>
#include <cstring>

namespace tarvo {

// Powers of ten that a 64-bit float holds exactly.
inline constexpr std::array<double, 23> kExactPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The value of [first, last) when it is a plain number: an optional "-", then at most 19 digits with at most one ".",
// whose digits as a whole number are at most 2^53. Such a number is one exact integer divided by one exact power of
// ten, so a single division gives the nearest 64-bit float (Clinger 1990, "How to read floating point numbers
// accurately"). Returns false, value untouched, for every other text, numeric or not.
inline bool read_plain_decimal(const char* first, const char* last, double& value)
{
    constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;
    const bool negative = first != last && *first == '-';
    if (negative) ++first;
    if (last - first > 20) return false; // the mantissa could overflow; 20 leaves room for the point
    const char* const digits = first;

    std::uint64_t mantissa = 0;
    while (first != last) {
        const auto digit = static_cast<unsigned char>(*first - '0');
        if (digit > 9) break;
        mantissa = mantissa * 10 + digit;
        ++first;
    }
    auto digit_count = first - digits;
    std::int64_t decimals = 0;
    if (first != last && *first == '.') {
        const char* const fraction = ++first;
        while (first != last) {
            const auto digit = static_cast<unsigned char>(*first - '0');
            if (digit > 9) break;
            mantissa = mantissa * 10 + digit;
            ++first;
        }
        decimals = first - fraction;
        digit_count += decimals;
    }
    if (first != last || digit_count == 0 || digit_count > 19 || mantissa > kLargestExact) return false;

    const double magnitude = static_cast<double>(mantissa) / kExactPowersOfTen[static_cast<std::size_t>(decimals)];
    value = negative ? -magnitude : magnitude;
    return true;
}

} // namespace tarvo

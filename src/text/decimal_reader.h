#pragma once

#include "text/byte_words.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarvo {

// Readers of the plain numbers that survey files hold, exact to the bit. A number of at most 2^53 without its point,
// divided by an exact power of ten, is one exact integer divided by another, so a single division gives the nearest
// 64-bit float (Clinger 1990, "How to read floating point numbers accurately").
inline constexpr std::uint64_t kLargestExactMantissa = std::uint64_t{1} << 53;

inline constexpr std::array<double, 23> kExactPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

inline constexpr std::array<std::uint32_t, 8> kWholePowersOfTen = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};

// How many characters from the first one on the reader below may look at.
inline constexpr std::ptrdiff_t kShortNumberReach = 32;

// A number as the quotient of two exact ones. The division takes as long as all the rest of reading: put off, it can be
// done for many numbers together. The sign is the divisor's, so that "-0" stays what it is.
struct UndividedNumber {
    double mantissa = 0;
    double divisor = 1;
};

// By sign ("-": 1) and decimals.
inline constexpr double kSignedPowersOfTen[2][8] = {{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7},
                                                    {-1e0, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7}};

// Reads the number that begins at `text`: an optional "-", 1 to 15 digits with at most 7 of them behind a ".". Digits
// are taken eight at a time, so kShortNumberReach characters must be there to be looked at, whatever they are. Returns
// the first character behind the number; nullptr when it begins with none or with a longer one.
inline const char* read_short_number(const char* text, UndividedNumber& number)
{
    constexpr std::size_t kMostDigits = 15; // any such number is below 2^53
    const bool negative = *text == '-';
    text += negative ? 1 : 0;
    std::uint64_t digits = as_digits(load_eight(text));
    std::uint64_t others = bytes_beyond_digits(digits);
    std::uint64_t mantissa = 0;
    std::size_t digit_count = 0;
    if (others != 0) {
        digit_count = first_byte_of(others);
        if (digit_count == 0) return nullptr;
        mantissa = number_of_digits(digits, digit_count);
    } else { // eight digits and perhaps more
        mantissa = number_of_eight_digits(digits);
        digits = as_digits(load_eight(text + 8));
        others = bytes_beyond_digits(digits);
        if (others == 0) return nullptr;
        const std::size_t more = first_byte_of(others);
        if (more > 0) mantissa = mantissa * kWholePowersOfTen[more] + number_of_digits(digits, more);
        digit_count = 8 + more;
    }
    text += digit_count;

    std::size_t decimals = 0;
    if (*text == '.') {
        digits = as_digits(load_eight(text + 1));
        others = bytes_beyond_digits(digits);
        if (others == 0) return nullptr;
        decimals = first_byte_of(others);
        if (decimals == 0 || digit_count + decimals > kMostDigits) return nullptr;
        mantissa = mantissa * kWholePowersOfTen[decimals] + number_of_digits(digits, decimals);
        text += 1 + decimals;
    }
    number.mantissa = static_cast<double>(static_cast<std::int64_t>(mantissa));
    number.divisor = kSignedPowersOfTen[negative ? 1 : 0][decimals];
    return text;
}

// The value of a text that is a plain number as a whole: an optional "-", 1 to 19 digits with at most one "." among
// them, digit by digit. Returns false, value untouched, for every other text and for a number beyond 2^53.
inline bool read_plain_decimal(const char* text, std::size_t length, double& value)
{
    constexpr std::size_t kMostDigits = 19; // what 64 bits hold
    const bool negative = length > 0 && *text == '-';
    std::uint64_t mantissa = 0;
    std::size_t digits = 0;
    std::size_t decimals = 0;
    bool point_seen = false;
    for (std::size_t at = negative ? 1 : 0; at < length; ++at) {
        const auto digit = static_cast<unsigned char>(text[at] - '0');
        if (digit <= 9) {
            if (++digits > kMostDigits) return false;
            mantissa = mantissa * 10 + digit;
            decimals += point_seen ? 1 : 0;
        } else if (text[at] == '.' && !point_seen) {
            point_seen = true;
        } else {
            return false;
        }
    }
    if (digits == 0 || mantissa > kLargestExactMantissa) return false;
    const double magnitude = static_cast<double>(mantissa) / kExactPowersOfTen[decimals];
    value = negative ? -magnitude : magnitude;
    return true;
}

} // namespace tarvo

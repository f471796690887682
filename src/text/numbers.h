#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

// A value that is missing, rejected or not numeric. The tests for it use wider margins, one for channels and one for
// sensors: is_valid_channel and is_valid_sensor.
inline constexpr double kNull = -1e32;

inline bool is_valid_channel(double value)
{
    return value > -1e30;
}
inline bool is_valid_sensor(double value)
{
    return std::abs(value) < 1e30;
}

// Without leading and trailing blanks; a TAB counts as a blank.
std::string_view trimmed(std::string_view text);

// ASCII letters in upper case, every other byte as it is.
std::string upper_case(std::string_view text);

// The value of a numeric text: blanks trimmed, an optional sign, digits with at most one "." and at least one digit,
// optionally e, E, d or D with an optionally signed whole exponent, and nothing else. nullopt for anything else,
// "inf", "nan", "0x10", "1,5" and values beyond a 64-bit float among it; a magnitude too small for one is 0.
// The value is the nearest 64-bit float. No locale is involved.
std::optional<double> numeric_value(std::string_view text);

inline bool is_numeric(std::string_view text)
{
    return numeric_value(text).has_value();
}

// The number that a text begins with, leading blanks skipped; 0 when it begins with none.
double leading_number(std::string_view text);

// The nearest whole number, halves to even. Throws std::range_error when it does not fit.
std::int32_t rounded_to_int32(double value);

// The decimals of fixed-point numbers: the exact value rounded, never "-0".
std::string format_fixed(double value, int decimals);

// The shortest text that reads back to the same 64-bit or 32-bit float.
std::string format_shortest(double value);
std::string format_shortest(float value);

// With at most four significant digits, without trailing zeros and without an exponent up to 15 digits.
std::string format_significant(double value);

// The digits before the point in groups of three, for people: "1234567.8" gives "1,234,567.8".
std::string grouped_digits(std::string_view number);

} // namespace tarvo

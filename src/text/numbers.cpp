#include "text/numbers.h"

#include "text/decimal_reader.h"
#include "text/tokens.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace tarvo {

namespace {

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

// The parts of the longest number at the start of a text.
struct NumberShape {
    std::size_t length = 0;        // characters of the number; 0 when the text begins with none
    std::size_t exponent_mark = 0; // position of its e, E, d or D; 0 when it has no exponent
    bool has_nonzero_digit = false;
    std::int64_t magnitude = 0; // decimal exponent of the first nonzero digit, the exponent part left out
};

NumberShape number_at_start(std::string_view text)
{
    NumberShape shape;
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;

    std::int64_t digits_before_point = 0;
    std::int64_t digits = 0;
    std::int64_t first_nonzero = 0;
    bool point_seen = false;
    for (; at < text.size(); ++at) {
        if (text[at] == '.' && !point_seen) {
            point_seen = true;
            digits_before_point = digits;
        } else if (is_digit(text[at])) {
            if (text[at] != '0' && !shape.has_nonzero_digit) {
                shape.has_nonzero_digit = true;
                first_nonzero = digits;
            }
            ++digits;
        } else {
            break;
        }
    }
    if (digits == 0) return shape;
    if (!point_seen) digits_before_point = digits;
    shape.magnitude = digits_before_point - 1 - first_nonzero;
    shape.length = at;

    if (at < text.size() && std::string_view("eEdD").find(text[at]) != std::string_view::npos) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
        const std::size_t exponent_digits = exponent;
        while (exponent < text.size() && is_digit(text[exponent])) ++exponent;
        if (exponent > exponent_digits) {
            shape.exponent_mark = at;
            shape.length = exponent;
        }
    }
    return shape;
}

// The exponent's value, held at the bounds where it would not fit: both are far beyond any 64-bit float.
std::int64_t exponent_value(std::string_view text)
{
    constexpr std::int64_t kBound = 1'000'000'000'000;
    const bool negative = text.front() == '-';
    std::int64_t value = 0;
    for (const char c : text) {
        if (is_digit(c)) value = std::min(kBound, value * 10 + (c - '0'));
    }
    return negative ? -value : value;
}

std::optional<double> value_of(std::string_view number, const NumberShape& shape)
{
    const bool negative = number.front() == '-';
    if (!shape.has_nonzero_digit) return negative ? -0.0 : 0.0;

    std::string with_e; // std::from_chars knows no "d" exponent
    if (number.front() == '+') number.remove_prefix(1);
    if (shape.exponent_mark > 0) {
        with_e = number;
        const std::size_t mark = with_e.find_first_of("eEdD");
        with_e[mark] = 'e';
        if (with_e[mark + 1] == '+') with_e.erase(mark + 1, 1);
        number = with_e;
    }
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc() && !std::isinf(value)) return value;

    std::int64_t magnitude = shape.magnitude;
    if (shape.exponent_mark > 0) magnitude += exponent_value(number.substr(number.find('e') + 1));
    if (magnitude >= 0) return std::nullopt;
    return negative ? -0.0 : 0.0;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
}

std::string upper_case(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::optional<double> numeric_value(std::string_view text)
{
    text = trimmed(text);
    double plain = 0;
    if (read_plain_decimal(text.data(), text.size(), plain)) return plain;
    const NumberShape shape = number_at_start(text);
    if (shape.length == 0 || shape.length != text.size()) return std::nullopt;
    return value_of(text, shape);
}

double leading_number(std::string_view text)
{
    text = trimmed(text);
    const NumberShape shape = number_at_start(text);
    if (shape.length == 0) return 0;
    return value_of(text.substr(0, shape.length), shape).value_or(0);
}

std::int32_t rounded_to_int32(double value)
{
    const double rounded = std::nearbyint(value);
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    if (!(rounded >= kLowest && rounded <= kHighest)) {
        throw std::range_error("the number " + format_shortest(value) + " is outside the range of a whole number");
    }
    return static_cast<std::int32_t>(rounded);
}

std::string format_fixed(double value, int decimals)
{
    char text[400]; // the largest 64-bit float has 309 digits before the point
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
    const std::string_view written(text, static_cast<std::size_t>(end - text));
    if (written.front() == '-' && written.find_first_not_of("-0.") == std::string_view::npos) {
        return std::string(written.substr(1));
    }
    return std::string(written);
}

std::string format_shortest(double value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return {text, end};
}

std::string format_shortest(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return {text, end};
}

std::string format_significant(double value)
{
    constexpr int kDigits = 4;
    constexpr double kLongest = 1e15;
    if (value == 0 || !(std::abs(value) < kLongest)) return format_shortest(value == 0 ? 0.0 : value);
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, kDigits - 1).ptr;
    const double rounded = leading_number(std::string_view(text, static_cast<std::size_t>(end - text)));
    const int decimals = std::max(0, kDigits - 1 - static_cast<int>(std::floor(std::log10(std::abs(rounded)))));
    std::string fixed = format_fixed(rounded, decimals);
    if (decimals > 0) fixed.erase(fixed.find_last_not_of('0') + 1);
    if (fixed.ends_with('.')) fixed.pop_back();
    return fixed;
}

std::string grouped_digits(std::string_view number)
{
    const std::size_t first_digit = number.starts_with('-') ? 1 : 0;
    const std::size_t digits_end = std::min(number.find_first_not_of("0123456789", first_digit), number.size());
    std::string text;
    for (std::size_t at = 0; at < number.size(); ++at) {
        const bool begins_group = at > first_digit && at < digits_end && (digits_end - at) % 3 == 0;
        if (begins_group) text += ',';
        text += number[at];
    }
    return text;
}

} // namespace tarvo

#include "text/logged_values.h"

#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>

namespace tarvo {

namespace {

bool begins_unit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '%' || static_cast<unsigned char>(c) > 127;
}

// How many characters of a text are its longest number, exponent included; 0 when it begins with none.
std::size_t number_length(std::string_view text)
{
    const auto skip_digits = [text](std::size_t at) {
        while (at < text.size() && is_digit(text[at])) ++at;
        return at;
    };
    const auto skip_sign = [text](std::size_t at) {
        return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
    };
    const std::size_t first = skip_sign(0);
    std::size_t end = skip_digits(first);
    std::size_t digits = end - first;
    if (end < text.size() && text[end] == '.') {
        const std::size_t decimals_end = skip_digits(end + 1);
        digits += decimals_end - end - 1;
        end = decimals_end;
    }
    if (digits == 0) return 0;
    if (end < text.size() && std::string_view("eEdD").find(text[end]) != std::string_view::npos) {
        const std::size_t exponent = skip_sign(end + 1);
        const std::size_t exponent_end = skip_digits(exponent);
        if (exponent_end > exponent) return exponent_end;
    }
    return end;
}

} // namespace

std::optional<double> number_with_unit(std::string_view text)
{
    text = trimmed(text);
    const std::size_t length = number_length(text);
    if (length == 0 || length == text.size() || !begins_unit(text[length])) return std::nullopt;
    if (std::any_of(text.begin() + static_cast<std::ptrdiff_t>(length), text.end(), is_blank)) return std::nullopt;
    return numeric_value(text.substr(0, length));
}

NullTexts::NullTexts(std::span<const std::string> texts)
{
    for (const std::string& text : texts) {
        texts_.emplace_back(trimmed(text));
        if (const std::optional<double> number = numeric_value(text)) numbers_.push_back(*number);
    }
}

bool NullTexts::contains(std::string_view field) const
{
    if (texts_.empty()) return false;
    if (contains_text(field)) return true;
    if (numbers_.empty()) return false;
    const std::optional<double> number = numeric_value(field);
    return number && contains_number(*number);
}

bool NullTexts::contains(std::string_view field, double number) const
{
    return !texts_.empty() && (contains_number(number) || contains_text(field));
}

bool NullTexts::contains_text(std::string_view field) const
{
    field = trimmed(field);
    return std::any_of(texts_.begin(), texts_.end(), [field](const std::string& text) { return text == field; });
}

bool NullTexts::contains_number(double number) const
{
    return std::find(numbers_.begin(), numbers_.end(), number) != numbers_.end();
}

} // namespace tarvo

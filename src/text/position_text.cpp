#include "text/position_text.h"

#include "text/numbers.h"
#include "text/tokens.h"

#include <array>
#include <cstddef>

namespace tarvo {

namespace {

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

// +1 for N and E, -1 for S and W, 0 for every other character; whatever the axis.
int sign_of_letter(char c)
{
    switch (c) {
    case 'N':
    case 'n':
    case 'E':
    case 'e': return 1;
    case 'S':
    case 's':
    case 'W':
    case 'w': return -1;
    default: return 0;
    }
}

bool is_letter_of(char c, GeoAxis axis)
{
    const bool of_latitude = c == 'N' || c == 'n' || c == 'S' || c == 's';
    return of_latitude == (axis == GeoAxis::latitude);
}

// A field with its letter and sign taken off.
struct SignedText {
    std::string_view text;
    int sign = 0;      // of the minus or of the letter; 0: neither
    bool fits = false; // at most one letter, of its own axis and without a minus
    bool has_letter = false;
};

enum class LettersBefore { allowed, refused };

SignedText take_sign(std::string_view field, std::string_view next_field, GeoAxis axis, LettersBefore before)
{
    SignedText taken;
    char letter = 0;
    int letters = 0;
    const auto note = [&](char c) {
        letter = c;
        ++letters;
    };
    field = trimmed(field);
    if (!field.empty() && sign_of_letter(field.back()) != 0) {
        note(field.back());
        field = trimmed(field.substr(0, field.size() - 1));
    }
    if (before == LettersBefore::allowed && !field.empty() && sign_of_letter(field.front()) != 0) {
        note(field.front());
        field = trimmed(field.substr(1));
    }
    next_field = trimmed(next_field);
    if (next_field.size() == 1 && sign_of_letter(next_field.front()) != 0) note(next_field.front());
    if (letters > 1 || (letters == 1 && !is_letter_of(letter, axis))) return taken;

    taken.has_letter = letters == 1;
    taken.sign = taken.has_letter ? sign_of_letter(letter) : 0;
    if (!field.empty() && (field.front() == '-' || field.front() == '+')) {
        if (field.front() == '-' && taken.has_letter) return taken;
        if (field.front() == '-') taken.sign = -1;
        field.remove_prefix(1);
        if (field.empty() || is_blank(field.front())) return taken;
    }
    taken.text = field;
    taken.fits = true;
    return taken;
}

// Degrees with their sign, in the range of their axis; a letter narrows that of longitudes to 180 on the western side.
std::optional<double> degrees_within(double magnitude, int sign, GeoAxis axis)
{
    const double degrees = sign < 0 ? -magnitude : magnitude;
    if (axis == GeoAxis::latitude) return degrees >= -90 && degrees <= 90 ? std::optional(degrees) : std::nullopt;
    if (degrees < -180 || degrees > 360) return std::nullopt;
    return degrees > 180 ? degrees - 360 : degrees;
}

// What may stand behind degrees, minutes and seconds, in UTF-8 and, for the degree sign, in Latin-1.
constexpr std::array<std::string_view, 5> kDegreeMarks = {":", "\xC2\xB0", "\xC2\xBA", "\xB0", "\xBA"};
constexpr std::array<std::string_view, 6> kMinuteMarks = {
    ":", "'", "\xE2\x80\xB2", "\xE2\x80\x99", "\xE2\x80\x98", "\xC2\xB4"};
constexpr std::array<std::string_view, 6> kSecondMarks = {"\"",           "''",           "\xE2\x80\xB3",
                                                          "\xE2\x80\x9D", "\xE2\x80\x9C", "\xCB\xBA"};

template <std::size_t Count>
bool take_mark(std::string_view& text, const std::array<std::string_view, Count>& marks)
{
    for (const std::string_view mark : marks) {
        if (!text.starts_with(mark)) continue;
        text.remove_prefix(mark.size());
        return true;
    }
    return false;
}

bool take_mark_behind(std::size_t part, std::string_view& text)
{
    if (part == 0) return take_mark(text, kDegreeMarks);
    return part == 1 ? take_mark(text, kMinuteMarks) : take_mark(text, kSecondMarks);
}

// Digits with at most one point; nullopt where the text begins with none.
std::optional<std::string_view> take_plain_number(std::string_view& text)
{
    std::size_t length = 0;
    bool point_seen = false;
    while (length < text.size() && (is_digit(text[length]) || (text[length] == '.' && !point_seen))) {
        point_seen |= text[length] == '.';
        ++length;
    }
    const std::string_view number = text.substr(0, length);
    text.remove_prefix(length);
    return is_numeric(number) ? std::optional(number) : std::nullopt;
}

// Degrees, then perhaps minutes, then perhaps seconds.
std::optional<double> read_parts(std::string_view text)
{
    constexpr double kPartsPerDegree[] = {1, 60, 3600};
    double degrees = 0;
    bool is_last = false;
    for (std::size_t part = 0; part < 3 && !text.empty(); ++part) {
        const std::optional<std::string_view> number = take_plain_number(text);
        if (!number || is_last) return std::nullopt;
        is_last = number->find('.') != std::string_view::npos;
        const double value = numeric_value(*number).value_or(kNull);
        if (part > 0 && value >= 60) return std::nullopt;
        degrees += value / kPartsPerDegree[part];
        const bool had_blank = !text.empty() && is_blank(text.front());
        text = trimmed(text);
        const bool had_mark = take_mark_behind(part, text);
        text = trimmed(text);
        if (!text.empty() && !had_mark && !had_blank) return std::nullopt;
    }
    return text.empty() ? std::optional(degrees) : std::nullopt;
}

} // namespace

std::optional<double> read_degrees(std::string_view field, std::string_view next_field, GeoAxis axis)
{
    const std::string_view next = trimmed(next_field);
    if (next.size() != 1 || sign_of_letter(next.front()) == 0) { // the usual field
        if (const std::optional<double> plain = numeric_value(field)) return degrees_within(*plain, 1, axis);
    }
    const SignedText taken = take_sign(field, next_field, axis, LettersBefore::allowed);
    if (!taken.fits || taken.text.empty()) return std::nullopt;
    const std::optional<double> magnitude = read_parts(taken.text);
    return magnitude ? degrees_within(*magnitude, taken.sign, axis) : std::nullopt;
}

std::optional<double> read_nmea_degrees(std::string_view field, std::string_view next_field, GeoAxis axis)
{
    const SignedText taken = take_sign(field, next_field, axis, LettersBefore::refused);
    if (!taken.fits || !taken.has_letter) return std::nullopt;
    std::string_view rest = taken.text;
    const std::optional<std::string_view> number = take_plain_number(rest);
    if (!number || !rest.empty()) return std::nullopt;
    const std::size_t point = number->find('.');
    const std::size_t whole_digits = point == std::string_view::npos ? number->size() : point;
    const std::size_t degree_digits = whole_digits > 2 ? whole_digits - 2 : 0;
    const double whole = degree_digits > 0 ? numeric_value(number->substr(0, degree_digits)).value_or(kNull) : 0;
    const double minutes = numeric_value(number->substr(degree_digits)).value_or(kNull);
    if (minutes >= 60) return std::nullopt;
    return degrees_within(whole + minutes / 60, taken.sign, axis);
}

std::optional<GeoPosition> geo_position(std::optional<double> longitude, std::optional<double> latitude)
{
    if (!longitude || !latitude || (*longitude == 0 && *latitude == 0)) return std::nullopt;
    return GeoPosition{*longitude, *latitude};
}

} // namespace tarvo

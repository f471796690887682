#include "text/field_reader.h"

#include "text/decimal_reader.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tarvo {

namespace {

// Where a field ends: the first separator from `at` on, or `end`. Eight characters are looked at together.
const char* end_of_field(const char* at, const char* end)
{
    // Every separator but ";" lies below "-"; digits, letters, "-" and "." do not.
    constexpr char kFirstPlain = '-';
    while (end - at >= 8) {
        const std::uint64_t word = load_eight(at);
        const std::uint64_t suspects = bytes_below(word, kFirstPlain) | bytes_equal_to(word, ';');
        if (suspects == 0) {
            at += 8;
            continue;
        }
        at += first_byte_of(suspects);
        if (is_separator(*at)) return at;
        ++at;
    }
    while (at != end && !is_separator(*at)) ++at;
    return at;
}

// Steps over the separator at `at` with the blanks that belong to it. The text ends with no blank.
const char* behind_separator(const char* at, const char* end)
{
    const char* const separator = at;
    while (is_blank(*at)) ++at;
    if (*at == ',' || *at == ';' || (at == separator && *at == '\'')) {
        ++at;
        while (at != end && is_blank(*at)) ++at;
    }
    return at;
}

double value_of_field(const char* field, const char* end)
{
    return numeric_value(std::string_view(field, static_cast<std::size_t>(end - field))).value_or(kNull);
}

} // namespace

FieldReader::FieldReader(std::vector<bool> wanted) : wanted_(wanted.begin(), wanted.end())
{
    while (!wanted_.empty() && wanted_.back() == 0) wanted_.pop_back();
    if (wanted_.empty()) wanted_.push_back(0); // whether a line holds a field at all is always told
    values_.assign(wanted_.size(), kNull);
    divisors_.assign(wanted_.size(), 1.0);
}

std::span<const double> FieldReader::read(std::string_view line)
{
    if (!read(line, values_.data())) return {};
    return values_;
}

bool FieldReader::read(std::string_view line, double* room)
{
    const std::size_t fields = read_fields(trimmed(line));
    for (std::size_t field = 0; field < fields; ++field) room[field] = values_[field] / divisors_[field];
    if (fields > 0) std::fill(room + fields, room + values_.size(), kNull);
    return fields > 0;
}

std::size_t FieldReader::read_fields(std::string_view text)
{
    const char* at = text.data();
    const char* end = at + text.size();
    std::array<char, kShortNumberReach + kShortNumberReach> tail; // room to look behind the end of the line
    bool in_tail = false;

    const unsigned char* const wanted_fields = wanted_.data();
    double* const values = values_.data();
    double* const divisors = divisors_.data();
    const std::size_t count = values_.size();
    std::size_t field = 0;
    while (at != end && field < count) {
        if (end - at < kShortNumberReach && !in_tail) {
            const auto left = static_cast<std::size_t>(end - at);
            tail.fill('\0');
            std::memcpy(tail.data(), at, left);
            at = tail.data();
            end = at + left;
            in_tail = true;
        }
        const bool wanted = wanted_fields[field] != 0;
        UndividedNumber number;
        const char* behind = wanted ? read_short_number(at, number) : nullptr;
        values[field] = number.mantissa;
        divisors[field] = number.divisor;
        if (behind != nullptr && *behind == ',' && behind[1] > ' ') { // the usual field, and one follows it
            at = behind + 1;
            ++field;
            continue;
        }
        if (behind == nullptr || (behind != end && !is_separator(*behind))) {
            if (*at == '"') return read_quoted(text);
            behind = end_of_field(at, end);
            divisors[field] = 1.0;
            if (wanted) values[field] = value_of_field(at, behind);
        }
        ++field;
        at = behind;
        if (at != end) at = behind_separator(at, end);
    }
    return field;
}

std::size_t FieldReader::read_quoted(std::string_view text)
{
    const std::string normalised = normalise_line(text);
    std::string_view rest = normalised;
    std::size_t field = 0;
    std::fill(divisors_.begin(), divisors_.end(), 1.0);
    while (!rest.empty() && field < values_.size()) {
        values_[field++] = numeric_value(next_token(rest)).value_or(kNull);
    }
    return field;
}

} // namespace tarvo

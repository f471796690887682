#include "intake/guess_columns.h"

#include "definitions/header_columns.h"
#include "intake/guess_names.h"
#include "text/logged_values.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvo {

namespace {

constexpr std::size_t kEnoughToTell = 5; // values

// Numbers that loggers write for nothing: digits of 9, the fill of IAGA files, the lowest 16-bit number.
bool is_sentinel(double value)
{
    constexpr std::array<double, 6> kWholes = {999, 9999, 99999, 999999, 88888, 32768};
    constexpr std::array<double, 6> kDecimals = {0, 0.25, 0.9, 0.99, 0.999, 0.9999};
    const double magnitude = std::abs(value);
    if (magnitude >= 1e30) return true;
    for (const double whole : kWholes) {
        for (const double decimals : kDecimals) {
            if (std::abs(magnitude - whole - decimals) < 1e-9) return true;
        }
    }
    return false;
}

bool is_null_word(std::string_view text)
{
    const std::string upper = upper_case(text);
    for (const std::string_view word :
         {"*", "**", "***", "-", "--", "---", "NAN", "NULL", "N/A", "NA", "INF", "-INF"}) {
        if (upper == word) return true;
    }
    return false;
}

// A sentinel lies far from the other values of its column; a positive one needs some, for 9999 may be a number of a
// line.
bool is_far_from_others(double sentinel, const std::vector<double>& others)
{
    if (others.empty()) return sentinel < -9000 || std::abs(sentinel) >= 1e30;
    const auto [lowest, highest] = std::minmax_element(others.begin(), others.end());
    return sentinel < 0 ? *lowest > sentinel / 2 : *highest < sentinel / 2;
}

void note_text(std::vector<std::string>& texts, std::string_view text)
{
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.emplace_back(text);
}

void note_nulls_of_column(const GuessedLines& lines, std::size_t column, std::vector<std::string>& null_texts)
{
    std::vector<std::string> words;
    std::vector<std::string> sentinels;
    std::vector<double> numbers;
    for (const std::vector<std::string>& row : lines.rows) {
        const std::string_view field = column < row.size() ? trimmed(row[column]) : std::string_view();
        if (field.empty()) continue;
        if (is_null_word(field)) note_text(words, field);
        const std::optional<double> number = numeric_value(field);
        if (!number) continue;
        if (is_sentinel(*number)) {
            note_text(sentinels, field);
        } else {
            numbers.push_back(*number);
        }
    }
    for (const std::string& word : words) {
        if (!numbers.empty() || word.front() == '*') note_text(null_texts, word);
    }
    for (const std::string& sentinel : sentinels) {
        if (is_far_from_others(numeric_value(sentinel).value_or(0), numbers)) note_text(null_texts, sentinel);
    }
}

std::size_t column_count(const GuessedLines& lines)
{
    return lines.names.size();
}

void note_values(GuessColumn& column, const GuessedLines& lines, std::size_t index, const NullTexts& nulls)
{
    for (const std::vector<std::string>& row : lines.rows) {
        std::string_view text = index < row.size() ? trimmed(row[index]) : std::string_view();
        if (nulls.contains(text)) text = {};
        column.texts.push_back(text);
        if (text.empty()) continue;
        std::optional<double> number = numeric_value(text);
        if (!number && (column.has_units || column.filled == 0)) {
            number = number_with_unit(text);
            column.has_units |= number.has_value();
        }
        ++column.filled;
        if (number) column.numbers.push_back(*number);
    }
}

} // namespace

bool GuessColumn::is_constant() const
{
    return numbers.size() >= kEnoughToTell && lowest() == highest();
}

bool GuessColumn::is_mostly_zero() const
{
    return numbers.size() >= kEnoughToTell &&
           2 * std::count(numbers.begin(), numbers.end(), 0.0) > static_cast<std::ptrdiff_t>(numbers.size());
}

double GuessColumn::lowest() const
{
    return numbers.empty() ? kNull : *std::min_element(numbers.begin(), numbers.end());
}

double GuessColumn::highest() const
{
    return numbers.empty() ? kNull : *std::max_element(numbers.begin(), numbers.end());
}

std::vector<std::string> guess_null_texts(const GuessedLines& lines)
{
    std::vector<std::string> null_texts;
    for (std::size_t column = 0; column < column_count(lines); ++column) {
        note_nulls_of_column(lines, column, null_texts);
    }
    return null_texts;
}

std::vector<GuessColumn> guess_columns(const GuessedLines& lines, const std::vector<std::string>& null_texts)
{
    const NullTexts nulls(null_texts);
    const HeaderColumns header(lines.names);
    std::vector<GuessColumn> columns;
    for (std::size_t index = 0; index < column_count(lines); ++index) {
        GuessColumn& column = columns.emplace_back();
        column.name = trimmed(lines.names[index]);
        column.words = words_of(index < lines.hints.size() && !lines.names_in_line ? lines.hints[index] : column.name);
        column.can_be_named = header.find_column(column.name).index == static_cast<int>(index) + 1;
        note_values(column, lines, index, nulls);
    }
    return columns;
}

} // namespace tarvo

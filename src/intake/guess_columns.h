#pragma once

#include "intake/guess_lines.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// One column of the lines at hand, as a guess looks at it.
struct GuessColumn {
    std::string name;                    // as definitions would name it
    std::vector<std::string> words;      // of the name, or of the hint where it has none
    bool can_be_named = true;            // false: nameless, or an earlier column of the same name stands in front of it
    std::vector<std::string_view> texts; // by row; empty: missing, empty or null
    std::vector<double> numbers;         // of the texts that are numbers, in their order
    std::size_t filled = 0;              // texts that are not empty
    bool has_units = false;              // its first value has one, so that values with and without are numbers

    // Most of what it holds are numbers. Without lines nothing speaks against it.
    bool is_numeric() const { return texts.empty() || (!numbers.empty() && 2 * numbers.size() >= filled); }
    bool is_constant() const; // over enough lines to tell
    bool is_mostly_zero() const;
    double lowest() const;
    double highest() const;
};

// What stands for nothing: texts in columns of numbers, and values such as -9999 that lie far from all others.
std::vector<std::string> guess_null_texts(const GuessedLines& lines);

// lines must outlive the columns.
std::vector<GuessColumn> guess_columns(const GuessedLines& lines, const std::vector<std::string>& null_texts);

} // namespace tarvo

#pragma once

#include "text/field_splitter.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

inline constexpr int kGuessLines = 300; // of a file that a guess looks at

// The beginning of a data file, taken apart.
struct GuessedLines {
    Separator separator = Separator::any;
    bool plain_form_differs = false; // the tokenizer's rule reads other names or other fields than this separator
    bool names_in_line = true;
    int header_line_number = 1;                 // of the names; without names of the first data line
    std::vector<std::string> names;             // by column, empty: nameless. "1", "2", ... without names in a line
    std::vector<std::string> hints;             // by column: what names in no line of their own say of it; may be empty
    std::vector<std::vector<std::string>> rows; // the fields of the data lines
    std::string separator_reason;
    std::string names_reason;
};

// header_line_number: where the operator says that the names stand; nullopt: to be found.
GuessedLines guess_lines(std::span<const std::string> first_lines, std::optional<int> header_line_number);

} // namespace tarvo

#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

inline bool is_blank(char c)
{
    return c == ' ' || c == '\t';
}

inline constexpr std::string_view kSeparators = " \t,;'";

namespace detail {
constexpr std::array<bool, 256> separator_table()
{
    std::array<bool, 256> table = {};
    for (const char c : kSeparators) table[static_cast<unsigned char>(c)] = true;
    return table;
}
inline constexpr std::array<bool, 256> kIsSeparator = separator_table();
} // namespace detail

// One of the characters that end a token.
inline bool is_separator(char c)
{
    return detail::kIsSeparator[static_cast<unsigned char>(c)];
}

// A line made ready for next_token: blanks trimmed, TABs as blanks, a blank put between adjacent commas so that an
// empty field stays a field, runs of blanks as one.
std::string normalise_line(std::string_view text);

// Takes the first token off the text, with its separator, and returns it. A token ends at a blank, TAB, ",", ";" or
// "'"; one that begins with a double quote holds what stands before the closing quote, or before the end. Blanks
// around a comma or semicolon belong to that separator, so "a ,b" holds two tokens and "a, ,b" three.
std::string_view next_token(std::string_view& text);

// The fields of a data line; how many it holds. For a few lines: a run reads its lines with FieldReader.
std::vector<std::string> fields_of_line(std::string_view line);
std::size_t count_fields(std::string_view line);

} // namespace tarvo

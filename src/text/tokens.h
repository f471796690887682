#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// A line made ready for next_token: blanks trimmed, TABs as blanks, a blank put between adjacent commas so that an
// empty field stays a field, runs of blanks as one.
std::string normalise_line(std::string_view text);

// Takes the first token off the text, with its separator, and returns it. A token ends at a blank, TAB, ",", ";" or
// "'"; one that begins with a double quote holds what stands before the closing quote, or before the end. Blanks
// around a comma or semicolon belong to that separator, so "a ,b" holds two tokens and "a, ,b" three.
std::string_view next_token(std::string_view& text);

// Splits data lines into their fields: the tokens that next_token finds on the normalised line, without the cost of
// normalising.
class FieldSplitter {
public:
    // Only the first `most_fields` of a line are looked for.
    explicit FieldSplitter(std::size_t most_fields) : fields_(most_fields) {}

    // The fields hold until the line or the splitter changes.
    std::span<const std::string_view> split(std::string_view line);

private:
    std::span<const std::string_view> split_quoted(std::string_view line);

    std::vector<std::string_view> fields_;
    std::string normalised_; // backs the fields of a line with quotes
};

// How many fields a data line holds.
std::size_t count_fields(std::string_view line);

} // namespace tarvo

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// What separates the fields of a line. any: the rule of next_token; the others are the only separator of their lines.
enum class Separator { any, comma, semicolon, tab, blank };

// Blanks taken off both ends; a TAB is none where it separates.
std::string_view trimmed_for(Separator separator, std::string_view text);

// Splits lines into the texts of their fields, without an allocation a line.
//
// With a named separator a field may stand in double quotes, two inside standing for one; what follows the closing
// quote belongs to the field, and without one the field is the rest of the line. Blanks around a field go. Two
// separators hold an empty field, one at the end of the line makes no further field. "blank" is a run of blanks and
// TABs.
class FieldSplitter {
public:
    // most_fields: fields behind that many are passed over.
    explicit FieldSplitter(Separator separator = Separator::any, std::size_t most_fields = SIZE_MAX);

    Separator separator() const { return separator_; }

    // Empty for an empty line. The texts hold until the next call and as long as `line`.
    std::span<const std::string_view> split(std::string_view line);

private:
    void split_by_any(std::string_view text);
    void split_by_blanks(std::string_view text);
    void split_by_character(std::string_view text, char separator);
    std::size_t take_quoted(std::string_view text);

    Separator separator_;
    std::size_t most_fields_;
    std::vector<std::string_view> fields_;
    std::string unquoted_; // the fields in quotes, one behind the other
};

// A header line made ready to be split as its data lines are: a comment mark ("/", "//", "#" or "%") before the names
// and a "|" behind them do not count, whether glued or set off.
std::string_view without_marks(Separator separator, std::string_view header_line);

} // namespace tarvo

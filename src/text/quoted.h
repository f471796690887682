#pragma once

#include <string>
#include <string_view>

namespace tarvo {

// A field of a CSV line: in double quotes, two inside standing for one, where it holds a comma, a quote or a line end.
std::string csv_quoted(std::string_view text);

// A JSON string with its quotes. Bytes that are not UTF-8 become U+FFFD.
std::string json_quoted(std::string_view text);

// Text of an XML or HTML element or attribute. Bytes that are not UTF-8, and characters that XML does not know, become
// U+FFFD.
std::string markup_escaped(std::string_view text);

} // namespace tarvo

#pragma once

#include <cstddef>
#include <string_view>

namespace tarvo {

// Bytes of the well-formed UTF-8 character that the text begins with; 0: it begins with none. The bounds of the second
// byte are those of Unicode's table of well-formed byte sequences.
std::size_t utf8_length(std::string_view text);

} // namespace tarvo

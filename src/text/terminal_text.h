#pragma once

#include <string>
#include <string_view>

namespace tarvo {

// A text for a terminal, in which nothing acts on it or turns what is read around: control characters but the line
// feed, marks of writing direction and line separators are shown as "\\u{202e}", bytes that are no UTF-8 as "\\xff".
std::string terminal_text(std::string_view text);

} // namespace tarvo

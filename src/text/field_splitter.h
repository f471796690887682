#pragma once

namespace tarvo {

// What separates the fields of a line. any: the rule of next_token; the others are the only separator of their lines.
enum class Separator { any, comma, semicolon, tab, blank };

} // namespace tarvo

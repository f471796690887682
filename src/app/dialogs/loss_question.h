#pragma once

namespace tarvo {

// Before a dialog closes by Esc, or by its window's own button, over what was typed in it.
inline constexpr const char* kLossQuestion = "What was edited here is not saved. Close and lose it?";

} // namespace tarvo

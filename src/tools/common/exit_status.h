#pragma once

#include <stdexcept>

namespace tarvo {

// A wrong command line: what is wrong with it, and what was expected.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Exit statuses of the programs.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

} // namespace tarvo

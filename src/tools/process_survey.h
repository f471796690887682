#pragma once

#include "tools/process_options.h"

namespace tarvo {

// Exit statuses.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

// Loads the survey and writes what was asked for. Returns the exit status; what went wrong has been said.
int process_survey(const ProcessOptions& options);

} // namespace tarvo

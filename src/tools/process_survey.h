#pragma once

#include "tools/process_options.h"

namespace tarvo {

// Loads the survey and writes what was asked for. Returns the exit status; what went wrong has been said.
int process_survey(const ProcessOptions& options);

} // namespace tarvo

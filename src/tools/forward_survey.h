#pragma once

#include "tools/forward_options.h"

namespace tarvo {

// Reads the definitions, forwards the lines and prints how many. stop_descriptor becomes readable when the run is to
// end. Returns the exit status; what went wrong has been said.
int forward_survey(const ForwardOptions& options, int stop_descriptor);

} // namespace tarvo

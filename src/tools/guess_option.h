#pragma once

#include "ports/operator.h"
#include "tools/process_options.h"

namespace tarvo {

// What --guess asks for: definitions from the data, where there are none, with its reasons on standard error. False:
// there are none to go on with, and it has been said why.
bool make_guessed_definitions(const ProcessOptions& options, Operator& op);

} // namespace tarvo

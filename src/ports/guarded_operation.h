#pragma once

#include "ports/operator.h"

#include <exception>
#include <string>

namespace tarvo {

// Runs one operation of the display: 0 when it came to its end, -1 after a fault, which the operator is shown as
// fault_text and the fault's own description.
template <class Operation>
int run_guarded(Operator& op, const char* fault_text, Operation operation)
{
    try {
        operation();
        return 0;
    } catch (const std::exception& fault) {
        op.show_message(std::string(fault_text) + fault.what());
        return -1;
    }
}

} // namespace tarvo

#pragma once

#include "intake/definitions_guess.h"
#include "ports/operator.h"

#include <optional>
#include <string>

namespace tarvo {

enum class GuessOutcome {
    written,
    already_there, // a definitions file, which is left alone
    open,          // a choice that a survey needs could not be made: nothing is written
    failed         // the operator has seen why
};

struct GuessFile {
    GuessOutcome outcome = GuessOutcome::failed;
    DefinitionsGuess guess; // what was chosen, and what stays open
};

// Makes a definitions file from what the data file holds, where there is none yet.
// header_line_number: where the operator says that the names stand.
GuessFile guess_definitions_file(const std::string& data_file, const std::string& definitions_file,
                                 std::optional<int> header_line_number, Operator& op);

} // namespace tarvo

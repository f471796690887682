#pragma once

#include "definitions/survey_definitions.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

// One choice of a guess: what was chosen for a key and why. An open one could not be made.
struct GuessedChoice {
    std::string key;    // "Time Form", "East", "Sensor 1"
    std::string choice; // empty: open
    std::string reason;
    bool is_needed = false; // open, and without it there is nothing to see: no positions, no field, day or month

    bool operator==(const GuessedChoice&) const = default;
};

// A first proposal of what the lines of a data file mean, for the operator to correct.
struct DefinitionsGuess {
    SurveyDefinitions definitions;
    int header_line_number = 1;
    std::vector<GuessedChoice> choices;

    // Every choice that a survey needs was made.
    bool is_certain() const;
};

// Proposes from the names of the columns and from what they hold. What no column seems to hold is "N/A". A data format
// is proposed only where the plain form does not do. first_lines: of the file, kGuessLines at most are looked at.
// header_line_number: where the operator says that the names stand; nullopt: to be found.
DefinitionsGuess guess_definitions(std::span<const std::string> first_lines,
                                   std::optional<int> header_line_number = std::nullopt);

// "key: choice (reason)", or "key: open (reason)".
std::string choice_text(const GuessedChoice& choice);

// The choices, a line each.
std::string guess_text(const DefinitionsGuess& guess);

} // namespace tarvo

#pragma once

#include "intake/guess_columns.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvo {

struct TimeGuess {
    std::vector<std::size_t> columns; // by index, from 0
    std::string form = "s";
    double offset = 0; // seconds
    std::string reason;
    std::string open; // why the form cannot be told, such as day and month that could be either; empty: it can

    bool is_plain() const { return form == "s" && columns.size() == 1 && offset == 0; }
};

// Seconds win over clocks with a date, these over clocks alone, over counts of milliseconds and over fiducials.
std::optional<TimeGuess> guess_time(const std::vector<GuessColumn>& columns);

} // namespace tarvo

#pragma once

#include "processing/line_reading.h"
#include "processing/towed_path.h"
#include "text/time_form.h"

#include <cstdint>
#include <vector>

namespace tarvo {

// What a run by a data format knows from the lines before the one at hand.
struct LoggerSequence {
    enum class Unit : unsigned char { undecided, absent, present };

    bool runs_by_format = false;
    TimeForm time_form;
    RunningDay running_day;
    std::vector<std::uint32_t> undecided_columns; // wanted ones that have held nothing yet, or no line was accepted
    std::vector<Unit> units;                      // by header column
    TowedPath path;
};

// Settles whether columns hold numbers with units, from the first value of each in an accepted line.
void decide_units(LoggerSequence& sequence, const LineReading& reading);

// Whether the value of a field counts as a number: one with a unit does in a column of units.
bool is_number_in_sequence(const LoggerSequence& sequence, const OddField& field);

} // namespace tarvo

#include "processing/logger_sequence.h"

#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

const OddField* odd_field(const LineReading& reading, std::uint32_t column)
{
    for (const OddField& odd : reading.odd_fields) {
        if (odd.column == column) return &odd;
    }
    return nullptr;
}

LoggerSequence::Unit unit_of(const LineReading& reading, std::uint32_t column)
{
    using Unit = LoggerSequence::Unit;
    if (const OddField* const odd = odd_field(reading, column)) {
        return odd->kind == OddField::Kind::with_unit ? Unit::present : Unit::absent;
    }
    return is_valid_channel(reading.values[column]) ? Unit::absent : Unit::undecided;
}

} // namespace

void decide_units(LoggerSequence& sequence, const LineReading& reading)
{
    if (sequence.undecided_columns.empty()) return;
    std::erase_if(sequence.undecided_columns, [&](std::uint32_t column) {
        sequence.units[column] = unit_of(reading, column);
        return sequence.units[column] != LoggerSequence::Unit::undecided;
    });
}

bool is_number_in_sequence(const LoggerSequence& sequence, const OddField& field)
{
    return field.kind == OddField::Kind::with_unit && sequence.units[field.column] == LoggerSequence::Unit::present;
}

} // namespace tarvo

#pragma once

#include "text/time_form.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tarvo {

// Why a data line is refused.
enum class LineFault : unsigned char {
    none,
    empty_line,
    too_long,
    no_time,
    no_such_time, // a text is there that is no time of the form
    repeated_names,
    no_memory
};

// By fault; none has no text.
inline constexpr std::array<std::string_view, 7> kLineFaultTexts = {"",
                                                                    "empty line",
                                                                    "longer than 1 MiB",
                                                                    "no time",
                                                                    "the time does not fit the time form",
                                                                    "repeats the names",
                                                                    "no memory"};

constexpr std::string_view line_fault_text(LineFault fault)
{
    return kLineFaultTexts[static_cast<std::size_t>(fault)];
}

// The fields of one data line by header column, as numbers; kNull for what is not numeric.
using SampleRecord = std::span<const double>;

// A field in a wanted column that is neither empty nor a null text and not simply a number.
struct OddField {
    enum class Kind : unsigned char {
        with_unit, // "41.25m": its value is the number, which counts where the column's first value has a unit
        no_number
    };
    std::uint32_t column = 0;
    Kind kind = Kind::no_number;
};

// What one data line says by itself. Nothing of the lines before it has a part in it, so that lines can be read in any
// order and by several threads. The views hold until the reader's next line.
struct LineReading {
    std::string_view text;   // the line
    std::int64_t number = 0; // of the line in its file, from 1
    LineFault fault = LineFault::none;
    SampleRecord values; // up to the last wanted column; what stands at unwanted ones means nothing

    // By a data format alone.
    WrittenTime time;
    bool sensor_values_count = true; // false: the line's sensor values are nulls
    std::span<const OddField> odd_fields;
};

} // namespace tarvo

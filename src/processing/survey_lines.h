#pragma once

#include "processing/record_array.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// The survey lines of a run, numbered from 1 in the order they were opened.
struct SurveyLines {
    // Index into LineLimits' rows.
    static constexpr std::size_t kFirst = 1;
    static constexpr std::size_t kLast = 2;
    static constexpr std::size_t kCount = 3;

    std::int32_t CurrentLine = 0; // lines opened, the open one among them; 0: no line yet
    double CurrentLineNumber = 0; // of the open line; kNull while it waits for the first number to be read
    std::int32_t ShortLinesDropped = 0;
    RecordArray<double, 1024> LineNumbers;
    RecordArray<std::array<std::int32_t, 4>, 1024> LineLimits; // first record, last record, record count; 0 unused
    RecordArray<std::int32_t, 2048> LineOfRecord; // the line that was open when the record was stored; line_of_record
                                                  // answers for finished lines

    std::int32_t first_record(std::int32_t line) const { return LineLimits[line][kFirst]; }
    std::int32_t last_record(std::int32_t line) const { return LineLimits[line][kLast]; }
    bool has_line() const { return CurrentLine > 0; }
};

// Opens line 1 at record 1.
void open_first_line(SurveyLines& lines, double number);

// Ends the open line at its last record and opens the next. A line of at most `min_records` records is dropped instead
// and its place and records are used again. Returns the record count that is left.
std::int32_t open_next_line(SurveyLines& lines, double number, std::int32_t record_count, std::int64_t min_records);

// Counts a record just stored to the open line.
void add_record_to_line(SurveyLines& lines, std::int32_t record);

// The line that a stored record belongs to, by binary search.
std::int32_t line_of_record(const SurveyLines& lines, std::int32_t record);

// A line's number as its name, without groups of digits.
std::string line_name(double number);

// A line's name: its number, or its place in the table where it has none.
std::string line_name_of(const SurveyLines& lines, std::int32_t line);

// "Line 7 has", "Lines 7, 9, 12, 13, 20 and 4 more have": at most five are named. found: not empty.
std::string lines_that_have(const SurveyLines& lines, const std::vector<std::int32_t>& found);

} // namespace tarvo

#pragma once

#include "processing/line_reading.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

struct RejectedLine {
    std::size_t file = 0;    // of the survey's, from 0
    std::int64_t number = 0; // in the file, from 1
    LineFault fault = LineFault::none;
    std::string text; // its first kRejectedText characters
};

inline constexpr std::int64_t kListedRejections = 1000; // of each reason
inline constexpr std::size_t kRejectedText = 200;       // characters

// The data lines that a run has refused: how many for each reason, and the first ones themselves.
struct RejectedLines {
    std::vector<RejectedLine> lines; // in the order in which they came
    std::array<std::int64_t, kLineFaultTexts.size()> counts = {};
};

void note_rejected_line(RejectedLines& rejected, std::size_t file, const LineReading& reading, LineFault fault);

// "12 lines were rejected: 10 empty line, 2 no time"; empty when none was.
std::string rejections_text(const RejectedLines& rejected);

// Bytes that are no UTF-8 as \xNN.
std::string printable_text(std::string_view text);

// The list as CSV: file, line, reason, text. LF line ends. file_names: by file; a folder before a name is left out.
void export_rejected_lines(const RejectedLines& rejected, std::span<const std::string> file_names,
                           const std::function<void(std::string_view)>& write);

} // namespace tarvo

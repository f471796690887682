#include "processing/survey_lines.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

void reserve_line(SurveyLines& lines, std::int32_t line)
{
    lines.LineNumbers.reserve(line);
    lines.LineLimits.reserve(line);
}

void begin_line(SurveyLines& lines, double number, std::int32_t first_record, std::int32_t last_record,
                std::int32_t count)
{
    lines.CurrentLineNumber = number;
    lines.LineNumbers[lines.CurrentLine] = number;
    lines.LineLimits[lines.CurrentLine] = {0, first_record, last_record, count};
}

} // namespace

void open_first_line(SurveyLines& lines, double number)
{
    reserve_line(lines, 1);
    lines.LineOfRecord.reserve(1);
    lines.CurrentLine = 1;
    lines.LineOfRecord[1] = 1;
    begin_line(lines, number, 1, 1, 1);
}

std::int32_t open_next_line(SurveyLines& lines, double number, std::int32_t record_count, std::int64_t min_records)
{
    reserve_line(lines, lines.CurrentLine + 1);
    auto& limits = lines.LineLimits[lines.CurrentLine];
    const std::int32_t length = record_count - limits[SurveyLines::kFirst] + 1;
    if (length <= min_records) {
        ++lines.ShortLinesDropped;
        record_count = limits[SurveyLines::kFirst] - 1;
    } else {
        limits[SurveyLines::kLast] = record_count;
        limits[SurveyLines::kCount] = length;
        ++lines.CurrentLine;
        lines.LineOfRecord[record_count] = lines.CurrentLine;
    }
    begin_line(lines, number, record_count + 1, record_count + 1, 0);
    return record_count;
}

void add_record_to_line(SurveyLines& lines, std::int32_t record)
{
    lines.LineOfRecord.reserve(record);
    lines.LineOfRecord[record] = lines.CurrentLine;
    auto& limits = lines.LineLimits[lines.CurrentLine];
    limits[SurveyLines::kLast] = record;
    limits[SurveyLines::kCount] = record - limits[SurveyLines::kFirst] + 1;
}

std::int32_t line_of_record(const SurveyLines& lines, std::int32_t record)
{
    std::int32_t line = 1;
    std::int32_t last_line = lines.CurrentLine;
    while (line < last_line) {
        const std::int32_t middle = line + (last_line - line) / 2;
        if (lines.last_record(middle) < record) {
            line = middle + 1;
        } else {
            last_line = middle;
        }
    }
    return line;
}

std::string line_name(double number)
{
    constexpr double kWholeNumbersEnd = 0x1p53; // of 64-bit floats: above they are no names any more
    if (!(std::abs(number) < kWholeNumbersEnd)) return readable_number(number, 0);
    return number == std::floor(number) ? format_fixed(number, 0) : format_shortest(number);
}

std::string line_name_of(const SurveyLines& lines, std::int32_t line)
{
    const double number = lines.LineNumbers[line];
    return is_valid_channel(number) ? line_name(number) : std::to_string(line);
}

std::string lines_that_have(const SurveyLines& lines, const std::vector<std::int32_t>& found)
{
    constexpr std::size_t kMostNamed = 5;
    const std::size_t named = std::min(found.size(), kMostNamed);
    std::string text = found.size() == 1 ? "Line " : "Lines ";
    for (std::size_t at = 0; at < named; ++at) text += (at == 0 ? "" : ", ") + line_name_of(lines, found[at]);
    if (found.size() > named) text += " and " + std::to_string(found.size() - named) + " more";
    return text + (found.size() == 1 ? " has" : " have");
}

} // namespace tarvo

#include "targets.h"

#include "text/numbers.h"
#include "text/position_text.h"
#include "text/terminal_text.h"
#include "text/time_form.h"

#include <vector>

namespace tarvo {

namespace {

void take_text(const TimeFormReading& reading, std::string_view text, std::string_view next, RunningDay& day)
{
    if (reading.form) {
        const std::optional<WrittenTime> written = read_time(*reading.form, text);
        if (written) time_of(*reading.form, *written, day);
    }
    for (const GeoAxis axis : {GeoAxis::longitude, GeoAxis::latitude}) {
        geo_position(read_degrees(text, next, axis), read_nmea_degrees(text, next, axis));
    }
    const std::optional<double> number = numeric_value(text);
    if (number && numeric_value(format_shortest(*number)) != number) std::abort();
}

} // namespace

// The first line is a time form, each other one a field, whose neighbour is the line that follows.
void take_texts(std::string_view input)
{
    std::vector<std::string_view> lines;
    while (!input.empty()) {
        lines.push_back(input.substr(0, input.find('\n')));
        input.remove_prefix(std::min(input.size(), lines.back().size() + 1));
    }
    if (lines.empty()) return;
    const TimeFormReading reading = compile_time_form(lines[0], {2024, 2, 28}, 1.5);
    RunningDay day;
    for (std::size_t line = 1; line < lines.size(); ++line) {
        take_text(reading, lines[line], line + 1 < lines.size() ? lines[line + 1] : std::string_view(), day);
    }
}

} // namespace tarvo

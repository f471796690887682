#include "targets.h"

#include "fuzz_input.h"
#include "intake/base_station_file.h"

namespace tarvo {

// Parts: readings, definitions (none: beside IAGA-2002).
void take_base_station(std::string_view input)
{
    const InputFolder folder;
    const std::string_view definitions = part_of(input, "definitions");
    if (!definitions.empty()) folder.write("base.def", definitions);
    const BaseStation base = read_base_station(folder.write("base.txt", part_of(input, "readings"))).base;
    base_gaps(base);
    base_level(base);
    if (const auto span = time_span(base)) {
        time_span_text(*span);
        BaseCursor(base).field_at((span->from + span->to) / 2);
    }
}

} // namespace tarvo

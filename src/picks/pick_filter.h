#pragma once

#include "picks/pick_list.h"
#include "picks/pick_types.h"
#include "processing/survey_lines.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// Which picks a list shows, as the operator types it; blanks around a text count for nothing, and so does an empty one.
struct PickFilter {
    std::string name; // a part of the name, in any letter case
    std::string type; // the number, or a part of its name in any letter case
    std::string line; // the survey line's name
    std::string from; // metres along the track; what is no number counts for nothing
    std::string to;

    bool operator==(const PickFilter&) const = default;
};

// Those of the picks that pass, in their order.
std::vector<std::int32_t> filtered_picks(const PickList& picks, const SurveyLines& lines,
                                         const std::vector<PickType>& types, const PickFilter& filter,
                                         const std::vector<std::int32_t>& of);

// The name of the survey line that a pick lies on; empty: on none.
std::string line_of_pick(const PickList& picks, std::int32_t pick, const SurveyLines& lines);

// A list of these picks alone, without a file.
PickList chosen_picks(const PickList& picks, const std::vector<std::int32_t>& chosen);

} // namespace tarvo

#include "targets.h"

#include <algorithm>
#include <array>

namespace tarvo {

namespace {

constexpr std::array<FuzzTarget, 8> kTargets = {{{"base_station", take_base_station},
                                                 {"definitions", take_definitions},
                                                 {"layer_list", take_layer_list},
                                                 {"live_requests", take_live_requests},
                                                 {"picks", take_picks},
                                                 {"raw_file", take_raw_file},
                                                 {"survey", take_survey},
                                                 {"texts", take_texts}}};

} // namespace

std::span<const FuzzTarget> fuzz_targets()
{
    return kTargets;
}

const FuzzTarget* find_fuzz_target(std::string_view name)
{
    const auto* const found =
        std::find_if(kTargets.begin(), kTargets.end(), [&](const FuzzTarget& target) { return target.name == name; });
    return found == kTargets.end() ? nullptr : found;
}

} // namespace tarvo

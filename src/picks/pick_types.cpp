#include "picks/pick_types.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

std::vector<PickType> pick_types_of(std::string_view text)
{
    std::vector<PickType> types;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(";\n"), text.size());
        const std::string_view part = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t blank = part.find_first_of(" \t");
        if (blank == std::string_view::npos) continue;
        const std::optional<double> number = numeric_value(part.substr(0, blank));
        if (!number || !(std::abs(*number) <= std::numeric_limits<std::int32_t>::max())) continue;
        const auto type = static_cast<std::int32_t>(std::nearbyint(*number));
        if (pick_type_name(types, type).empty()) types.push_back({type, std::string(trimmed(part.substr(blank)))});
    }
    return types;
}

std::string pick_types_text(const std::vector<PickType>& types)
{
    std::string text;
    for (const PickType& type : types) {
        text += (text.empty() ? "" : "; ") + std::to_string(type.type) + ' ' + type.name;
    }
    return text;
}

std::string pick_type_name(const std::vector<PickType>& types, double type)
{
    const auto found =
        std::find_if(types.begin(), types.end(), [type](const PickType& named) { return named.type == type; });
    return found == types.end() ? std::string() : found->name;
}

} // namespace tarvo

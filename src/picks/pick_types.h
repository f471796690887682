#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// A name for a type number.
struct PickType {
    std::int32_t type = 0;
    std::string name;

    bool operator==(const PickType&) const = default;
};

// From "1 mine; 2 cable" or a line each; parts without a number or a name are left out, and the first of several names
// of a number counts.
std::vector<PickType> pick_types_of(std::string_view text);
std::string pick_types_text(const std::vector<PickType>& types); // reads back to them

std::string pick_type_name(const std::vector<PickType>& types, double type); // empty: it has none

} // namespace tarvo

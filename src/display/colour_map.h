#pragma once

#include "display/picture.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace tarvo {

inline constexpr Colour kMidGrey = 0x808080;
inline constexpr std::size_t kColourMapEntries = 256;
using ColourTable = std::array<Colour, kColourMapEntries>;

// The colours that a range of values is shown in. The survey's own scale is mixed without steps and has no table; the
// others take the entry that a value falls on.
struct ColourMap {
    const char* key; // of the settings and of --colours
    const char* caption;
    const ColourTable* table; // nullptr: the survey's own
    Colour null_colour;
    bool has_green; // as the colour of a value, so that green time ticks would be taken for one

    bool operator==(const ColourMap&) const = default;
};

inline constexpr std::array<const char*, 5> kColourMapKeys = {"survey", "viridis", "cividis", "grey", "blue-white-red"};

std::span<const ColourMap> colour_maps();          // in the order of their keys, the survey's own first
const ColourMap& colour_map(std::string_view key); // the first for a key that is none

} // namespace tarvo

#pragma once

#include "display/picture.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

// How much of what lies below a colour covers: 0 nothing, kFullCover all of it.
inline constexpr unsigned kFullCover = 255;

// opacity: 0 to 1; what is beyond counts as the end.
inline unsigned cover_of(double opacity)
{
    return static_cast<unsigned>(std::lround(std::clamp(opacity, 0.0, 1.0) * kFullCover));
}

inline unsigned mixed_part(unsigned over, unsigned under, unsigned cover)
{
    return (over * cover + under * (kFullCover - cover) + kFullCover / 2) / kFullCover;
}

inline Colour mixed(Colour over, Colour under, unsigned cover)
{
    return mixed_part(over >> 16 & 0xFF, under >> 16 & 0xFF, cover) << 16 |
           mixed_part(over >> 8 & 0xFF, under >> 8 & 0xFF, cover) << 8 | mixed_part(over & 0xFF, under & 0xFF, cover);
}

} // namespace tarvo

#pragma once

#include "display/colour_map.h"
#include "display/display_settings.h"
#include "display/picture.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tarvo {

// Red, green and blue fractions 0..1 of the colour scale's entries, one entry after the other: blue, cyan, green,
// yellow, red, evenly spaced over the scale.
inline constexpr std::int32_t kColourTableEntries = 5;
inline constexpr std::array<float, 3 * kColourTableEntries> kColourTable = {0, 0, 1, //
                                                                            0, 1, 1, //
                                                                            0, 1, 0, //
                                                                            1, 1, 0, //
                                                                            1, 0, 0};

inline constexpr float kColourScaleLower = 0.0F;
inline constexpr float kColourScaleUpper = 1.0F;
inline constexpr std::int32_t kColourScaleMode = 2; // colours between two entries are mixed linearly

// Red, green and blue fractions of a scaled value: the table's entries are spread evenly from the lower to the upper
// limit, a value outside of them takes the end colour. In a mode other than 2 an entry's colour holds up to the next.
inline void CLCRGB(const float& scaled_value, const float& lower_limit, const float& upper_limit,
                   const std::int32_t& mode, const std::int32_t& table_entries, const float* colour_table, float& red,
                   float& green, float& blue)
{
    const auto last_entry = static_cast<float>(table_entries - 1);
    const float unbounded = (scaled_value - lower_limit) / (upper_limit - lower_limit) * last_entry;
    const float position = std::min(std::max(0.0F, unbounded), last_entry); // 0 also for what is no number

    const auto entry = static_cast<std::int32_t>(position);
    const std::int32_t next = entry < table_entries - 1 ? entry + 1 : entry;
    const float share = mode == kColourScaleMode ? position - static_cast<float>(entry) : 0.0F;
    const float* const low = colour_table + 3 * entry;
    const float* const high = colour_table + 3 * next;
    red = low[0] + (high[0] - low[0]) * share;
    green = low[1] + (high[1] - low[1]) * share;
    blue = low[2] + (high[2] - low[2]) * share;
}

// The survey's own colour of a scaled value, 0 to 1.
inline Colour survey_colour(float scaled_value)
{
    float red = 0;
    float green = 0;
    float blue = 0;
    CLCRGB(scaled_value, kColourScaleLower, kColourScaleUpper, kColourScaleMode, kColourTableEntries,
           kColourTable.data(), red, green, blue);
    const auto whole = [](float fraction) {
        constexpr float kUnitsOnly = 0x1.8p23F; // rounds to whole numbers, halves to even, as in rounded_pixel
        return (fraction * 255.0F + kUnitsOnly) - kUnitsOnly;
    };
    // Exact in 32-bit floats: no colour has more than 24 bits.
    return static_cast<Colour>(static_cast<int>(whole(red) * 0x10000 + whole(green) * 0x100 + whole(blue)));
}

// A table's colour of a scaled value, 0 to 1: each entry stands for an even part of the scale.
inline Colour table_colour(const ColourTable& table, double scaled_value)
{
    constexpr double kEntries = kColourMapEntries;
    const double entry = std::min(std::max(0.0, scaled_value * kEntries), kEntries - 1); // 0 also for what is no number
    return table[static_cast<std::size_t>(entry)];
}

inline constexpr Colour kOutOfLimits = kMagenta; // none of the maps of unsigned quantities has it

// How values become colours: the range from the map's first colour to its last.
struct ColourScale {
    double low = 0;
    double high = 10;
    const ColourMap* map = &colour_maps().front();
    Colour tick = kGreen;                                    // of the time ticks
    double least = -std::numeric_limits<double>::infinity(); // what lies beyond these limits is kOutOfLimits
    double greatest = std::numeric_limits<double>::infinity();

    bool has_limits() const { return std::isfinite(least) || std::isfinite(greatest); }

    bool operator==(const ColourScale&) const = default;
};

// A null takes the map's colour for it.
inline Colour value_colour(double value, const ColourScale& scale)
{
    const bool is_value = is_valid_sensor(value);
    const double scaled_value = ((is_value ? value : 0.0) - scale.low) / (scale.high - scale.low);
    const ColourTable* const table = scale.map->table;
    const Colour colour =
        table == nullptr ? survey_colour(static_cast<float>(scaled_value)) : table_colour(*table, scaled_value);
    if (!is_value) return scale.map->null_colour;
    return value < scale.least || value > scale.greatest ? kOutOfLimits : colour;
}

// The range adjusters: element 0 is the fine one, the others are coarse. value 1 narrows the range, any other widens
// it. Coarse: by a factor, and the result becomes the reference; fine: by a fiftieth of the reference. Never below 1.
void VScroll_TG_change(int index, int value, DisplaySettings& settings);

} // namespace tarvo

#pragma once

#include "display/quantity.h"

#include <array>
#include <cstdint>
#include <string>

namespace tarvo {

inline constexpr double kSmallestGradientRange = 1.0;
inline constexpr double kNarrowestFollowWidth = 1;
inline constexpr double kWidestFollowWidth = 1'000'000;

// What the display shows and how. All are stored but the reference range, which goes with "GradientMaxRange".
struct DisplaySettings {
    std::int32_t timing_tick = 2;           // minutes between two time ticks of the track; none when below a sample
    double track_axis_tick_spacing = 10.0;  // metres along the track
    double follow_width = 200.0;            // metres across the view that follows the track
    float track_axis_length = 100.0F;       // metres along the track that graphs, bars and highlighted section show
    double elevation_max_range = 20.0;      // metres
    double tmi_max_range = 1000.0;          // nT
    double tmi_tick_spacing = 100.0;        // nT
    double gradient_max_range = 10.0;       // the display value that takes the colour scale's last colour
    double gradient_tick_spacing = 2.0;     // in units of the display value
    double reference_gradient_range = 10.0; // sets the step of the fine range adjuster
    bool fit_heights = true;                // the graphs' heights follow the curves in view
    std::string quantity = kQuantities[0].key;
    std::string colour_map = "survey";
    std::string signed_colour_map = "blue-white-red"; // of quantities with two signs
    std::array<QuantityRange, kQuantityCount> ranges; // by quantity; the gradient's is above

    bool lettered_pictures =
        true; // names, scale bar, legend and the like in pictures of the track that leave the window

    bool show_grid = false;      // the displayed quantity lies on square cells under the track
    double grid_cell = 0;        // metres; 0: one that suits the survey
    double grid_fill_radius = 0; // metres; 0: five cells

    bool operator==(const DisplaySettings&) const = default;
};

} // namespace tarvo

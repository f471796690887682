#pragma once

#include "targets/dipole_fit.h"
#include "targets/fit_curves.h"
#include "targets/grid_vector.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace tarvo {

// The colours of a picture's ground and of what is written on it, as "#rrggbb".
struct PictureColours {
    const char* paper = "#ffffff";
    const char* ink = "#202020";
    const char* faint = "#b8b8b8";
    const char* model = "#c01818";
    const char* pick = "#0a64c8";
};
inline constexpr PictureColours kPrintColours = {};
inline constexpr PictureColours kDarkColours = {"#1e1e1e", "#e8e8e8", "#5a5a5a", "#ff6e60", "#6cb4ff"};

// What a target's pictures are drawn from.
struct TargetScene {
    GridVector pick; // survey grid; its height is not used
    const DipoleFit* fit = nullptr;
    std::span<const FitCurve> curves;
    std::function<std::string(std::int32_t line)> line_name = {}; // as "Line 7"
};

// In plan, as SVG: the sensors' ways, the pick (a ring), the fitted place (a cross) with its error ellipse, a line
// between them, and the place on the other side where the side is not known. North is up. size: pixels of both sides.
std::string target_plan(const TargetScene& scene, const PictureColours& colours, double size);

// A row of readings (dots) and model (a line) for every survey line in use, those with the nearest passes first, all
// in one scale.
std::string target_profiles(const TargetScene& scene, const PictureColours& colours, double width);

} // namespace tarvo

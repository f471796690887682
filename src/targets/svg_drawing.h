#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tarvo {

struct SvgPoint {
    double x = 0; // pixels from the left
    double y = 0; // pixels from the top
};

struct SvgStroke {
    const char* colour = "#000000";
    double width = 1;        // pixels
    const char* dashes = ""; // as "4 3"; empty: none
};

enum class SvgAnchor { start, middle, end };

// A picture as SVG text that stands alone or inside HTML. It uses nothing beyond SVG Tiny 1.2: small readers know no
// more.
class SvgDrawing {
public:
    SvgDrawing(double width, double height);

    void box(double left, double top, double width, double height, const char* fill, const SvgStroke& stroke);
    void line(const SvgPoint& from, const SvgPoint& to, const SvgStroke& stroke);
    void polyline(std::span<const SvgPoint> points, const SvgStroke& stroke); // nothing for less than two
    void dots(std::span<const SvgPoint> points, double radius, const char* colour);
    // Upright squares by the middle of their left sides.
    void squares(std::span<const SvgPoint> points, double side, const char* colour);
    void ring(const SvgPoint& middle, double radius, const SvgStroke& stroke);
    // degrees: of its long axis, clockwise from the right.
    void ellipse(const SvgPoint& middle, double long_half, double short_half, double degrees, const SvgStroke& stroke);
    void cross(const SvgPoint& middle, double half, const SvgStroke& stroke);
    void text(const SvgPoint& at, std::string_view words, SvgAnchor anchor, const char* colour, double size = 11);

    std::string finished(); // once

private:
    std::string text_;
};

} // namespace tarvo

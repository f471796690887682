#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo {

using Colour = std::uint32_t; // 0x00RRGGBB

inline constexpr Colour kBlack = 0x000000;
inline constexpr Colour kWhite = 0xFFFFFF;
inline constexpr Colour kRed = 0xFF0000;
inline constexpr Colour kGreen = 0x00FF00;
inline constexpr Colour kYellow = 0xFFFF00;
inline constexpr Colour kMagenta = 0xFF00FF;

// A block of pixels: rows top down, x to the right, y down, (0, 0) the top left pixel. The pixels lie row after row
// without a gap, so that a toolkit can show them where they are.
class Picture {
public:
    Picture() = default;
    Picture(int width, int height); // black; throws std::length_error for a side below 0 or over 65535 pixels

    int width() const { return width_; }
    int height() const { return height_; }
    bool is_empty() const { return pixels_.empty(); }
    Colour* row(int y) { return pixels_.data() + offset_of_row(y); }
    const Colour* row(int y) const { return pixels_.data() + offset_of_row(y); }

    bool operator==(const Picture&) const = default;

private:
    std::ptrdiff_t offset_of_row(int y) const { return std::ptrdiff_t{width_} * y; }

    int width_ = 0;
    int height_ = 0;
    std::vector<Colour> pixels_;
};

struct PixelPlace {
    int x = 0;
    int y = 0;

    bool operator==(const PixelPlace&) const = default;
};

struct PixelRectangle {
    int x = 0; // left column
    int y = 0; // top row
    int width = 0;
    int height = 0;
};

// Whole pixels nearest to a coordinate, halves to even. What is no number, or too far out, lands on a pixel that is
// outside of every picture; sums of it with small numbers do not overflow.
inline constexpr int kFarPixel = 1 << 30;
inline int rounded_pixel(double coordinate)
{
    // Adding 1.5 * 2^52 leaves no bits below the units: the sum is rounded as wanted, without a call.
    constexpr double kUnitsOnly = 0x1.8p52;
    constexpr double kFar = kFarPixel;
    const double bounded = std::min(std::max(-kFar, coordinate), kFar); // max gives its first for what is no number
    return static_cast<int>((bounded + kUnitsOnly) - kUnitsOnly);
}

// Everything below is clipped: what falls outside of the picture is left out.

void clear(Picture& picture); // to black
void fill(Picture& picture, Colour colour);

// Fills from corner (x1, y1), which belongs to the rectangle, towards corner (x2, y2), whose column and row do not,
// in whichever direction it lies.
void fill_rectangle(Picture& picture, int x1, int y1, int x2, int y2, Colour colour);

// The (2 * half_size + 1)^2 pixels centred on (x, y).
void fill_square(Picture& picture, int x, int y, int half_size, Colour colour);

// Pixels whose distance from (x, y) rounds to the radius.
enum class RingLine { solid, dashed };
void draw_ring(Picture& picture, int x, int y, int radius, Colour colour, RingLine line = RingLine::solid);

// The same where `scale` pixels stand for one: so many times as far out, and as wide.
void draw_scaled_ring(Picture& picture, int x, int y, int radius, int scale, Colour colour,
                      RingLine line = RingLine::solid);

// Both ends belong to a line; the same pixels whichever end comes first.
void draw_line(Picture& picture, int x1, int y1, int x2, int y2, Colour colour);
void invert_line(Picture& picture, int x1, int y1, int x2, int y2); // done twice, it leaves no trace

// Copies a block of pixels so that its top left pixel comes to (x, y) of target. Both may be one picture and the
// places may overlap: every pixel arrives as it was before.
void copy_block(const Picture& source, const PixelRectangle& block, Picture& target, int x, int y);
void copy_picture(const Picture& source, Picture& target); // the whole of it, at (0, 0)

} // namespace tarvo

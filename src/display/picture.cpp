#include "display/picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace tarvo {

namespace {

constexpr int kLongestSide = 65535;

// Whole pixels first <= i < end along one axis; 64 bits wide, so that no sum of two 32-bit coordinates overflows.
struct PixelSpan {
    std::int64_t first = 0;
    std::int64_t end = 0;

    bool is_empty() const { return end <= first; }
};

PixelSpan clipped(PixelSpan span, int length)
{
    return {std::max<std::int64_t>(span.first, 0), std::min<std::int64_t>(span.end, length)};
}

PixelSpan from_towards(std::int64_t included, std::int64_t excluded)
{
    if (included <= excluded) return {included, excluded};
    return {excluded + 1, included + 1};
}

// Calls paint(pixel) for every pixel of a line inside of the picture: one per step along the longer axis, the other
// coordinate rounded, halves up.
template <class Paint>
void for_each_line_pixel(Picture& picture, int x1, int y1, int x2, int y2, Paint paint)
{
    const bool is_flat = std::abs(std::int64_t{x2} - x1) >= std::abs(std::int64_t{y2} - y1);
    std::int64_t along = is_flat ? x1 : y1;
    std::int64_t along_end = is_flat ? x2 : y2;
    std::int64_t across = is_flat ? y1 : x1;
    std::int64_t across_end = is_flat ? y2 : x2;
    if (along > along_end) {
        std::swap(along, along_end);
        std::swap(across, across_end);
    }
    const double slope =
        along == along_end ? 0.0 : static_cast<double>(across_end - across) / static_cast<double>(along_end - along);

    const PixelSpan steps = clipped({along, along_end + 1}, is_flat ? picture.width() : picture.height());
    const int across_length = is_flat ? picture.height() : picture.width();
    for (std::int64_t step = steps.first; step < steps.end; ++step) {
        const double rise = slope * static_cast<double>(step - along);
        const std::int64_t other = across + static_cast<std::int64_t>(std::floor(rise + 0.5));
        if (other < 0 || other >= across_length) continue;
        const int x = static_cast<int>(is_flat ? step : other);
        const int y = static_cast<int>(is_flat ? other : step);
        paint(picture.row(y)[x]);
    }
}

} // namespace

Picture::Picture(int width, int height) : width_(width), height_(height)
{
    if (width < 0 || height < 0 || width > kLongestSide || height > kLongestSide) {
        throw std::length_error("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                                " pixels is not possible");
    }
    pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kBlack);
}

void clear(Picture& picture)
{
    fill(picture, kBlack);
}

void fill(Picture& picture, Colour colour)
{
    fill_rectangle(picture, 0, 0, picture.width(), picture.height(), colour);
}

void fill_rectangle(Picture& picture, int x1, int y1, int x2, int y2, Colour colour)
{
    const PixelSpan columns = clipped(from_towards(x1, x2), picture.width());
    const PixelSpan rows = clipped(from_towards(y1, y2), picture.height());
    if (columns.is_empty()) return;
    for (std::int64_t y = rows.first; y < rows.end; ++y) {
        Colour* const row = picture.row(static_cast<int>(y));
        std::fill(row + columns.first, row + columns.end, colour);
    }
}

void fill_square(Picture& picture, int x, int y, int half_size, Colour colour)
{
    fill_rectangle(picture, x - half_size, y + half_size, x + half_size + 1, y - half_size - 1, colour);
}

void draw_ring(Picture& picture, int x, int y, int radius, Colour colour, RingLine line)
{
    const std::int64_t squared_radius = std::int64_t{radius} * radius;
    const PixelSpan columns = clipped({std::int64_t{x} - radius, std::int64_t{x} + radius + 1}, picture.width());
    const PixelSpan rows = clipped({std::int64_t{y} - radius, std::int64_t{y} + radius + 1}, picture.height());
    for (std::int64_t row = rows.first; row < rows.end; ++row) {
        for (std::int64_t column = columns.first; column < columns.end; ++column) {
            const std::int64_t squared_distance = (column - x) * (column - x) + (row - y) * (row - y);
            // radius - 0.5 < distance < radius + 0.5, squared: both sides end in a quarter
            const bool is_on_ring =
                squared_distance > squared_radius - radius && squared_distance <= squared_radius + radius;
            const std::int64_t off_diagonal = std::abs(std::abs(column - x) - std::abs(row - y));
            const bool is_gap = line == RingLine::dashed && off_diagonal <= 1 + radius / 5;
            if (is_on_ring && !is_gap) picture.row(static_cast<int>(row))[column] = colour;
        }
    }
}

void draw_scaled_ring(Picture& picture, int x, int y, int radius, int scale, Colour colour, RingLine line)
{
    const int outermost = radius * scale + scale / 2;
    for (int at = outermost - scale + 1; at <= outermost; ++at) draw_ring(picture, x, y, at, colour, line);
}

void draw_line(Picture& picture, int x1, int y1, int x2, int y2, Colour colour)
{
    for_each_line_pixel(picture, x1, y1, x2, y2, [colour](Colour& pixel) { pixel = colour; });
}

void invert_line(Picture& picture, int x1, int y1, int x2, int y2)
{
    for_each_line_pixel(picture, x1, y1, x2, y2, [](Colour& pixel) { pixel ^= kWhite; });
}

void copy_block(const Picture& source, const PixelRectangle& block, Picture& target, int x, int y)
{
    const std::int64_t right = std::int64_t{x} - block.x; // from a pixel's place to the one it comes to
    const std::int64_t down = std::int64_t{y} - block.y;
    PixelSpan columns = clipped({block.x, std::int64_t{block.x} + block.width}, source.width());
    PixelSpan rows = clipped({block.y, std::int64_t{block.y} + block.height}, source.height());
    columns = {std::max(columns.first, -right), std::min(columns.end, target.width() - right)};
    rows = {std::max(rows.first, -down), std::min(rows.end, target.height() - down)};
    if (columns.is_empty() || rows.is_empty()) return;

    const auto row_bytes = static_cast<std::size_t>(columns.end - columns.first) * sizeof(Colour);
    const std::int64_t row_count = rows.end - rows.first;
    for (std::int64_t i = 0; i < row_count; ++i) {
        // Rows that move down are taken from the bottom up, so that none is overwritten before its turn.
        const std::int64_t from = down > 0 ? rows.end - 1 - i : rows.first + i;
        std::memmove(target.row(static_cast<int>(from + down)) + columns.first + right,
                     source.row(static_cast<int>(from)) + columns.first, row_bytes);
    }
}

void copy_picture(const Picture& source, Picture& target)
{
    copy_block(source, {0, 0, source.width(), source.height()}, target, 0, 0);
}

} // namespace tarvo

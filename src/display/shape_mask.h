#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo {

// Pixels, not rounded: (0, 0) is the middle of the first one.
struct PicturePoint {
    double x = 0;
    double y = 0;
};

// What one layer covers of the picture.
class ShapeMask {
public:
    enum Cover : std::uint8_t { none, filled, lined };

    ShapeMask(int width, int height)
        : width_(width), height_(height), cells_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
    }
    int width() const { return width_; }
    int height() const { return height_; }
    std::uint8_t* row(int y) { return cells_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_); }

    // Columns first <= x < end of a row; clipped.
    void cover(int y, std::int64_t first, std::int64_t end, Cover how)
    {
        if (y < 0 || y >= height_) return;
        first = std::max<std::int64_t>(first, 0);
        end = std::min<std::int64_t>(end, width_);
        for (std::int64_t x = first; x < end; ++x) row(y)[x] = std::max(row(y)[x], static_cast<std::uint8_t>(how));
    }
    void cover_square(int x, int y, int half_size)
    {
        for (int at = y - half_size; at <= y + half_size; ++at) {
            cover(at, std::int64_t{x} - half_size, std::int64_t{x} + half_size + 1, lined);
        }
    }

private:
    int width_;
    int height_;
    std::vector<std::uint8_t> cells_;
};

using Ring = std::vector<PicturePoint>; // without its first point once more at its end

template <class Visit>
void for_each_edge(const std::vector<Ring>& rings, const Visit& visit)
{
    for (const Ring& ring : rings) {
        for (std::size_t at = 0; at < ring.size(); ++at) visit(ring[at], ring[(at + 1) % ring.size()]);
    }
}

// A line of that many pixels across; one pixel in the middle for each step along its longer axis, both ends among them.
void cover_line(ShapeMask& mask, PicturePoint from, PicturePoint to, int width);

// The pixels whose middles lie inside of the rings by the even-odd rule. Returns early once stop is true.
void fill_polygon(ShapeMask& mask, const std::vector<Ring>& rings, const std::atomic<bool>& stop);

} // namespace tarvo

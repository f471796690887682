#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// Values at places, records 1 to count; the first element of each array is unused. A null in any of the three is no
// point.
struct GridPoints {
    const double* easting = nullptr;  // metres
    const double* northing = nullptr; // metres
    const double* values = nullptr;
    std::int32_t count = 0;
};

// A value for every cell of a rectangle; square cells, whose borders lie at whole multiples of their side.
struct FieldGrid {
    double x_min = 0; // metres: left border of the first column
    double y_max = 0; // metres: upper border of the first row
    double cell = 0;  // metres: side of a cell
    std::int32_t columns = 0;
    std::int32_t rows = 0;
    std::vector<double> values; // row after row from the north, each from the west; kNull where nothing is known

    bool is_empty() const { return values.empty(); }
};

struct GridSize {
    double cell = 0;        // metres; 0: one that suits the points
    double fill_radius = 0; // metres; 0: five cells

    bool operator==(const GridSize&) const = default;
};

struct Gridding {
    std::string refusal; // why there is no grid; empty when it was made
    FieldGrid grid;
};

// Each cell takes the median of the points in it; one without points the mean of those cells with points whose middles
// lie within the radius, weighted by the inverse of their distance. Throws std::bad_alloc.
// pause: called now and then, after at most some ten milliseconds' work, where it is given.
Gridding make_grid(std::span<const GridPoints> points, const GridSize& size,
                   const std::function<void()>& pause = nullptr);

// The grid as ESRI ASCII text, LF line ends, in pieces: the header first, then some rows at a time.
void write_esri_grid(const FieldGrid& grid, const std::function<void(std::string_view)>& sink);

} // namespace tarvo

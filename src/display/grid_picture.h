#pragma once

#include "display/picture.h"
#include "display/track_points.h"
#include "processing/gridding.h"
#include "text/numbers.h"

#include <vector>

namespace tarvo {

// A grid with a colour for every cell, as it lies under the track.
struct ColouredGrid {
    static constexpr Colour kNoColour = 0xFF000000; // of a cell without a value: what lies below stays

    double x_min = 0; // metres: left border of the first column
    double y_max = 0; // metres: upper border of the first row
    double cell = 1;  // metres
    std::int32_t columns = 0;
    std::int32_t rows = 0;
    std::vector<Colour> colours; // row after row from the north

    bool is_empty() const { return colours.empty(); }
};

// Gives each cell the colour of its value. colour_of: Colour (double value), asked for valid values alone.
template <class ColourOf>
ColouredGrid coloured_grid(const FieldGrid& grid, ColourOf colour_of)
{
    ColouredGrid coloured = {grid.x_min, grid.y_max, grid.cell, grid.columns, grid.rows, {}};
    coloured.colours.reserve(grid.values.size());
    for (const double value : grid.values) {
        coloured.colours.push_back(is_valid_sensor(value) ? colour_of(value) : ColouredGrid::kNoColour);
    }
    return coloured;
}

// Paints a part of a picture that shows what the transform says: each pixel takes the colour of the cell that its
// middle, which is where the track would draw a point, lies in.
void paint_grid(Picture& picture, const PixelRectangle& part, const PixelTransform& transform,
                const ColouredGrid& grid);

// What lies under the track of a scene, on a part of such a picture: the backdrop, and over it the grid.
void lay_ground(Picture& picture, const PixelRectangle& part, const PixelTransform& transform, const TrackScene& scene);
void lay_ground(Picture& picture, const PixelTransform& transform, const TrackScene& scene); // on all of it

} // namespace tarvo

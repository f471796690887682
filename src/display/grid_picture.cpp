#include "display/grid_picture.h"

#include "display/backdrop.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarvo {

namespace {

constexpr std::int32_t kOutside = -1;

std::int32_t cell_at(double metres, const ColouredGrid& grid, std::int32_t cells)
{
    const double cell = std::floor(metres / grid.cell);
    return cell >= 0 && cell < cells ? static_cast<std::int32_t>(cell) : kOutside;
}

} // namespace

void paint_grid(Picture& picture, const PixelRectangle& part, const PixelTransform& transform, const ColouredGrid& grid)
{
    if (grid.is_empty()) return;
    const double metres = 1 / (transform.scale * transform.zoom); // a pixel's side
    const int first_column = std::max(part.x, 0);
    const int end_column = std::min(part.x + part.width, picture.width());
    std::vector<std::int32_t> columns; // by pixel
    for (int x = first_column; x < end_column; ++x) {
        columns.push_back(cell_at(transform.x_min + x * metres - grid.x_min, grid, grid.columns));
    }
    const int end_row = std::min(part.y + part.height, picture.height());
    for (int y = std::max(part.y, 0); y < end_row; ++y) {
        const std::int32_t row = cell_at(grid.y_max - (transform.y_max - y * metres), grid, grid.rows);
        if (row == kOutside) continue;
        const Colour* const colours =
            grid.colours.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns);
        Colour* pixel = picture.row(y) + first_column;
        for (const std::int32_t column : columns) {
            if (column != kOutside && colours[column] != ColouredGrid::kNoColour) *pixel = colours[column];
            ++pixel;
        }
    }
}

void lay_ground(Picture& picture, const PixelRectangle& part, const PixelTransform& transform, const TrackScene& scene)
{
    if (scene.backdrop != nullptr) lay_backdrop(picture, part, transform, *scene.backdrop);
    if (scene.grid != nullptr) paint_grid(picture, part, transform, *scene.grid);
}

void lay_ground(Picture& picture, const PixelTransform& transform, const TrackScene& scene)
{
    lay_ground(picture, {0, 0, picture.width(), picture.height()}, transform, scene);
}

} // namespace tarvo

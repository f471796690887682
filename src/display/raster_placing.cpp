#include "display/raster_placing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tarvo {

namespace {

// Nodes along each side for a layer with a system of its own. Between the nodes of a view 100 km wide, lines that are
// straight in one system bend by less than a tenth of a metre in the other.
constexpr int kNodesOfOtherSystem = 65;

// Of one read. A view needs at most some four times its own pixels, unless the layer's system bends it out of shape.
constexpr std::int64_t kMostPixels = std::int64_t{1} << 26;

LayerPlace node_place(const RasterMesh& mesh, int column, int row)
{
    const WorldExtent& area = mesh.area;
    return {area.x_min + (area.x_max - area.x_min) * column / (mesh.columns - 1),
            area.y_max - (area.y_max - area.y_min) * row / (mesh.rows - 1)};
}

// Pixels of the whole raster per metre, along the rows and the columns of the mesh together, where it is known.
double raster_pixels_per_metre(const RasterMesh& mesh)
{
    double finest = 0;
    const double dx = (mesh.area.x_max - mesh.area.x_min) / (mesh.columns - 1);
    const double dy = (mesh.area.y_max - mesh.area.y_min) / (mesh.rows - 1);
    const int stride = std::max((mesh.columns - 1) / 4, 1); // some places tell enough of the scale
    for (int row = 0; row + 1 < mesh.rows; row += stride) {
        for (int column = 0; column + 1 < mesh.columns; column += stride) {
            const LayerPlace& at = mesh.node(column, row);
            const LayerPlace& right = mesh.node(column + 1, row);
            const LayerPlace& below = mesh.node(column, row + 1);
            const double turned = (right.x - at.x) * (below.y - at.y) - (right.y - at.y) * (below.x - at.x);
            const double density = std::sqrt(std::abs(turned) / (dx * dy));
            if (std::isfinite(density)) finest = std::max(finest, density);
        }
    }
    return finest;
}

struct PixelRange {
    double first = std::numeric_limits<double>::infinity();
    double last = -std::numeric_limits<double>::infinity();

    void take(double value)
    {
        first = std::min(first, value);
        last = std::max(last, value);
    }
};

// One axis of the block: whole steps of the level, counted from its first pixel, one to spare on each side for what is
// not quite linear between the nodes. False when it is empty.
bool set_block(int& begin, int& length, int step, int level_length, int whole_length, const PixelRange& needed)
{
    const double level_pixels = static_cast<double>(level_length) / whole_length;
    const double most = level_length;
    const double first = std::floor(needed.first * level_pixels / step) - 1;
    const double last = std::floor(needed.last * level_pixels / step) + 1;
    const double from = std::clamp(first * step, 0.0, most);
    const double to = std::clamp((last + 1) * step, 0.0, most);
    if (!(needed.last >= 0 && needed.first <= whole_length) || !(to > from)) return false;
    begin = static_cast<int>(from);
    length = static_cast<int>(to - from) / step * step; // what is left at the far edge is less than a pixel of the view
    return length > 0;
}

} // namespace

WorldExtent view_extent(const MapView& view)
{
    const double metres = 1 / pixels_per_metre(view.transform);
    const double x = view.transform.x_min - metres / 2;
    const double y = view.transform.y_max + metres / 2;
    return {x, x + view.width * metres, y - view.height * metres, y};
}

std::optional<RasterMesh> raster_mesh(const WorldExtent& area, const LayerFacts& facts, const BringIntoLayer& bring)
{
    const auto& [x0, x_column, x_row, y0, y_column, y_row] = facts.pixel_to_place;
    const double turned = x_column * y_row - x_row * y_column;
    if (!(std::abs(turned) > 0) || !std::isfinite(turned)) return std::nullopt;

    RasterMesh mesh;
    mesh.area = area;
    mesh.columns = mesh.rows = facts.has_system_of_own ? kNodesOfOtherSystem : 2;
    for (int row = 0; row < mesh.rows; ++row) {
        for (int column = 0; column < mesh.columns; ++column) mesh.nodes.push_back(node_place(mesh, column, row));
    }
    if (facts.has_system_of_own) bring(mesh.nodes);
    for (LayerPlace& node : mesh.nodes) {
        const double x = node.x - x0;
        const double y = node.y - y0;
        node = {(x * y_row - y * x_row) / turned, (y * x_column - x * y_column) / turned};
    }
    return mesh;
}

std::optional<RasterRead> needed_pixels(const RasterMesh& mesh, const LayerFacts& facts, double view_pixels_per_metre)
{
    if (facts.levels.empty() || facts.levels.front().width < 1 || facts.levels.front().height < 1) return std::nullopt;
    PixelRange columns;
    PixelRange rows;
    for (const LayerPlace& node : mesh.nodes) {
        if (!std::isfinite(node.x) || !std::isfinite(node.y)) continue;
        columns.take(node.x);
        rows.take(node.y);
    }
    const RasterLevel& whole = facts.levels.front();
    const double density = raster_pixels_per_metre(mesh) / view_pixels_per_metre; // raster pixels in one of the view
    if (!(density > 0)) return std::nullopt; // nowhere two nodes side by side that have a place in the layer
    RasterRead read;
    double reduction = 1;
    for (std::size_t level = 1; level < facts.levels.size(); ++level) {
        const double of_level = static_cast<double>(whole.width) / std::max(facts.levels[level].width, 1);
        if (of_level > density || of_level < reduction) continue;
        read.level = static_cast<int>(level);
        reduction = of_level;
    }
    const RasterLevel& level = facts.levels[static_cast<std::size_t>(read.level)];
    const int shorter = std::min(level.width, level.height);
    while (read.step <= shorter / 2 && 2 * read.step * reduction <= density) read.step *= 2;
    for (;; read.step *= 2) {
        if (!set_block(read.x, read.width, read.step, level.width, whole.width, columns) ||
            !set_block(read.y, read.height, read.step, level.height, whole.height, rows)) {
            return std::nullopt;
        }
        if (std::int64_t{columns_of(read)} * rows_of(read) <= kMostPixels) return read;
    }
}

ReadTransform read_transform(const RasterRead& read, const LayerFacts& facts)
{
    const RasterLevel& whole = facts.levels.front();
    const RasterLevel& level = facts.levels[static_cast<std::size_t>(read.level)];
    const double level_x = static_cast<double>(level.width) / whole.width;
    const double level_y = static_cast<double>(level.height) / whole.height;
    return {read.x / level_x, level_x / read.step, read.y / level_y, level_y / read.step};
}

} // namespace tarvo

#pragma once

#include "display/track_points.h"
#include "display/track_view.h"
#include "ports/layer_reader.h"

#include <functional>
#include <optional>
#include <vector>

namespace tarvo {

// A picture of a part of the survey's grid: pixel (x, y) stands for the place whose pixel_x and pixel_y they are.
struct MapView {
    PixelTransform transform;
    int width = 0; // pixels
    int height = 0;
};

inline double pixels_per_metre(const PixelTransform& transform)
{
    return transform.scale * transform.zoom;
}

// What a view's pixels cover, outer edges.
WorldExtent view_extent(const MapView& view);

// Pixels of a whole raster for places of a rectangle of the survey's grid, known at evenly spread nodes and linear
// between them. Column c of the raster covers c to c + 1.
struct RasterMesh {
    WorldExtent area;
    int columns = 0; // of nodes, at least 2, from x_min to x_max
    int rows = 0;    // from y_max down to y_min
    std::vector<LayerPlace> nodes;

    const LayerPlace& node(int column, int row) const
    {
        return nodes[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                     static_cast<std::size_t>(column)];
    }
};

// From places of the survey's grid to those of the layer's own system, in place; NaN: no such place.
using BringIntoLayer = std::function<void(std::span<LayerPlace>)>;

// nullopt when the raster's own place cannot be turned round: its pixels have no size.
std::optional<RasterMesh> raster_mesh(const WorldExtent& area, const LayerFacts& facts, const BringIntoLayer& bring);

// What to read of a raster for a view: the coarsest level whose pixels are no larger than the view's, every step-th
// pixel of it (step a power of two) where that still is so, and of these the block that the mesh needs. Blocks for
// views of one scale take the same pixels, wherever they begin. nullopt: nothing of the raster is in the view.
std::optional<RasterRead> needed_pixels(const RasterMesh& mesh, const LayerFacts& facts, double view_pixels_per_metre);

// The pixels that a read gives.
inline int columns_of(const RasterRead& read)
{
    return read.width / read.step;
}
inline int rows_of(const RasterRead& read)
{
    return read.height / read.step;
}

// From pixels of the whole raster to pixels that were read: column = (c - offset_x) * scale_x.
struct ReadTransform {
    double offset_x = 0;
    double scale_x = 1;
    double offset_y = 0;
    double scale_y = 1;
};
ReadTransform read_transform(const RasterRead& read, const LayerFacts& facts);

} // namespace tarvo

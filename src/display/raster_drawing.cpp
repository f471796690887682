#include "display/colour_mixing.h"
#include "display/layer_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tarvo {

namespace {

// The colour of a raster's or grid's pixel with its cover in the upper 8 bits; cover 0: nothing.
class RasterColours {
public:
    RasterColours(const RasterPixels& pixels, const RasterStyle& style)
        : pixels_(pixels), style_(style), cover_(cover_of(style.opacity))
    {
    }
    std::uint32_t at(std::size_t pixel) const
    {
        if (!pixels_.colours.empty()) {
            const std::uint32_t colour = pixels_.colours[pixel];
            const unsigned cover = mixed_part(colour >> 24, 0, cover_);
            return cover << 24 | (colour & 0xFFFFFF);
        }
        const double value = static_cast<double>(pixels_.values[pixel]);
        if (std::isnan(value) || style_.colours.empty()) return 0;
        const double share = std::clamp((value - style_.low) / (style_.high - style_.low), 0.0, 1.0);
        const auto last = static_cast<double>(style_.colours.size() - 1);
        return cover_ << 24 | style_.colours[static_cast<std::size_t>(std::nearbyint(share * last))];
    }

private:
    const RasterPixels& pixels_;
    const RasterStyle& style_;
    unsigned cover_;
};

LayerPlace between(const LayerPlace& from, const LayerPlace& to, double share)
{
    return {from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share};
}

// Where a coordinate stands among evenly spread nodes.
struct MeshStep {
    int node = -1; // -1: outside
    double share = 0;
};
MeshStep mesh_step(double from_first, double length, int nodes)
{
    const double at = from_first / length * (nodes - 1);
    if (!(at >= 0 && at <= nodes - 1)) return {};
    const int node = std::min(static_cast<int>(at), nodes - 2);
    return {node, at - node};
}

} // namespace

void draw_raster(Picture& picture, const PixelTransform& transform, const PlacedRaster& raster,
                 const RasterStyle& style)
{
    const RasterMesh& mesh = raster.mesh;
    const ReadTransform& read = raster.transform;
    const int columns = columns_of(raster.read);
    const int rows = rows_of(raster.read);
    const RasterColours colours(raster.pixels, style);
    const double metres = 1 / pixels_per_metre(transform);
    const double width = mesh.area.x_max - mesh.area.x_min;
    const double height = mesh.area.y_max - mesh.area.y_min;

    std::vector<MeshStep> steps;
    steps.reserve(static_cast<std::size_t>(picture.width()));
    for (int x = 0; x < picture.width(); ++x) {
        steps.push_back(mesh_step(transform.x_min + x * metres - mesh.area.x_min, width, mesh.columns));
    }
    std::vector<LayerPlace> line(static_cast<std::size_t>(mesh.columns)); // the mesh's nodes at a row of the picture
    for (int y = 0; y < picture.height(); ++y) {
        const MeshStep down = mesh_step(mesh.area.y_max - (transform.y_max - y * metres), height, mesh.rows);
        if (down.node < 0) continue;
        for (int column = 0; column < mesh.columns; ++column) {
            const LayerPlace at = between(mesh.node(column, down.node), mesh.node(column, down.node + 1), down.share);
            line[static_cast<std::size_t>(column)] = {(at.x - read.offset_x) * read.scale_x,
                                                      (at.y - read.offset_y) * read.scale_y};
        }
        Colour* const row = picture.row(y);
        for (int x = 0; x < picture.width(); ++x) {
            const MeshStep& step = steps[static_cast<std::size_t>(x)];
            if (step.node < 0) continue;
            const auto node = static_cast<std::size_t>(step.node);
            const LayerPlace at = between(line[node], line[node + 1], step.share);
            if (!(at.x >= 0 && at.x < columns && at.y >= 0 && at.y < rows)) continue; // nor what is no place
            const std::uint32_t colour = colours.at(static_cast<std::size_t>(at.y) * static_cast<std::size_t>(columns) +
                                                    static_cast<std::size_t>(at.x));
            if (colour >> 24 != 0) row[x] = mixed(colour & 0xFFFFFF, row[x], colour >> 24);
        }
    }
}

} // namespace tarvo

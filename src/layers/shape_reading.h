#pragma once

#include "layers/coordinate_systems.h"

#include <ogr_geometry.h>

namespace tarvo {

// Puts the shapes of features together, in the survey's grid.
class ShapeCollector {
public:
    // The way of the next features' places, and the part of the file that they belong to.
    void begin_part(const LayerSystem& system, const std::string& name);

    // Throws std::runtime_error when the shapes have become too many to be held.
    void add(const OGRGeometry& geometry, const std::string& label);

    LayerShapes take();

private:
    void add_points(const OGRGeometry& geometry);
    void add_line(const OGRSimpleCurve& line);
    void add_polygon(const OGRPolygon& polygon);
    void add_path(std::span<const LayerPlace> places);
    void end_shape(ShapeKind kind, std::uint32_t first_path);
    std::vector<LayerPlace> placed(std::vector<LayerPlace> places) const;

    LayerShapes shapes_;
    const LayerSystem* system_ = nullptr;
    std::uint32_t part_ = 0;
    std::uint32_t label_ = 0;
};

} // namespace tarvo

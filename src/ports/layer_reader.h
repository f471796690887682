#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

// What lies under the track, as a reader of layer files hands it to the core.

// A place: metres of the survey's grid, or units of a layer's own coordinate system. NaN: no place.
struct LayerPlace {
    double x = std::numeric_limits<double>::quiet_NaN();
    double y = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const LayerPlace&) const = default;
};

// A rectangle of the survey's grid, metres. Empty where a limit is above its other one.
struct LayerExtent {
    double x_min = std::numeric_limits<double>::infinity();
    double x_max = -std::numeric_limits<double>::infinity();
    double y_min = std::numeric_limits<double>::infinity();
    double y_max = -std::numeric_limits<double>::infinity();

    bool is_empty() const { return !(x_max >= x_min && y_max >= y_min); }
    bool operator==(const LayerExtent&) const = default;
};

enum class LayerKind {
    raster, // coloured pixels
    grid,   // one value for each pixel
    shapes  // points, lines, polygons
};

// The whole of a raster, or a reduced copy of it that the file holds beside it.
struct RasterLevel {
    int width = 0; // pixels
    int height = 0;

    bool operator==(const RasterLevel&) const = default;
};

// What is known of a layer once its file is open.
struct LayerFacts {
    LayerKind kind = LayerKind::raster;
    std::string format;              // "GeoTIFF"
    std::vector<std::string> notes;  // what the operator is to know, such as that it has no coordinate system
    LayerExtent extent;              // of what can be placed
    bool has_system_of_own = false;  // its places differ from the survey's grid: see LayerSource::bring_into_layer
    std::vector<RasterLevel> levels; // of rasters and grids: the whole first, then its reductions, finest first
    // From pixels of the whole raster (column c covers c to c + 1) to places of the layer's own system:
    // x = [0] + [1] column + [2] row, y = [3] + [4] column + [5] row.
    std::array<double, 6> pixel_to_place = {0, 1, 0, 0, 0, -1};
    double low = 0; // the 2nd and the 98th percentile of a grid's values
    double high = 1;
    std::vector<std::string> fields; // of shapes: the names of what can letter them
    std::string field;               // the one to begin with; empty: none
};

// A block of a raster's pixels: from (x, y) of a level, every step-th pixel of every step-th row.
struct RasterRead {
    int level = 0;
    int x = 0; // pixels of the level, the block's outer corner
    int y = 0;
    int width = 0; // pixels of the block
    int height = 0;
    int step = 1;

    bool operator==(const RasterRead&) const = default;
};

// The pixels of such a block, row after row.
struct RasterPixels {
    std::vector<std::uint32_t> colours; // of rasters: 0xAARRGGBB, AA the share that covers, 0 to 255
    std::vector<float> values;          // of grids; NaN: none
};

enum class ShapeKind : std::uint8_t { point, line, polygon };

// A point or points, a line or lines, or a polygon whose further paths are holes or islands of it.
struct LayerShape {
    ShapeKind kind = ShapeKind::point;
    std::uint32_t part = 0;       // of LayerShapes
    std::uint32_t first_path = 0; // of LayerShapes
    std::uint32_t path_count = 0;
    std::uint32_t label = 0; // of LayerShapes
};

struct LayerShapes {
    std::vector<std::string> parts;         // the layers that the file itself holds
    std::vector<LayerPlace> places;         // survey's grid, of all paths, one path behind the other; all are finite
    std::vector<std::size_t> path_ends;     // one past the last place of each path
    std::vector<LayerShape> shapes;         // in the order in which they are drawn
    std::vector<std::string> labels = {{}}; // UTF-8; element 0: none
    std::size_t shapes_without_a_place = 0; // left out: at infinity, or outside of what the survey's grid can hold
    LayerExtent extent;
};

// An open file of layers. Used by one thread at a time, which may be another one than that which opened it. Every call
// throws std::runtime_error with the reason when the file cannot give what is asked for, and LayerReadingStopped soon
// after the flag that it was given has become true.
class LayerSource {
public:
    virtual ~LayerSource() = default;
    virtual const LayerFacts& facts() const = 0;
    // From the survey's grid to the layer's own system; a place that has none there becomes NaN.
    virtual void bring_into_layer(std::span<LayerPlace> places) = 0;
    virtual RasterPixels read_pixels(const RasterRead& read, const std::atomic<bool>& stop) = 0;
    // label_field: of the facts' fields; empty: no labels.
    virtual LayerShapes read_shapes(const std::string& label_field, const std::atomic<bool>& stop) = 0;
};

struct LayerReadingStopped {};

// Opens files of layers. It may be called from several threads at once.
class LayerReader {
public:
    virtual ~LayerReader() = default;
    // survey_grid: the coordinate system of the survey as grid_code gives it; empty: not known. Throws as above.
    virtual std::unique_ptr<LayerSource> open(const std::string& path, const std::string& survey_grid,
                                              const std::atomic<bool>& stop) = 0;
};

} // namespace tarvo

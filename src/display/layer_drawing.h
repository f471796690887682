#pragma once

#include "display/picture.h"
#include "display/raster_placing.h"
#include "ports/layer_reader.h"

#include <atomic>
#include <span>
#include <vector>

namespace tarvo {

// Background layers, drawn over what a picture shows. Opacities are 0 to 1.

struct RasterStyle {
    double opacity = 1;
    double low = 0; // of a grid: the value of the first colour
    double high = 1;
    std::span<const Colour> colours; // of a grid, from low to high, evenly spread; values beyond take the end colours
};

// What was read of a raster, and where it lies.
struct PlacedRaster {
    RasterMesh mesh;
    RasterRead read;
    ReadTransform transform;
    RasterPixels pixels;
};

// Each pixel of the picture takes the raster's pixel in which its middle lies. What the mesh does not cover stays.
void draw_raster(Picture& picture, const PixelTransform& transform, const PlacedRaster& raster,
                 const RasterStyle& style);

struct ShapeStyle {
    double opacity = 1;
    Colour colour = kWhite;
    int width = 1;                  // of lines and outlines, pixels
    int letter_scale = 1;           // pixels of the picture per pixel of a letter
    std::vector<char> hidden_parts; // by part: not 0 hides it; shorter than the parts: the rest is shown
};

// Lines and outlines as wide as the style says, polygons filled with a quarter of their opacity by the even-odd rule:
// holes stay open, and so does what a polygon that crosses itself covers twice. A place is the pixel that the track
// would draw there. Within one layer nothing is laid on twice, however often shapes overlap. Labels stand where there
// is room for them. Returns early once stop is true.
void draw_shapes(Picture& picture, const PixelTransform& transform, const LayerShapes& shapes, const ShapeStyle& style,
                 const std::atomic<bool>& stop);

} // namespace tarvo

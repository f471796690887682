#pragma once

#include "display/backdrop.h"
#include "display/layer_drawing.h"
#include "ports/layer_reader.h"
#include "survey/layer_list.h"

#include <atomic>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

// Reading and drawing of layers, step by step, on whichever thread. Faults are std::runtime_error with the reason, or
// LayerReadingStopped.

// A layer whose file is open; shapes are read as a whole.
struct OpenLayer {
    std::unique_ptr<LayerSource> source;
    LayerFacts facts;
    std::string label_field;                   // that the shapes are lettered by
    std::shared_ptr<const LayerShapes> shapes; // of LayerKind::shapes
};

// survey_grid: as the definitions name it. A layer that is new in the list takes its format's own label field.
enum class LayerIs { in_the_list, new_in_the_list };
OpenLayer open_layer(LayerReader& reader, const LayerRecord& record, const std::string& survey_grid, LayerIs is,
                     const std::atomic<bool>& stop);

// What the source has for a view; null: nothing of it lies there.
std::shared_ptr<const PlacedRaster> read_raster(LayerSource& source, const MapView& view,
                                                const std::atomic<bool>& stop);

// The colour maps of grids, by their names.
std::vector<std::string> layer_map_names();

// One layer as it is drawn. Either shapes or a raster; neither draws nothing.
struct LayerDrawing {
    LayerRecord record;
    double low = 0; // of a grid whose record has no range
    double high = 1;
    std::shared_ptr<const LayerShapes> shapes;
    std::shared_ptr<const PlacedRaster> raster;
};

// The visible ones on black, the first lowest. letter_scale: pixels per pixel of a letter.
Backdrop draw_backdrop(const MapView& view, std::span<const LayerDrawing> layers, int letter_scale,
                       const std::atomic<bool>& stop);

// How far a layer's extent is from the survey's, metres; 0 where they meet.
double distance_between(const LayerExtent& layer, const WorldExtent& survey);

// "It lies 12.3 km from the survey"; empty for one that meets it.
std::string distance_text(const LayerExtent& layer, const WorldExtent& survey);

// A view that shows a layer: its middle, and the zoom that a picture of this frame needs for the whole of it, never
// below that of the survey.
struct LayerZoom {
    double centre_x = 0;
    double centre_y = 0;
    double zoom = 1;
};
LayerZoom zoom_to_layer(const LayerExtent& layer, const WorldExtent& survey);

} // namespace tarvo

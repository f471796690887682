#include "survey/layer_work.h"

#include "display/colour_scale.h"
#include "text/grid_code.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

std::vector<Colour> map_colours(const std::string& name)
{
    const ColourScale scale = {0.0, kColourMapEntries - 1.0, &colour_map(name)};
    std::vector<Colour> colours;
    for (std::size_t entry = 0; entry < kColourMapEntries; ++entry) {
        colours.push_back(value_colour(static_cast<double>(entry), scale));
    }
    return colours;
}

// The hidden parts of a record, by the numbers that the file's parts have.
std::vector<char> hidden_parts(const LayerRecord& record, const LayerShapes& shapes)
{
    std::vector<char> hidden;
    for (const std::string& part : shapes.parts) {
        const auto& names = record.hidden_parts;
        hidden.push_back(std::find(names.begin(), names.end(), part) != names.end() ? 1 : 0);
    }
    return hidden;
}

void draw_layer(Picture& picture, const PixelTransform& transform, const LayerDrawing& layer, int letter_scale,
                const std::atomic<bool>& stop)
{
    const LayerRecord& record = layer.record;
    if (layer.raster != nullptr) {
        const std::vector<Colour> colours = map_colours(record.map);
        const LayerRange range = record.range.value_or(LayerRange{layer.low, layer.high});
        draw_raster(picture, transform, *layer.raster, {record.opacity, range.low, range.high, colours});
    }
    if (layer.shapes != nullptr) {
        draw_shapes(picture, transform, *layer.shapes,
                    {record.opacity, record.colour, record.width, letter_scale, hidden_parts(record, *layer.shapes)},
                    stop);
    }
}

// Of two intervals; 0 where they meet.
double gap(double one_min, double one_max, double other_min, double other_max)
{
    return std::max({0.0, other_min - one_max, one_min - other_max});
}

} // namespace

OpenLayer open_layer(LayerReader& reader, const LayerRecord& record, const std::string& survey_grid, LayerIs is,
                     const std::atomic<bool>& stop)
{
    OpenLayer layer;
    layer.source = reader.open(record.path, grid_code(trimmed(survey_grid)), stop);
    layer.facts = layer.source->facts();
    layer.label_field = is == LayerIs::new_in_the_list ? layer.facts.field : record.label;
    if (layer.facts.kind == LayerKind::shapes) {
        layer.shapes = std::make_shared<LayerShapes>(layer.source->read_shapes(layer.label_field, stop));
        layer.facts.extent = layer.shapes->extent;
        if (layer.shapes->shapes.empty()) layer.facts.notes.emplace_back("it holds no shapes that can be placed");
    }
    return layer;
}

std::vector<std::string> layer_map_names()
{
    return {"grey", "survey"};
}

std::shared_ptr<const PlacedRaster> read_raster(LayerSource& source, const MapView& view, const std::atomic<bool>& stop)
{
    const LayerFacts& facts = source.facts();
    if (facts.kind == LayerKind::shapes) return nullptr;
    std::optional<RasterMesh> mesh = raster_mesh(
        view_extent(view), facts, [&source](std::span<LayerPlace> places) { source.bring_into_layer(places); });
    if (!mesh) return nullptr;
    const std::optional<RasterRead> read = needed_pixels(*mesh, facts, pixels_per_metre(view.transform));
    if (!read) return nullptr;
    return std::make_shared<PlacedRaster>(
        PlacedRaster{std::move(*mesh), *read, read_transform(*read, facts), source.read_pixels(*read, stop)});
}

Backdrop draw_backdrop(const MapView& view, std::span<const LayerDrawing> layers, int letter_scale,
                       const std::atomic<bool>& stop)
{
    Backdrop backdrop = {Picture(view.width, view.height), view.transform};
    for (const LayerDrawing& layer : layers) {
        if (layer.record.visible && !stop) draw_layer(backdrop.picture, view.transform, layer, letter_scale, stop);
    }
    return backdrop;
}

double distance_between(const LayerExtent& layer, const WorldExtent& survey)
{
    return std::hypot(gap(layer.x_min, layer.x_max, survey.x_min, survey.x_max),
                      gap(layer.y_min, layer.y_max, survey.y_min, survey.y_max));
}

std::string distance_text(const LayerExtent& layer, const WorldExtent& survey)
{
    constexpr double kKilometre = 1000;
    if (layer.is_empty()) return {};
    const double distance = distance_between(layer, survey);
    if (!(distance > 0)) return {};
    return "it lies " +
           (distance < kKilometre ? format_fixed(distance, 0) + " m"
                                  : grouped_digits(format_fixed(distance / kKilometre, 1)) + " km") +
           " from the survey";
}

LayerZoom zoom_to_layer(const LayerExtent& layer, const WorldExtent& survey)
{
    constexpr double kMargin = 1.1;
    constexpr double kLeast = 1.01; // the least that keeps the middle where it is asked for
    constexpr double kMost = 100;
    LayerZoom zoom = {(layer.x_min + layer.x_max) / 2, (layer.y_min + layer.y_max) / 2, 1};
    if (layer.is_empty()) return zoom;
    const double share = std::max((layer.x_max - layer.x_min) / (survey.x_max - survey.x_min),
                                  (layer.y_max - layer.y_min) / (survey.y_max - survey.y_min));
    zoom.zoom = std::clamp(1 / std::max(share * kMargin, 1 / kMost), kLeast, kMost);
    return zoom;
}

} // namespace tarvo

#pragma once

#include "ports/layer_reader.h"

#include <ogr_spatialref.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// The survey's grid; none when its text is empty or not known.
struct SurveyGrid {
    std::string text;
    std::optional<OGRSpatialReference> system;
};
SurveyGrid survey_grid_of(const std::string& text);

// The way of places between a layer's own system and the survey's grid, in either direction, axes east and north.
// Without a system on either side, or with the same on both, places stay as they are.
class LayerSystem {
public:
    // layer: null for none. Throws std::runtime_error when there is no way between the two.
    LayerSystem(const OGRSpatialReference* layer, const SurveyGrid& survey);

    bool is_of_its_own() const { return to_survey_ != nullptr; }
    void bring_to_survey(std::span<LayerPlace> places) const; // NaN: a place that has no image
    void bring_to_layer(std::span<LayerPlace> places) const;
    std::optional<std::string> note() const { return note_; } // what is to be said of it

private:
    std::unique_ptr<OGRCoordinateTransformation> to_survey_;
    std::unique_ptr<OGRCoordinateTransformation> to_layer_;
    std::optional<std::string> note_;
};

} // namespace tarvo

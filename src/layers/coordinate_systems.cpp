#include "layers/coordinate_systems.h"

#include "layers/gdal_error.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace tarvo {

namespace {

constexpr double kFarthest = 1e12; // of a place that can be drawn; what is beyond is none

void bring(OGRCoordinateTransformation* way, std::span<LayerPlace> places)
{
    constexpr std::size_t kBlock = 1024;
    std::vector<double> x;
    std::vector<double> y;
    std::vector<int> done;
    for (std::size_t begin = 0; begin < places.size(); begin += kBlock) {
        const std::span<LayerPlace> block = places.subspan(begin, std::min(kBlock, places.size() - begin));
        x.clear();
        y.clear();
        for (const LayerPlace& place : block) {
            x.push_back(place.x);
            y.push_back(place.y);
        }
        done.assign(block.size(), way == nullptr ? TRUE : FALSE);
        if (way != nullptr) way->Transform(static_cast<int>(block.size()), x.data(), y.data(), nullptr, done.data());
        for (std::size_t at = 0; at < block.size(); ++at) {
            const bool is_place = done[at] != FALSE && std::abs(x[at]) <= kFarthest && std::abs(y[at]) <= kFarthest;
            block[at] = is_place ? LayerPlace{x[at], y[at]} : LayerPlace{};
        }
    }
}

bool has_places_on_earth(const OGRSpatialReference& system)
{
    return system.IsGeographic() != FALSE || system.IsProjected() != FALSE || system.IsCompound() != FALSE;
}

std::string name_of(const OGRSpatialReference& system)
{
    const char* const name = system.GetName();
    return name == nullptr ? "without a name" : name;
}

} // namespace

SurveyGrid survey_grid_of(const std::string& text)
{
    SurveyGrid grid = {text, std::nullopt};
    if (text.empty()) return grid;
    OGRSpatialReference system;
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    CPLStringList local_names; // neither a file's name nor an address is taken for a system
    local_names.SetNameValue("ALLOW_NETWORK_ACCESS", "NO");
    local_names.SetNameValue("ALLOW_FILE_ACCESS", "NO");
    if (system.SetFromUserInput(text.c_str(), local_names.List()) == OGRERR_NONE) grid.system = system;
    return grid;
}

LayerSystem::LayerSystem(const OGRSpatialReference* layer, const SurveyGrid& survey)
{
    if (layer == nullptr || layer->IsEmpty() || !has_places_on_earth(*layer)) {
        note_ = "it has no coordinate system: taken as lying in the survey's grid";
        return;
    }
    if (!survey.system) {
        note_ = survey.text.empty() ? "the survey's grid is not known: "
                                    : "the survey's grid \"" + survey.text + "\" is not known: ";
        *note_ += "taken as lying in it, though its own system is " + name_of(*layer);
        return;
    }
    OGRSpatialReference system(*layer);
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (system.IsSame(&*survey.system) != FALSE) return;
    to_survey_.reset(OGRCreateCoordinateTransformation(&system, &*survey.system));
    to_layer_.reset(OGRCreateCoordinateTransformation(&*survey.system, &system));
    if (to_survey_ == nullptr || to_layer_ == nullptr) {
        throw std::runtime_error("its coordinate system, " + name_of(system) +
                                 ", cannot be brought into the survey's grid: " + gdal_reason("no way is known"));
    }
}

void LayerSystem::bring_to_survey(std::span<LayerPlace> places) const
{
    bring(to_survey_.get(), places);
}

void LayerSystem::bring_to_layer(std::span<LayerPlace> places) const
{
    bring(to_layer_.get(), places);
}

} // namespace tarvo

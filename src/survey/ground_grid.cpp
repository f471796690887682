#include "survey/ground_grid.h"

#include "display/colour_scale.h"
#include "survey/displayed_quantity.h"

#include <stdexcept>
#include <utility>
#include <vector>

namespace tarvo {

namespace {

GridSize grid_size(const SurveyState& survey)
{
    return {survey.display_settings.grid_cell, survey.display_settings.grid_fill_radius};
}

// A sensor's values lie where the sensor was; without positions of its own, where the fish was. The speed has none.
std::vector<GridPoints> displayed_points(const SurveyState& survey)
{
    const SampleStore& store = survey.processing.store;
    const std::vector<const double*> columns = quantity_columns(survey, displayed_quantity(survey.display_settings));
    std::vector<GridPoints> points;
    for (std::size_t sensor = 1; sensor < store.sensors.size() && sensor < columns.size(); ++sensor) {
        const SensorRecords& records = store.sensors[sensor];
        if (columns[sensor] == nullptr) continue;
        points.push_back({records.position[1].data(), records.position[2].data(), columns[sensor], store.RecordCount});
    }
    return points;
}

void colour_grid(SurveyState& survey)
{
    const ColourScale scale = shown_colours(survey);
    survey.ground.coloured =
        coloured_grid(survey.ground.grid, [&scale](double value) { return value_colour(value, scale); });
}

} // namespace

void update_ground_grid(SurveyState& survey, const std::function<void()>& pause)
{
    survey.ground = GroundGrid();
    if (!survey.display_settings.show_grid) return;
    survey.ground.size = grid_size(survey);
    Gridding gridding = make_grid(displayed_points(survey), survey.ground.size, pause);
    survey.ground.grid = std::move(gridding.grid);
    survey.ground.refusal = std::move(gridding.refusal);
    colour_grid(survey);
}

void refresh_ground_grid(SurveyState& survey)
{
    const bool is_made = !survey.ground.grid.is_empty() && survey.ground.size == grid_size(survey);
    if (is_made && survey.display_settings.show_grid) {
        colour_grid(survey);
    } else {
        update_ground_grid(survey);
    }
}

void export_ground_grid(const SurveyState& survey, const std::function<void(std::string_view)>& sink)
{
    if (!survey.ground.grid.is_empty()) {
        write_esri_grid(survey.ground.grid, sink);
        return;
    }
    const Gridding gridding = make_grid(displayed_points(survey), grid_size(survey));
    if (!gridding.refusal.empty()) throw std::runtime_error(gridding.refusal);
    write_esri_grid(gridding.grid, sink);
}

} // namespace tarvo

#include "survey/survey_state.h"

#include "survey/displayed_quantity.h"

#include <algorithm>

namespace tarvo {

TrackScene track_scene(const SurveyState& survey)
{
    const SampleStore& store = survey.processing.store;
    TrackScene scene;
    scene.track = track_table(store);
    scene.quantity = &displayed_quantity(survey.display_settings);
    scene.sensor_values = quantity_columns(survey, *scene.quantity);
    scene.colours = shown_colours(survey);
    scene.sample_rate = static_cast<float>(1.0 / survey.processing.plan.SampleInterval);
    scene.settings = survey.display_settings;
    const std::vector<std::int32_t>& pick_records = survey.picks.pick_sample_index;
    const auto picks_in_use = static_cast<std::size_t>(survey.picks.number_of_picks) + 1;
    const std::size_t elements = std::min(picks_in_use, pick_records.size());
    scene.picks = {std::span(pick_records).first(elements), survey.current_pick,
                   std::span(survey.picks.pick_locations).first(elements), survey.pick_settings.PickTolerance};
    scene.symbol_scale = survey.track_image.symbol_scale;
    scene.backdrop = survey.backdrop;
    if (!survey.ground.coloured.is_empty()) scene.grid = &survey.ground.coloured;
    return scene;
}

std::string survey_grid_text(const SurveyState& survey)
{
    const std::optional<DataFormat>& format = survey.survey_definitions.data_format;
    return format ? format->survey_grid : std::string();
}

bool has_pick_list(const SurveyState& survey)
{
    return survey.processing.store.RecordCount >= 1 && survey.picks.number_of_picks >= 1;
}

std::vector<std::string> data_files_of(const SurveyState& survey)
{
    if (survey.data_file_name.empty()) return {};
    std::vector<std::string> files = {survey.data_file_name};
    files.insert(files.end(), survey.further_data_files.begin(), survey.further_data_files.end());
    return files;
}

IndexedTrack indexed_track(const SurveyState& survey)
{
    return {track_table(survey.processing.store), survey.track_index};
}

} // namespace tarvo

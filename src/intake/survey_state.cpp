#include "intake/survey_state.h"

namespace tarvo {

TrackScene track_scene(const SurveyState& survey)
{
    const SampleStore& store = survey.processing.store;
    TrackScene scene;
    scene.track = track_table(store);
    if (store.number_of_sensors() >= 1 && store.gradient_records >= store.RecordCount) {
        scene.display_values = store.sensors[1].gradients[0].data();
    }
    scene.sample_rate = static_cast<float>(1.0 / survey.processing.plan.SampleInterval);
    scene.settings = survey.display_settings;
    scene.picks = {survey.picks.pick_sample_index, survey.current_pick};
    return scene;
}

} // namespace tarvo

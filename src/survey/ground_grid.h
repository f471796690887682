#pragma once

#include "survey/survey_state.h"

#include <functional>
#include <string_view>

namespace tarvo {

// The grid of the displayed quantity, which lies under the track while survey.display_settings.show_grid is on.

// Makes the grid anew of the stored records, or takes it away. It stays empty where there is nothing to make it of, and
// survey.ground.refusal then says why.
void update_ground_grid(SurveyState& survey, const std::function<void()>& pause = nullptr);

// After a change of display settings: makes or colours it anew, whatever they ask for.
void refresh_ground_grid(SurveyState& survey);

// Writes the grid as it is shown; without one, as it would be. Throws std::runtime_error with the reason when there is
// nothing to write.
void export_ground_grid(const SurveyState& survey, const std::function<void(std::string_view)>& sink);

} // namespace tarvo

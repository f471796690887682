#pragma once

#include "survey/survey_state.h"

#include <string>

namespace tarvo {

// What leads on from a track picture with nothing in it.
enum class TrackStep { none, open_file, define_columns, load, list_rejected };

struct EmptyTrack {
    TrackStep step = TrackStep::none; // none: there is a track to be seen
    std::string text;                 // what is missing

    bool operator==(const EmptyTrack&) const = default;
};

EmptyTrack empty_track(const SurveyState& survey);

} // namespace tarvo

#pragma once

#include "survey/survey_state.h"

#include <functional>
#include <string>
#include <vector>

namespace tarvo {

// The residual costs memory and time of its own, so a run makes it only for somebody: a setting of it, a base station,
// or whoever has set survey.wants_residual.
bool is_residual_wanted(const SurveyState& survey);

// Of every stored record.
inline bool has_residual(const SurveyState& survey)
{
    return survey.residual.records > 0 && survey.residual.records >= survey.processing.store.RecordCount;
}

// The base station in use; nullptr: none.
const BaseStation* base_station(const SurveyState& survey);

// Makes the residual of the stored records anew, wanted or not. Returns why it was refused, in which case nothing has
// changed; empty when it is done.
std::string update_residual(SurveyState& survey, const std::function<void()>& pause = nullptr);

// After a run, and after a change of its parameters: makes the residual anew when it is wanted. What comes back is for
// the operator: why there is none now, or what to know of it.
std::vector<std::string> finish_residual(SurveyState& survey, const std::function<void()>& pause = nullptr);

// In a run: of the records that the newest one completes, when it is wanted.
void follow_residual(SurveyState& survey);

// Why other parameters of the residual (SpikeFilter, ResidualWindow) do not suit the stored records; empty when they
// do, and for parameters that are those of the survey.
std::string residual_objection(const SurveyState& survey, const ProcessingParameters& wanted);

// Puts a base station to use, or none. Returns why it does not suit the stored records, in which case nothing has
// changed.
std::string take_base_station(SurveyState& survey, std::optional<BaseStation> base);

// What of the residual its reader should know, one sentence each: readings left out as spikes, a window without an
// altitude, a field that is not in nanotesla.
std::vector<std::string> residual_notes(const SurveyState& survey);

} // namespace tarvo

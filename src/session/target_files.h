#pragma once

#include "picks/pick_remarks.h"
#include "ports/projection.h"
#include "survey/survey_state.h"
#include "targets/earth_field.h"
#include "targets/fit_survey.h"
#include "targets/group_fit.h"
#include "targets/proposals.h"

#include <span>
#include <string>

namespace tarvo {

// The picks of a survey with their fits, as the files about targets are written from them.
struct TargetResults {
    const FitSurvey& survey;
    const EarthField& field;
    const Projection* grid = nullptr; // nullptr: without a survey grid
    const PickRemarks& remarks;
    std::span<const FitPlace> places; // by pick, and so are the fits
    std::span<const DipoleFit> fits;
    const ProposalList* proposals = nullptr; // that nobody has judged; nullptr: none were searched for
};

// CSV, GeoJSON or KML by the extension of the file's name. Throws std::runtime_error for what needs places that are not
// known.
std::string target_list_text(const std::string& file_name, const SurveyState& survey, const TargetResults& results);

// The report, from the survey as it stands: a window and a program without one give the same bytes. The residual is on
// its map where it has been made.
std::string survey_report_text(const SurveyState& survey, const TargetResults& results);

} // namespace tarvo

#pragma once

#include "picks/pick_list.h"
#include "targets/fit_survey.h"
#include "targets/group_fit.h"
#include "targets/proposals.h"

#include <span>
#include <string>
#include <vector>

namespace tarvo {

// The places of all picks of a list, in its order.
std::vector<FitPlace> places_of_picks(const PickList& picks);

// The names of the columns of a fit, from the first behind the place fitted at.
extern const char* const kFitColumns;

// A fit's fields for those columns: metres with four decimals, heights as the survey's vertical numbers and empty where
// it has none, flags joined by ";"; without numbers the reason stands among the flags. further_flag: empty for none.
std::string fit_fields(const DipoleFit& fit, const FitSurvey& survey, const std::string& further_flag = {});

// The fits of all picks as CSV, lines ended by LF. fits: in the order of the picks.
std::string fit_csv_text(const PickList& picks, std::span<const DipoleFit> fits, const FitSurvey& survey);

// Proposals in the same form with their peak (nT) and kind ("dipole", "no dipole"), dipoles first.
std::string proposal_csv_text(const ProposalList& proposals, const FitSurvey& survey);

} // namespace tarvo

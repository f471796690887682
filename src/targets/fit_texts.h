#pragma once

#include "targets/dipole_fit.h"
#include "targets/fit_survey.h"

#include <string>
#include <vector>

namespace tarvo {

// A fit as people read it.

// What is to be read before the numbers, one sentence each: flags with their reasons, what the fit leaves unexplained;
// of a fit without numbers, why.
std::vector<std::string> fit_cautions(const DipoleFit& fit);

struct FitNumber {
    std::string name;
    std::string value; // with its unit
};

// The numbers of a fit, none where it has none. With an unknown side the slant range comes first and both places stand.
std::vector<FitNumber> fit_numbers(const DipoleFit& fit, const FitSurvey& survey);

// One line for a list: "1.3 m below seabed, 72 A m2", the flags, or that there is no fit.
std::string fit_summary(const DipoleFit& fit);

} // namespace tarvo

#pragma once

#include "targets/fit_curves.h"
#include "targets/fit_survey.h"
#include "targets/proposals.h"
#include "targets/target_list.h"

#include <span>
#include <string>
#include <vector>

namespace tarvo {

// A row of one of the report's tables.
struct ReportFact {
    std::string name;
    std::string value;
};

// What a report says beside its targets.
struct ReportFrame {
    std::string title;
    std::vector<ReportFact> survey;
    std::vector<ReportFact> settings;
    std::string earth_field; // its direction and how it is known
    std::string map;         // SVG; empty: nothing has a place
};

// What a report is made from.
struct ReportScene {
    const FitSurvey& survey;
    std::span<const Target> targets; // in the order of the fitted ones
    FittedTargets fitted;
    const ProposalList* proposals = nullptr; // places that nobody has judged yet; nullptr: none were searched for
};

// "Line 7", as the survey numbers it. line: from 1.
std::string survey_line_name(const SurveyLines& lines, std::int32_t line);

// One HTML file that needs nothing from outside: the survey, its map, a table of the targets, the method, and for each
// target its pictures, cautions and numbers. The same survey gives the same bytes.
std::string target_report_text(const ReportFrame& frame, const ReportScene& scene);

} // namespace tarvo

#include "tools/process_targets.h"

#include "session/target_files.h"
#include "survey/survey_residual.h"
#include "survey/survey_targets.h"
#include "targets/fit_export.h"
#include "targets/group_fit.h"
#include "targets/proposals.h"
#include "text/replace_file.h"
#include "tools/common/projections_module.h"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

namespace {

// Runs one part of the work: says what failed, if it did.
bool done(const char* what, Operator& op, const std::function<void()>& work)
{
    try {
        work();
        return true;
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while writing the ") + what + ": " + fault.what());
        return false;
    }
}

} // namespace

bool wants_targets(const TargetFiles& files)
{
    return !files.fits.empty() || !files.proposals.empty() || !files.list.empty() || !files.report.empty();
}

bool write_targets(SurveyState& survey, const TargetFiles& files, Operator& op)
{
    if (!wants_targets(files)) return true;
    std::string fault;
    const std::unique_ptr<Projection> grid = survey_grid(survey.survey_definitions, LoadedProjections(), fault);
    if (!fault.empty()) op.show_message(fault);
    const FitSurvey fitted = fit_survey(survey);
    const EarthField field = earth_field_of(survey, fitted, grid.get());
    if (field.is_assumed) op.show_message("The Earth's field is " + field.source);

    bool all_done = fault.empty();
    const std::vector<FitPlace> places = places_of_picks(survey.picks);
    PickRemarks remarks;
    std::vector<DipoleFit> fits;
    std::optional<ProposalList> proposals;
    if (!files.list.empty() || !files.report.empty()) {
        all_done &= done("target list", op, [&] {
            remarks = read_pick_remarks(remarks_file_name_for(pick_file_name_for(survey.data_file_name)));
        });
    }
    if (!files.fits.empty() || !files.list.empty() || !files.report.empty()) {
        fits = fit_places(fitted, places, field.direction, {});
    }
    if (!files.fits.empty()) {
        all_done &= done("fits", op, [&] { replace_file(files.fits, fit_csv_text(survey.picks, fits, fitted)); });
    }
    if (!files.proposals.empty()) {
        all_done &= done("proposals", op, [&] {
            proposals = find_proposals(fitted, proposal_task(survey, field.direction), {});
            replace_file(files.proposals, proposal_csv_text(*proposals, fitted));
        });
    }
    const TargetResults results{fitted, field, grid.get(), remarks, places, fits, proposals ? &*proposals : nullptr};
    if (!files.list.empty()) {
        all_done &=
            done("target list", op, [&] { replace_file(files.list, target_list_text(files.list, survey, results)); });
    }
    if (!files.report.empty()) {
        if (!has_residual(survey)) update_residual(survey); // for its map; without one the map shows the track
        all_done &= done("report", op, [&] { replace_file(files.report, survey_report_text(survey, results)); });
    }
    return all_done;
}

} // namespace tarvo

#include "tools/process_targets.h"

#include "survey/survey_targets.h"
#include "targets/fit_export.h"
#include "targets/group_fit.h"
#include "targets/proposals.h"
#include "targets/target_list.h"
#include "text/replace_file.h"
#include "tools/common/projections_module.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
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

// By the extension of the file's name. Throws std::runtime_error for what needs places that are not known.
std::string list_text(const std::string& file_name, std::span<const Target> targets, const FitSurvey& survey,
                      const std::string& survey_name)
{
    if (file_name.ends_with(".csv")) return target_csv_text(targets, survey);
    const bool is_placed = targets.empty() || std::any_of(targets.begin(), targets.end(), [](const Target& target) {
                               return target.geographic.is_known();
                           });
    if (!is_placed) {
        throw std::runtime_error("longitudes and latitudes are not known: the definitions name no Survey Grid that is");
    }
    return file_name.ends_with(".kml") ? target_kml_text(targets, survey, survey_name)
                                       : target_geojson_text(targets, survey);
}

} // namespace

bool wants_targets(const TargetFiles& files)
{
    return !files.fits.empty() || !files.proposals.empty() || !files.list.empty();
}

bool write_targets(const SurveyState& survey, const TargetFiles& files, Operator& op)
{
    if (!wants_targets(files)) return true;
    std::string fault;
    const std::unique_ptr<Projection> grid = survey_grid(survey.survey_definitions, LoadedProjections(), fault);
    if (!fault.empty()) op.show_message(fault);
    const FitSurvey fitted = fit_survey(survey);
    const EarthField field = earth_field_of(survey, fitted, grid.get());
    if (field.is_assumed) op.show_message("The Earth's field is " + field.source);

    bool all_done = fault.empty();
    std::vector<DipoleFit> fits;
    if (!files.fits.empty() || !files.list.empty()) {
        fits = fit_places(fitted, places_of_picks(survey.picks), field.direction, {});
    }
    if (!files.fits.empty()) {
        all_done &= done("fits", op, [&] { replace_file(files.fits, fit_csv_text(survey.picks, fits, fitted)); });
    }
    if (!files.proposals.empty()) {
        all_done &= done("proposals", op, [&] {
            const ProposalList proposals = find_proposals(fitted, proposal_task(survey, field.direction), {});
            replace_file(files.proposals, proposal_csv_text(proposals, fitted));
        });
    }
    if (!files.list.empty()) {
        all_done &= done("target list", op, [&] {
            const PickRemarks remarks =
                read_pick_remarks(remarks_file_name_for(pick_file_name_for(survey.data_file_name)));
            const std::vector<Target> targets = target_list(survey.picks, remarks, fits, fitted, grid.get());
            replace_file(files.list, list_text(files.list, targets, fitted, survey.data_file_name));
        });
    }
    return all_done;
}

} // namespace tarvo

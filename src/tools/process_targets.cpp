#include "tools/process_targets.h"

#include "geo/proj_projections.h"
#include "survey/survey_targets.h"
#include "targets/fit_export.h"
#include "targets/group_fit.h"
#include "text/replace_file.h"

#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace tarvo {

bool wants_targets(const ProcessOptions& options)
{
    return !options.fits_file.empty();
}

bool write_targets(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    const FitSurvey fitted = fit_survey(survey);
    std::string fault;
    const std::unique_ptr<Projection> grid = survey_grid(survey.survey_definitions, ProjProjections(), fault);
    if (!fault.empty()) op.show_message(fault);
    const EarthField field = earth_field_of(survey, fitted, grid.get());
    if (field.is_assumed) op.show_message("The Earth's field is " + field.source);
    try {
        const std::vector<DipoleFit> fits = fit_places(fitted, places_of_picks(survey.picks), field.direction, {});
        replace_file(options.fits_file, fit_csv_text(survey.picks, fits, fitted));
        return true;
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while writing the fits: ") + fault.what());
        return false;
    }
}

} // namespace tarvo

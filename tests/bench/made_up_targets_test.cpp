#include "core_load.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "survey/survey_targets.h"
#include "survey_files.h"
#include "targets/fit_export.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvo {

// Twelve sources under each survey: the example's, and two more.
TEST(MadeUpTargets, FitsFindTheSources)
{
    for (const std::uint64_t seed : {2, 101, 102}) {
        const TestFolder folder;
        survey::SurveyFiles files;
        files.data_file = folder.path("survey.csv");
        files.plan.seed = seed;
        files.picks = survey::PickFile::written;
        survey::write_survey(files);
        CoreLoad load(files.data_file, nullptr, [](Settings& settings) {
            settings.parameters.LoggingSampleRate = 10;
            settings.parameters.CarryClosingSample = true;
            settings.target_settings.FieldInclination = 68.5;
            settings.target_settings.FieldDeclination = 3.5;
        });
        SurveyState& state = load.session.survey;
        read_pick_file(folder.path("survey_pick.dat"), state.picks, load.op);
        locate_pick_list_on_track(state.picks, state.track_index, track_table(state.processing.store), load.op);

        const FitSurvey fitted = fit_survey(state);
        const EarthField field = earth_field_of(state, fitted, nullptr);
        const auto fits = fit_places(fitted, places_of_picks(state.picks), field.direction, {});
        const std::vector<survey::Dipole> sources = survey::Survey(files.plan).sources();
        ASSERT_EQ(fits.size(), sources.size());
        for (std::size_t at = 0; at < fits.size(); ++at) {
            const survey::Dipole& source = sources[at];
            const GridVector place = {source.position.east, source.position.north, source.position.up};
            const GridVector off = fits[at].dipole.place - place;
            EXPECT_LT(plan_length(off), 0.15) << seed << ' ' << at;
            EXPECT_LT(std::abs(off.up), 0.2) << seed << ' ' << at;
            const double moment = survey::length(source.moment);
            EXPECT_NEAR(length(fits[at].dipole.moment), moment, 0.1 * moment) << seed << ' ' << at;
            EXPECT_FALSE(fits[at].is_doubtful()) << seed << ' ' << at;
        }
    }
}

} // namespace tarvo

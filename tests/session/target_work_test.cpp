#include "session/target_work.h"

#include "example_targets.h"
#include "session/proposal_review.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

namespace tarvo {
namespace {

void finish(TargetWork& work)
{
    work.look();
    while (work.is_working()) {
        work.take_results();
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // the fit needs the processor
    }
}

TEST(TargetWork, FitsAllPicksAsWritten)
{
    ExampleTargets example;
    TargetWork& work = example.load.session.targets;
    EXPECT_EQ(work.fit_of(1), nullptr);
    finish(work);
    const std::vector<DipoleFit> plain = fit_places(work.fit_survey(), work.places(), work.earth_field().direction, {});
    ASSERT_EQ(plain.size(), 12U);
    for (std::int32_t pick = 1; pick <= 12; ++pick) {
        ASSERT_NE(work.fit_of(pick), nullptr);
        EXPECT_EQ(work.fit_of(pick)->dipole.place, plain[static_cast<std::size_t>(pick - 1)].dipole.place) << pick;
    }
}

TEST(TargetWork, FitsAgainWhatHasChanged)
{
    ExampleTargets example;
    SurveyState& survey = example.survey;
    TargetWork& work = example.load.session.targets;
    finish(work);
    const DipoleFit usual = *work.fit_of(3);

    struct Case {
        const char* label;
        FitWishes wishes;
        bool has_fewer_readings;
    };
    const std::int32_t line = work.lines_near(3).front().number;
    const Case cases[] = {{"a line left out", {std::nullopt, {line}, {}}, true},
                          {"a sensor left out", {std::nullopt, {}, {2}}, true},
                          {"a smaller radius", {8.0, {}, {}}, true},
                          {"nothing", {}, false}};
    for (const Case& c : cases) {
        work.set_wishes(3, c.wishes);
        finish(work);
        EXPECT_EQ(work.fit_of(3)->readings < usual.readings, c.has_fewer_readings) << c.label;
        EXPECT_LT(length(work.fit_of(3)->dipole.place - usual.dipole.place), 0.2) << c.label;
    }
    EXPECT_EQ(work.lines_near(3).size(), static_cast<std::size_t>(usual.lines));

    survey.picks.pick_locations[3][1] += 0.7;
    finish(work);
    EXPECT_NE(work.fit_of(3)->readings, usual.readings); // those around another place

    survey.target_settings.FieldInclination = 10;
    finish(work);
    EXPECT_LT(work.fit_of(3)->r2, usual.r2);
    work.forget();
    EXPECT_EQ(work.fit_of(3), nullptr);
}

TEST(TargetWork, TakesAPlaceThatUndoGivesBack)
{
    ExampleTargets example;
    TestFolder folder; // the picks are written at once
    SurveyState& survey = example.survey;
    survey.picks.pick_file_name = folder.path("bay_pick.dat");
    finish(example.load.session.targets);
    const std::optional<GridVector> place = place_to_take(example.load.session.targets.fit_of(3));
    ASSERT_TRUE(place);
    const Pick before = pick_at(survey.picks, 3);
    PickWorkflow& work = example.load.session.pick_work;
    work.place_at(indexed_track(survey), 3, place->east, place->north);
    const Pick taken = pick_at(survey.picks, 3);
    EXPECT_EQ(taken.location[1], place->east);
    EXPECT_EQ(taken.location[2], place->north);
    EXPECT_EQ(taken.time, survey.processing.store.record_time[taken.sample_index]);
    EXPECT_EQ(work.controls().undo_caption, "Undo move of " + before.name);
    work.undo(indexed_track(survey));
    EXPECT_EQ(pick_at(survey.picks, 3).location, before.location);

    DipoleFit sides;
    sides.other_place = GridVector{};
    EXPECT_FALSE(place_to_take(&sides)); // either of two is none
}

TEST(ProposalReview, JudgementsCanBeUndone)
{
    ExampleTargets example;
    TestFolder folder;
    SurveyState& survey = example.survey;
    survey.picks.pick_file_name = folder.path("bay_pick.dat");
    PickWorkflow& work = example.load.session.pick_work;
    ProposalReview review(survey, work);
    ProposalList found;
    for (const std::int32_t record : {100, 200, 300}) {
        Proposal proposal;
        proposal.place.record = record;
        proposal.place.east = record;
        proposal.is_dipole = record < 300;
        (proposal.is_dipole ? found.dipoles : found.no_dipoles).push_back(proposal);
    }
    review.take_list(found);
    const IndexedTrack ground = indexed_track(survey);
    review.take(ground);
    EXPECT_EQ(survey.picks.number_of_picks, 13);
    EXPECT_EQ(pick_at(survey.picks, 13).sample_index, 100);
    EXPECT_EQ(review.list()[0].pick, pick_at(survey.picks, 13).name);
    EXPECT_EQ(review.current(), 1);
    review.refuse();
    EXPECT_EQ(review.task({}).refused.size(), 1U);
    EXPECT_EQ(review.open_ones().dipoles.size(), 0U);
    EXPECT_EQ(review.open_ones().no_dipoles.size(), 1U);
    review.go(-1);
    EXPECT_EQ(review.current(), 2); // nothing before it is open

    EXPECT_EQ(work.controls().undo_caption, "Undo refusal of proposal 2");
    work.undo(ground);
    EXPECT_TRUE(review.task({}).refused.empty());
    EXPECT_EQ(review.current(), 1);
    work.undo(ground);
    EXPECT_EQ(survey.picks.number_of_picks, 12);
    EXPECT_EQ(review.open_ones().dipoles.size(), 2U);
    EXPECT_FALSE(work.controls().undo_enabled);
}

} // namespace
} // namespace tarvo

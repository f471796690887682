#include "targets/dipole_fit.h"

#include "targets/group_fit.h"
#include "targets/made_up_readings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace tarvo {

namespace {

const Dipole kSource = {{1.3, -2.1, -0.4}, {20, -35, -60}};

DipoleFit fit_of(const FitTask& task)
{
    return fit_together({task}, {}).front();
}

bool has_doubt(const DipoleFit& fit, FitDoubt doubt)
{
    return std::find(fit.doubts.begin(), fit.doubts.end(), doubt) != fit.doubts.end();
}

} // namespace

TEST(DipoleFit, FindsASourceWithoutNoiseInAnyFrame)
{
    struct Case {
        const char* label;
        MadeUpLines lines;
    };
    const Case cases[] = {{"three lines", {}},
                          {"lines in reversed order", {.reversed = true}},
                          {"origin shifted by millions", {.shift = {6'428'060, 5'994'870, -312}}},
                          {"grid rotated", {.turned = 37}},
                          {"two sensors on one line", {.across = {0}, .sensors = 2}}};
    for (const Case& c : cases) {
        const DipoleFit fit = fit_of(task_over({kSource}, c.lines));
        ASSERT_TRUE(fit.is_fitted()) << c.label;
        const GridVector truth = turned_by(kSource.place, c.lines.turned) + c.lines.shift;
        EXPECT_LT(length(fit.dipole.place - truth), 0.001) << c.label;
        EXPECT_LT(length(fit.dipole.moment - turned_by(kSource.moment, c.lines.turned)), 0.072) << c.label; // 0.1 %
        EXPECT_NEAR(fit.below_seabed, 0.4, 0.001) << c.label;
        EXPECT_FALSE(fit.is_side_unknown()) << c.label;
        EXPECT_FALSE(fit.is_doubtful()) << c.label;
    }
}

TEST(DipoleFit, OnePassOfOneSensorKnowsTheRangeAndNotTheSide)
{
    const DipoleFit fit = fit_of(task_over({kSource}, {.across = {0}}));
    ASSERT_TRUE(fit.is_side_unknown());
    const double range = std::hypot(2.1, 5.4); // across the pass; a reading is at most 0.125 m from abeam
    EXPECT_NEAR(fit.slant_range, range, 0.01);
    EXPECT_NEAR(fit.dipole.place.north, -fit.other_place->north, 0.05);
    EXPECT_GE(fit.error.north, std::abs(fit.dipole.place.north - kSource.place.north));
}

TEST(DipoleFit, TooFewReadingsGiveASentence)
{
    struct Case {
        const char* label;
        int lines;
        double reach;
        const char* refusal;
    };
    const Case cases[] = {
        {"none", 0, 15, "There is no valid reading near the pick."},
        {"29 readings", 1, 3.5, "Only 29 readings lie near the pick: a fit needs 30."},
        {"a track of 7 m at an altitude of 5 m", 2, 3.5, "Only 7.0 m of track lie near the pick: a fit needs 7.5 m."},
        {"8 m", 2, 4, ""}};
    for (const Case& c : cases) {
        MadeUpLines lines;
        lines.reach = c.reach;
        lines.across.clear();
        if (c.lines == 1) lines.across = {0};
        if (c.lines == 2) lines.across = {-6, 6};
        EXPECT_EQ(fit_of(task_over({kSource}, lines)).refusal, c.refusal) << c.label;
    }
}

TEST(DipoleFit, SaysWhatIsDoubtful)
{
    const Dipole deep = {{0, 0, -14}, {0, 0, -20'000}};
    EXPECT_TRUE(has_doubt(fit_of(task_over({deep}, {})), FitDoubt::at_bound)); // two altitudes below the ground
    EXPECT_TRUE(has_doubt(fit_of(task_over({kSource}, {}, {9, 0, 0})), FitDoubt::far_from_pick));
    FitTask noise = task_over({}, {});
    for (std::size_t reading = 0; reading < noise.readings.count(); ++reading) {
        noise.readings.field[reading] += std::sin(static_cast<double>(reading * reading));
    }
    EXPECT_TRUE(has_doubt(fit_of(noise), FitDoubt::poor_match));
}

TEST(DipoleFit, TellsOfASourceBesideTheFittedOne)
{
    const Dipole neighbour = {{11, 4, -0.5}, {0, 10, -25}};
    const DipoleFit fit = fit_of(task_over({kSource, neighbour}, {}));
    ASSERT_TRUE(fit.misfit);
    EXPECT_LT(plan_length(fit.misfit->place - neighbour.place), 6);
    EXPECT_FALSE(fit_of(task_over({kSource}, {})).misfit);
}

// What a sample averaged over 2 m of track says is not the field in its middle.
TEST(DipoleFit, AveragesTheModelOverTheWayOfASample)
{
    const SampleWay way = sample_way(10, 0.2);
    EXPECT_NEAR(2 * way.weight * way.seconds * way.seconds, 0.33, 1e-12); // (10 x 10 - 1) / 12 x 0.2 x 0.2
    EXPECT_NEAR(2 * way.weight * std::pow(way.seconds, 4), 99 * 293 / 240.0 * std::pow(0.2, 4), 1e-12);
    EXPECT_EQ(sample_way(1, 0.2).weight, 0);
}

} // namespace tarvo

#include "targets/group_fit.h"

#include "targets/made_up_readings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tarvo {

// Sources as near as 7 m, one forty times as strong as another: each alone is off by metres.
TEST(GroupFit, NeighboursAreFittedTogether)
{
    const std::vector<Dipole> sources = {{{1, 0.5, -0.3}, {100, 40, -300}},
                                         {{8, 1, -0.6}, {-5, 3, -6}},
                                         {{3, 9, -0.2}, {10, -60, -30}},
                                         {{-9, -4, -0.8}, {0, 20, 10}}};
    const MadeUpLines lines{.across = {-8, 0, 8}, .sensors = 2};
    std::vector<FitTask> tasks;
    for (const Dipole& source : sources) {
        const double line = 8 * std::round(source.place.north / 8); // the nearest one, on which the pick lies
        tasks.push_back(task_over(sources, lines, {source.place.east + 1, line, 0}));
    }
    const std::vector<DipoleFit> fits = fit_together(tasks, {});
    ASSERT_EQ(fits.size(), sources.size());
    for (std::size_t at = 0; at < fits.size(); ++at) {
        EXPECT_LT(length(fits[at].dipole.place - sources[at].place), 0.003) << at;
        EXPECT_FALSE(fits[at].misfit) << at;
    }
}

TEST(GroupFit, DoubtsFitsWithinHalfAnAltitudeOfEachOther)
{
    std::vector<DipoleFit> fits(4);
    fits[1].dipole.place.east = 2.4;
    fits[2].dipole.place.east = 5;
    fits[3].refusal = "too few";
    fits[3].dipole.place.east = 5;
    doubt_shared_places(fits, {5, 5, 5, 5});
    EXPECT_EQ(fits[0].doubts, std::vector<FitDoubt>{FitDoubt::shared_place});
    EXPECT_EQ(fits[1].doubts, std::vector<FitDoubt>{FitDoubt::shared_place});
    EXPECT_TRUE(fits[2].doubts.empty());
    EXPECT_TRUE(fits[3].doubts.empty());
}

// The usual size is 1.4826 x the median of 1, 2, 3, 4 and 100; what a fit shows beyond it is its own.
TEST(GroupFit, ABackgroundIsAsCurvedAsAroundTheNeighbours)
{
    std::vector<DipoleFit> fits(5);
    const double sizes[] = {-1, 2, -3, 4, 100};
    for (std::size_t at = 0; at < fits.size(); ++at) {
        fits[at].background[1] = {sizes[at], 0, {0.5, 0, 2}};
        fits[at].error = {0.3, 0.7, 0};
    }
    const std::vector<DipoleFit> few(fits.begin(), fits.begin() + 4);
    std::vector<DipoleFit> shared = few;
    share_backgrounds(shared);
    EXPECT_EQ(shared[0].error, few[0].error) << "four say nothing";
    share_backgrounds(fits);
    const double more = 1.5 * std::sqrt(1.4826 * 3 * 1.4826 * 3 - 1);
    EXPECT_NEAR(fits[0].error.east, std::hypot(0.3, 0.5 * more), 1e-12);
    EXPECT_EQ(fits[0].error.north, 0.7);
    EXPECT_NEAR(fits[0].error.up, 2 * more, 1e-12);
    EXPECT_EQ(fits[4].error, (GridVector{0.3, 0.7, 0}));
}

TEST(GroupFit, StopsWhenItIsAsked)
{
    int questions = 0;
    FitWatch watch;
    watch.stop = [&questions] { return ++questions > 1; };
    const std::vector<FitTask> tasks(2, task_over({{{0, 0, 0}, {0, 0, -50}}}, {}));
    EXPECT_TRUE(fit_together(tasks, watch).empty());
    EXPECT_EQ(questions, 2);
}

} // namespace tarvo

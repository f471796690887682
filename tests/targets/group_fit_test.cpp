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

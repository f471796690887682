#include "display/axis_ticks.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(AxisTicks, StepsAreTheWantedOnesOrRound)
{
    struct Case {
        double wanted;
        double range;
        int most_steps;
        double step;
        int decimals;
    };
    const Case cases[] = {{20, 100, 9, 20, 0},      {2.5, 10, 9, 2.5, 1},   {0.25, 2, 9, 0.25, 2},
                          {7, 63, 9, 7, 0},         {200, 25, 9, 5, 0},     {200, 1.2, 9, 0.5, 1},
                          {20, 400, 9, 100, 0},     {0, 100, 9, 20, 0},     {20, 0.0003, 9, 1e-4, 4},
                          {1, 1e7, 9, 2e6, 0},      {5, 9.9, 9, 2, 0},      {0, 5, 9, 1, 0},
                          {10, 90.1, 9, 20, 0},     {10, 100, 10, 10, 0},   {100, 1000, 4, 500, 0},
                          {1e-9, 3e-9, 9, 1e-9, 6}, {1000, 0.5, 9, 0.1, 1}, {10, 100, 0, 100, 0}};
    for (const Case& c : cases) {
        const double step = readable_tick_step(c.wanted, c.range, c.most_steps);
        EXPECT_DOUBLE_EQ(step, c.step) << c.wanted << " in " << c.range;
        EXPECT_EQ(decimals_of_step(step), c.decimals) << c.wanted << " in " << c.range;
    }
}

} // namespace tarvo

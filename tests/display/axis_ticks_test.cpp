#include "display/axis_ticks.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(AxisTicks, StepsAreTheWantedOnesOrRound)
{
    struct Case {
        double wanted;
        double range;
        double step;
        int decimals;
    };
    const Case cases[] = {{20, 100, 20, 0},      {2.5, 10, 2.5, 1},     {0.25, 2, 0.25, 2}, {7, 63, 7, 0},
                          {200, 25, 5, 0},       {200, 1.2, 0.5, 1},    {20, 400, 100, 0},  {0, 100, 20, 0},
                          {20, 0.0003, 1e-4, 4}, {1, 1e7, 2e6, 0},      {5, 9.9, 2, 0},     {0, 5, 1, 0},
                          {10, 90.1, 20, 0},     {1e-9, 3e-9, 1e-9, 6}, {1000, 0.5, 0.1, 1}};
    for (const Case& c : cases) {
        const double step = readable_tick_step(c.wanted, c.range);
        EXPECT_DOUBLE_EQ(step, c.step) << c.wanted << " in " << c.range;
        EXPECT_EQ(decimals_of_step(step), c.decimals) << c.wanted << " in " << c.range;
    }
}

} // namespace tarvo

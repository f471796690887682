#include "display/profile_axes.h"

#include "test_track.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(ProfileAxes, TickStepsAreTheWantedOnesOrRound)
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

TEST(ProfileAxes, ZoomKeepsItsPlaceAndTheRecordComesBack)
{
    TestTrack track;
    for (int record = 0; record < 11; ++record) track.add(0, 0, 1); // 10 m from record to record
    const TrackTable table = track.scene().track;
    ProfileStretch stretch;
    const auto shown = [&] { return stretch.shown(table, 6, 40.0F); };
    EXPECT_EQ(shown(), (DistanceRange{30, 70}));
    stretch.zoom(shown(), 60, 0.5);
    EXPECT_EQ(shown(), (DistanceRange{45, 65})) << "60 m stays three quarters along";
    stretch.move(-5);
    EXPECT_EQ(shown(), (DistanceRange{40, 60}));
    stretch.zoom(shown(), 40, 1e-9);
    EXPECT_NEAR(shown().from, 40, 1e-12);
    EXPECT_NEAR(shown().length(), 0.04, 1e-12) << "a thousandth of the axis at least";
    stretch.centre();
    EXPECT_NEAR(shown().middle(), 50, 1e-12);
    EXPECT_EQ(ProfileStretch().shown(TrackTable(), 0, 40.0F), (DistanceRange{0, 40}));
}

TEST(ProfileAxes, ValuesLieAboutTheMiddleOrFromZeroAndFitTheCurves)
{
    ValueAxis field{false, 100, 50000, 1, false};
    EXPECT_EQ(field.shown(), (ValueExtent{49950, 50050}));
    field.follow({49990, 50005});
    EXPECT_EQ(field.shown(), (ValueExtent{49950, 50050})) << "nobody wished it";
    field.is_fitted = true;
    field.follow({49990, 50005});
    EXPECT_NEAR(field.shown().least, 49989, 1e-9) << "ten per cent beyond the curve that is farther away";
    EXPECT_NEAR(field.shown().greatest, 50011, 1e-9);
    const ValueExtent before = field.shown();
    field.follow({});
    EXPECT_EQ(field.shown(), before) << "no value in view";
    field.zoom(2);
    field.follow({49990, 50005});
    EXPECT_NEAR(field.shown().greatest, 50022, 1e-9) << "the operator's zoom holds";

    EXPECT_EQ(middle_of_curves({-5, -4}, {-5, 6}, 20), 0.5) << "depth and altitude in view";
    EXPECT_EQ(middle_of_curves({-5, -4}, {-5, 46}, 20), -4.5) << "the first of them";
    EXPECT_EQ(middle_of_curves({}, {100, 130}, 20), 115) << "the only one with values";
    EXPECT_EQ(middle_of_curves({}, {}, 20), 0);

    ValueAxis gradient{true, 10, 3, 1, true};
    gradient.follow({2, 20});
    EXPECT_EQ(gradient.shown().least, 0);
    EXPECT_NEAR(gradient.shown().greatest, 22, 1e-9);
    gradient.follow({0, 0});
    EXPECT_NEAR(gradient.shown().greatest, 22, 1e-9) << "nothing to enlarge";
}

} // namespace tarvo

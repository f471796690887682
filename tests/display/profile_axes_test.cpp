#include "display/profile_axes.h"
#include "display/profile_heights.h"

#include "test_track.h"

#include <gtest/gtest.h>

#include <cmath>

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

TEST(ProfileAxes, SectionIsAboutItsRecordAndZoomedWithinItsLimits)
{
    TestTrack track;
    for (int record = 0; record < 11; ++record) track.add(0, 0, 1); // 10 m from record to record
    EXPECT_EQ(section_about(track.scene().track, 6, 40.0F), (DistanceRange{30, 70}));
    EXPECT_EQ(section_about(TrackTable(), 0, 40.0F), (DistanceRange{0, 40}));
    float length = 100;
    for (const double round : {125.0, 160.0, 200.0, 250.0, 315.0, 400.0}) { // notch by notch
        length = static_cast<float>(zoomed_section_length(length, 1.26));
        EXPECT_DOUBLE_EQ(static_cast<double>(length), round);
    }
    EXPECT_DOUBLE_EQ(zoomed_section_length(990.0F, 1 / 1.26), 800);
    EXPECT_DOUBLE_EQ(zoomed_section_length(1234.0F, 1.0013), 1236) << "a little, in four places";
    EXPECT_DOUBLE_EQ(zoomed_section_length(30.0F, 0.5), 26) << "the setting is over 25";
    EXPECT_DOUBLE_EQ(zoomed_section_length(9e5F, 2), 1e6);
    EXPECT_DOUBLE_EQ(section_length_over(1234.1), 1235) << "nothing is cut off";
    EXPECT_DOUBLE_EQ(section_length_over(0), 26);
}

TEST(ProfileAxes, HeightsAreThoseOfReadings)
{
    struct Case {
        const char* label;
        std::vector<std::vector<double>> curves;
        HeightsOf of;
        ValueExtent extent;
        double middle;
    };
    constexpr auto kField = HeightsOf::total_field;
    constexpr auto kOther = HeightsOf::other_values;
    const Case cases[] = {
        {"nothing", {{}, {}}, kField, {}, 0},
        {"medians of two sensors", {{50000, 50001, 50015}, {50101, 50100, 50102}}, kField, {50000, 50102}, 50051},
        {"a dead sensor's nines", {{-9999.99, -9999.99}, {50000, 50015}}, kField, {50000, 50015}, 50000},
        {"nines in a sensor", {{50000, 99999, 50002}}, kField, {50000, 50002}, 50000},
        {"nothing but nines", {{-9999.99}}, kOther, {-9999.99, -9999.99}, -9999.99},
        {"zeroes beside a field", {{0, 0, 0}, {50000, 50001, 50002}}, kField, {50000, 50002}, 50001},
        {"half away is an anomaly", {{50000, 50000, 75000}}, kField, {50000, 75000}, 50000},
        {"farther is none", {{50000, 50000, 75001}}, kField, {50000, 50000}, 50000},
        {"a depth of 0 is one", {{0, 4, 5}}, kOther, {0, 5}, 4},
    };
    for (Case c : cases) {
        const CurveHeights heights = heights_of_curves(c.curves, c.of);
        EXPECT_EQ(heights.extent, c.extent) << c.label;
        EXPECT_EQ(heights.middle, c.middle) << c.label;
    }
    const ProfileCurve curve = {{9, 10, 20, 21}, {900, 1, std::nan(""), 900}};
    EXPECT_EQ(values_in_stretch(curve, {10, 20}), std::vector<double>{1}) << "nothing beside the window counts";
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
    gradient.least_range = 5;
    gradient.follow({0, 0.1});
    EXPECT_NEAR(gradient.shown().greatest, 5, 1e-9) << "quiet curves stay quiet";
}

} // namespace tarvo

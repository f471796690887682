#include "display/colour_scale.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvo {
namespace {

TEST(ColourScale, RunsFromBlueToRed)
{
    struct Case {
        const char* label;
        double value;
        Colour colour;
    };
    const double range = 8; // every quarter of an entry is exact
    const Case cases[] = {{"lower limit", 0, 0x0000FF},
                          {"below it", -3, 0x0000FF},
                          {"first quarter", 2, 0x00FFFF},
                          {"half way to cyan: 127.5 goes to even", 1, 0x0080FF},
                          {"half", 4, 0x00FF00},
                          {"a quarter of an entry beyond: 63.75", 4.5, 0x40FF00},
                          {"three quarters", 6, 0xFFFF00},
                          {"towards red: 191.25 green", 6.5, 0xFFBF00},
                          {"upper limit", 8, 0xFF0000},
                          {"above it", 1e29, 0xFF0000},
                          {"null", kNull, 0xFFFF00},
                          {"exactly the null limit", -1e30, 0xFFFF00},
                          {"not a number", std::nan(""), 0xFFFF00}};
    for (const Case& c : cases) EXPECT_EQ(value_colour(c.value, {0, range}), c.colour) << c.label;
}

TEST(ColourScale, TablesTakeTheEntryThatAValueFallsOn)
{
    struct Case {
        const char* map;
        double value; // from -2 to 6
        Colour colour;
    };
    const Case cases[] = {{"viridis", -2, 0x440154},
                          {"viridis", -9, 0x440154},
                          {"viridis", 6, 0xFDE725},
                          {"cividis", -2, 0x00224E},
                          {"cividis", 1e29, 0xFEE838},
                          {"viridis", 2, 0x21918C},
                          {"grey", 1.99, 0x7F7F7F},
                          {"grey", 2, 0x808080},
                          {"grey", -2 + 8.0 / 256, 0x010101},
                          {"grey", kNull, 0x808080},
                          {"blue-white-red", -2, 0x0000FF},
                          {"blue-white-red", 1.99, 0xFEFEFF},
                          {"blue-white-red", 2, 0xFFFEFE},
                          {"blue-white-red", 6, 0xFF0000},
                          {"blue-white-red", std::nan(""), 0x808080},
                          {"survey", kNull, 0xFFFF00},
                          {"none of them", 2, 0x00FF00}};
    for (const Case& c : cases) {
        EXPECT_EQ(value_colour(c.value, {-2, 6, &colour_map(c.map)}), c.colour) << c.map << " " << c.value;
    }
}

TEST(ColourScale, MapsItsLimitsOverAnyTable)
{
    const float table[] = {0.0F, 0.2F, 0.4F, 1.0F, 0.6F, 0.0F};
    struct Case {
        float value;
        std::int32_t mode;
        float red, green, blue;
    };
    const Case cases[] = {{-2.0F, 2, 0.0F, 0.2F, 0.4F},
                          {0.0F, 2, 0.5F, 0.4F, 0.2F},
                          {2.5F, 2, 1.0F, 0.6F, 0.0F},
                          {1.0F, 1, 0.0F, 0.2F, 0.4F},
                          {2.0F, 1, 1.0F, 0.6F, 0.0F}};
    for (const Case& c : cases) {
        float red = -1;
        float green = -1;
        float blue = -1;
        CLCRGB(c.value, -2.0F, 2.0F, c.mode, 2, table, red, green, blue);
        EXPECT_FLOAT_EQ(red, c.red) << c.value;
        EXPECT_FLOAT_EQ(green, c.green) << c.value;
        EXPECT_FLOAT_EQ(blue, c.blue) << c.value;
    }
}

TEST(RangeAdjusters, StepTheGradientRange)
{
    struct Case {
        const char* label;
        int index;
        int value;
        double range, reference;
        int steps;
        double new_range, new_reference;
    };
    const Case cases[] = {{"four coarse steps in", 1, 1, 10, 10, 4, 3.1640625, 3.1640625},
                          {"coarse steps stop at 1", 2, 1, 10, 10, 9, 1, 1},
                          {"coarse step out", 1, 2, 8, 3, 1, 10, 10},
                          {"fine step in", 0, 1, 40, 100, 1, 38, 100},
                          {"fine step out", 0, 0, 40, 100, 1, 42, 100},
                          {"fine steps stop at 1", 0, 1, 2, 100, 1, 1, 100}};
    for (const Case& c : cases) {
        DisplaySettings settings;
        settings.gradient_max_range = c.range;
        settings.reference_gradient_range = c.reference;
        for (int step = 0; step < c.steps; ++step) VScroll_TG_change(c.index, c.value, settings);
        EXPECT_EQ(settings.gradient_max_range, c.new_range) << c.label;
        EXPECT_EQ(settings.reference_gradient_range, c.new_reference) << c.label;
    }
}

} // namespace
} // namespace tarvo

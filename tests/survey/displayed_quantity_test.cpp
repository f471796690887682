#include "survey/displayed_quantity.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// Hundred records of two sensors a metre and a second apart: the field of sensor 1 is 48001 to 48100, that of sensor 2
// twice as much, the elevation 1 to 100; there is no depth.
SurveyState survey_of_slopes()
{
    SurveyState survey;
    SampleStore& store = survey.processing.store;
    SurveyDefinitions definitions;
    definitions.number_of_sensors = 2;
    definitions.sensors.assign(3, {});
    FieldLocations locations;
    locations.header_column_count = kElevation + 1;
    for (const int slot : {kTime, kEast, kNorth, kElevation}) locations.column[static_cast<std::size_t>(slot)] = slot;
    start_processing(survey.processing, definitions, locations, survey.parameters);
    reserve_records(store, 100);
    store.RecordCount = 100;
    for (std::int32_t record = 1; record <= 100; ++record) {
        store.distance[record] = record - 1;
        store.record_time[record] = record / 65536.0; // exact: all speeds are the same
        store.channels[kEast][record] = store.channels[kElevation][record] = record;
        store.channels[kNorth][record] = 0;
        store.sensors[1].averages[0][record] = 48000 + record;
        store.sensors[2].averages[0][record] = 96000 + 2 * record;
    }
    return survey;
}

TEST(DisplayedQuantity, BringsItsValuesRangeAndColours)
{
    struct Case {
        const char* key;
        ValueRange range;
        double at_50; // of sensor 1
        const char* map;
        Colour tick;
    };
    const Case cases[] = {{"total", {48004, 96192}, 48050, "survey", kWhite},
                          {"elevation", {2, 98}, 50, "survey", kWhite},
                          {"speed", {65536 / 86400.0 - 0.5, 65536 / 86400.0 + 0.5}, 65536 / 86400.0, "survey", kWhite},
                          {"vertical", {-1, 1}, kNull, "blue-white-red", kGreen},
                          {"gradient", {0, 10}, kNull, "survey", kGreen}};
    SurveyState survey = survey_of_slopes();
    for (const Case& c : cases) {
        EXPECT_EQ(choose_quantity(survey, c.key), "") << c.key;
        const TrackScene scene = track_scene(survey);
        const ShownValues values(scene, 1);
        EXPECT_NEAR(values.exist() ? values[50] : kNull, c.at_50, 1e-4) << c.key;
        EXPECT_NEAR(scene.colours.low, c.range.low, 1e-4) << c.key;
        EXPECT_NEAR(scene.colours.high, c.range.high, 1e-4) << c.key;
        EXPECT_STREQ(scene.colours.map->key, c.map) << c.key;
        EXPECT_EQ(scene.colours.tick, c.tick) << c.key;
    }
    EXPECT_EQ(choose_quantity(survey, "depth"), "The survey has no depth column");
    EXPECT_EQ(survey.display_settings.quantity, "gradient");
}

TEST(DisplayedQuantity, RangesAreTypedAdjustedAndFollowARun)
{
    SurveyState survey = survey_of_slopes();
    choose_quantity(survey, "elevation");
    EXPECT_EQ(type_shown_range(survey, "3"), SettingOutcome::refused);
    EXPECT_EQ(type_shown_range(survey, "10 50"), SettingOutcome::taken);
    EXPECT_EQ(range_hint(survey), "");
    adjust_shown_range(survey, 1, 1);
    EXPECT_EQ(shown_range(survey), (ValueRange{15, 45}));
    type_shown_range(survey, "0 20");
    EXPECT_EQ(range_hint(survey), "98 of 100 values lie below 98 m, the colours reach to 20 m");
    type_shown_range(survey, "0 300");
    EXPECT_EQ(range_hint(survey), "98 of 100 values lie below 98 m, the colours reach to 300 m");
    EXPECT_FALSE(follow_automatic_range(survey));
    type_shown_range(survey, "auto");
    survey.processing.store.RecordCount = 50;
    EXPECT_TRUE(follow_automatic_range(survey)) << "a new run has begun";
    EXPECT_EQ(shown_range(survey), (ValueRange{1, 49}));
    survey.processing.store.RecordCount = 99;
    EXPECT_FALSE(follow_automatic_range(survey));
    survey.processing.store.RecordCount = 100;
    EXPECT_TRUE(follow_automatic_range(survey));

    choose_quantity(survey, "gradient");
    EXPECT_EQ(type_shown_range(survey, "0 0.5"), SettingOutcome::taken);
    EXPECT_EQ(shown_range(survey), (ValueRange{0, 0.5})) << "below what the adjusters would leave";
    adjust_shown_range(survey, 1, 1);
    EXPECT_EQ(shown_range(survey), (ValueRange{0, 1}));
}

TEST(DisplayedQuantity, ValuesBeyondTheirLimitsHaveAColourOfTheirOwn)
{
    struct Case {
        const char* key;
        bool has_ground; // a DEM of the data: the elevation is no altitude
        double inside;
        double outside;
        bool is_limited;
    };
    const Case cases[] = {{"elevation", false, 20, 19.9, true},
                          {"elevation", false, 40, 40.1, true},
                          {"elevation", true, 30, 19.9, false},
                          {"speed", false, 0, 3.1, true}, // open below
                          {"total", false, 30, 19.9, false}};
    for (const Case& c : cases) {
        SurveyState survey = survey_of_slopes();
        survey.watch_settings.altitude = {20, 40};
        survey.watch_settings.speed.greatest = 3;
        survey.processing.store.dem_from_column = c.has_ground;
        ASSERT_EQ(choose_quantity(survey, c.key), "");
        const ColourScale scale = shown_colours(survey);
        EXPECT_EQ(scale.has_limits(), c.is_limited) << c.key;
        EXPECT_NE(value_colour(c.inside, scale), kOutOfLimits) << c.key;
        EXPECT_EQ(value_colour(c.outside, scale) == kOutOfLimits, c.is_limited) << c.key << ' ' << c.outside;
        EXPECT_EQ(value_colour(kNull, scale), scale.map->null_colour) << c.key;
    }
}

} // namespace
} // namespace tarvo

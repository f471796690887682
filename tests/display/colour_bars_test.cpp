#include "display/colour_bars.h"

#include "display/colour_scale.h"
#include "display/survey_pictures.h"
#include "display/test_track.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// Records 10 m apart, 50 m of track over 100 columns: two columns to the metre.
TEST(ColourBars, ShowTheSectionAroundTheCurrentRecord)
{
    TestTrack track;
    for (int sample = 0; sample < 20; ++sample) track.add(0, 0, sample % 5 == 4 ? kNull : sample / 2.0);
    track.distance[6] = track.distance[7]; // 60 m: the first of two at one place gives the colour
    TrackScene scene = track.scene();
    scene.settings.track_axis_length = 50;
    const std::vector<double> others(21, 4.0);
    scene.sensor_values = {nullptr, track.values.data(), nullptr, others.data()};

    struct Bar {
        int first_column, end_column;
        std::int32_t record;
    };
    struct Case {
        std::int32_t current;
        std::vector<Bar> bars;
    };
    const Case cases[] = {{10, {{9, 10, 8}, {10, 30, 9}, {30, 50, 10}, {50, 70, 11}, {70, 90, 12}}},
                          {8, {{29, 30, 6}, {30, 50, 8}, {50, 70, 9}, {70, 90, 10}}},
                          {1, {{49, 50, 1}, {50, 70, 2}, {70, 90, 3}}},
                          {0, {}},
                          {21, {}}};
    for (const Case& c : cases) {
        Picture expected(100, 120);
        for (const Bar& bar : c.bars) {
            const Colour colour = value_colour(track.values[static_cast<std::size_t>(bar.record)], {});
            fill_rectangle(expected, bar.first_column, 0, bar.end_column, 40, colour);
            fill_rectangle(expected, bar.first_column, 80, bar.end_column, 120, value_colour(4, {}));
        }
        FakeOperator op;
        EXPECT_EQ(colour_bars_picture(scene, 3, 100, c.current, op), expected) << c.current;
        EXPECT_TRUE(op.messages.empty());
    }
}

TEST(ColourBars, KeepAChosenSection)
{
    TestTrack track;
    for (int sample = 0; sample < 20; ++sample) track.add(0, 0, 5);
    std::vector<Picture> bars(2, Picture(100, 3));
    fill(bars[1], kRed);
    SectionLimits section = {5, 11};
    FakeOperator op;
    display_TG_bars(bars, track.scene(), 10, section, op);
    Picture expected(100, 3); // a column to the metre; record 5, at column 0, is not drawn, record 6 is the first
    fill_rectangle(expected, 9, 0, 60, 3, 0x00FF00);
    EXPECT_EQ(bars[1], expected);
    EXPECT_EQ(section, (SectionLimits{5, 11}));

    display_TG_bars(bars, TrackScene(), 10, section, op);
    EXPECT_EQ(bars[1], expected) << "no track points: nothing is drawn";
}

} // namespace
} // namespace tarvo

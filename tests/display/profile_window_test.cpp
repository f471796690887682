#include "display/profile_window.h"

#include "test_track.h"

#include <gtest/gtest.h>

namespace tarvo {

namespace {

TestTrack track_of(const std::vector<double>& values) // 10 m from record to record
{
    TestTrack track;
    for (const double value : values) track.add(0, 0, value);
    return track;
}

std::vector<double> curve_values(const TestTrack& track, const DistanceRange& range, int most_points,
                                 const SurveyLines& lines = {})
{
    ProfileCurve curve;
    profile_curve(track.scene().track, lines, track.values.data(), track.count(), range, most_points, curve);
    for (double& value : curve.value) value = std::isnan(value) ? kNull : value;
    return curve.value;
}

} // namespace

TEST(ProfileWindow, TheRecordNearADistanceIsWithinReach)
{
    const TestTrack track = track_of({1, 1, 1}); // at 0, 10 and 20 m
    const TrackTable table = track.scene().track;
    struct Case {
        double distance;
        double reach;
        std::int32_t record;
    };
    const Case cases[] = {{-3, 3, 1}, {-3, 2.9, 0}, {14, 6, 2}, {15, 6, 2}, {16, 6, 3}, {20, 0, 3}, {24, 4, 3}};
    for (const Case& c : cases) EXPECT_EQ(record_near(table, c.distance, c.reach), c.record) << c.distance;
    EXPECT_EQ(record_near(TrackTable(), 1, 9), 0);
}

TEST(LineEndParts, AreThoseInTheStretchAndNeverOverlap)
{
    const TestTrack track = track_of(std::vector<double>(12, 1)); // 0 to 110 m
    SurveyLines lines;
    open_first_line(lines, 1);
    for (std::int32_t record = 1; record <= 8; ++record) add_record_to_line(lines, record);
    open_next_line(lines, 2, 8, 0);
    for (std::int32_t record = 9; record <= 12; ++record) add_record_to_line(lines, record);
    const TrackTable table = track.scene().track;
    using Parts = std::vector<DistanceRange>;
    EXPECT_EQ(line_end_parts(table, lines, 15, {-50, 200}), (Parts{{0, 15}, {55, 70}, {80, 95}, {95, 110}}));
    EXPECT_EQ(line_end_parts(table, lines, 20, {60, 85}), (Parts{{60, 70}, {80, 85}})); // longer than a half: cut
    EXPECT_EQ(line_end_parts(table, lines, 40, {75, 200}), (Parts{{80, 110}}));
    EXPECT_EQ(line_end_parts(table, SurveyLines(), 40, {0, 200}), Parts());
}

TEST(ProfileCurve, HoldsTheStretchAndOneRecordToEitherSide)
{
    const TestTrack track = track_of({1, 2, 3, kNull, 5, 6});
    struct Case {
        const char* label;
        DistanceRange range;
        int most_points;
        std::vector<double> values;
    };
    const Case cases[] = {{"whole", {0, 50}, 100, {1, 2, 3, kNull, 5, 6}},
                          {"between two records", {21, 29}, 100, {3, kNull}},
                          {"ends on records", {10, 20}, 100, {1, 2, 3, kNull}},
                          {"before the track", {-90, -80}, 100, {1}},
                          {"behind it", {70, 80}, 100, {6}},
                          {"groups of three by least and greatest", {0, 50}, 4, {1, 3, 5, 6}},
                          {"empty range", {25, 25}, 100, {3, kNull}}};
    for (const Case& c : cases) EXPECT_EQ(curve_values(track, c.range, c.most_points), c.values) << c.label;
    EXPECT_TRUE(curve_values(track_of({}), {0, 50}, 100).empty());
    EXPECT_EQ(curve_values(track_of({1, 1e12, -9.97e29, 4}), {0, 50}, 100), (std::vector<double>{1, kNull, kNull, 4}));
    EXPECT_EQ(curve_values(track_of({1, 1e12, -9.97e29, 4}), {0, 50}, 2), (std::vector<double>{1, 4}));

    SurveyLines lines;
    lines.CurrentLine = 2;
    lines.LineLimits.reserve(2);
    lines.LineLimits[1] = {0, 1, 2, 2};
    lines.LineLimits[2] = {0, 3, 6, 4};
    EXPECT_EQ(curve_values(track, {0, 50}, 100, lines), (std::vector<double>{1, 2, kNull, 3, kNull, 5, 6}));
    EXPECT_EQ(curve_values(track, {0, 50}, 4, lines), (std::vector<double>{1, 2, kNull, 3, 5, 6}))
        << "no group goes over the end of a line";
    lines.LineLimits[2] = {0, 3, 4, 2};
    EXPECT_EQ(curve_values(track, {0, 50}, 100, lines), (std::vector<double>{1, 2, kNull, 3, kNull, kNull, 5, 6}))
        << "records that no line has yet";
}

TEST(ProfileCurve, ThinningKeepsEveryPeakInItsPlace)
{
    std::vector<double> values(1000, 1.0);
    values[500] = 99;
    values[501] = -99;
    const TestTrack track = track_of(values);
    ProfileCurve curve;
    profile_curve(track.scene().track, {}, track.values.data(), track.count(), {0, 1e6}, 50, curve);
    EXPECT_LE(curve.value.size(), 50U);
    const auto peak = std::find(curve.value.begin(), curve.value.end(), 99.0);
    ASSERT_NE(peak, curve.value.end());
    EXPECT_EQ(curve.distance[static_cast<std::size_t>(peak - curve.value.begin())], 5000);
    EXPECT_EQ(*(peak + 1), -99) << "in the order of the track";
    EXPECT_EQ(value_extent(curve), (ValueExtent{-99, 99}));
}

TEST(ProfilePicks, AreThoseOfTheStretchThatLieOnTheTrack)
{
    const TestTrack track = track_of({1, 2, 3, 4, 5}); // at 0, 10 .. 40 m
    const std::vector<std::int32_t> records = {99, 5, -1, 2, 0, 6, 3, 1};
    const auto picks_in = [&](const DistanceRange& range) {
        return picks_in_stretch(track.scene().track, {records, 3}, range);
    };
    EXPECT_EQ(picks_in({10, 40}), (std::vector<ProfilePick>{{1, 40}, {3, 10}, {6, 20}}));
    EXPECT_EQ(picks_in({-5, 9.9}), (std::vector<ProfilePick>{{7, 0}}));
    EXPECT_TRUE(picks_in({41, 50}).empty());
    EXPECT_TRUE(picks_in_stretch(track.scene().track, {}, {0, 40}).empty());
}

TEST(ProfileCurve, MiddleRecordLetsTheNewestComeToTheEnd)
{
    const TestTrack track = track_of(std::vector<double>(11, 1.0)); // 0 to 100 m
    const TrackTable table = track.scene().track;
    EXPECT_EQ(record_behind_newest(table, 40.0F), 10) << "the first record beyond 80 m";
    EXPECT_EQ(record_behind_newest(table, 1000.0F), 1);
    EXPECT_EQ(record_behind_newest(TrackTable(), 40.0F), 0);
    EXPECT_EQ(distance_range_about(table, 3, 40.0F), (DistanceRange{0, 40}));
    EXPECT_EQ(distance_range_about(table, 12, 40.0F), DistanceRange());
}

} // namespace tarvo

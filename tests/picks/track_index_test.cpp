#include "picks/track_index.h"

#include "text/numbers.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

struct Track {
    std::vector<double> x; // element 0 unused
    std::vector<double> y;

    TrackTable table() const
    {
        return {.count = static_cast<std::int32_t>(x.size()) - 1, .easting = x.data(), .northing = y.data()};
    }
};

TEST(TrackIndex, CoversTheTrackWithAMargin)
{
    struct Case {
        const char* label;
        Track track;
        std::optional<PlanBox> box;
    };
    const Case cases[] = {{"no record", {{0}, {0}}, {}},
                          {"no position", {{0, kNull, 5}, {0, 5, kNull}}, {}},
                          {"area", {{0, 100, 140, 120}, {0, 10, 20, 30}}, PlanBox{98, 9, 142, 31}},
                          {"nulls left out", {{0, 100, kNull, 140}, {0, 10, -500, 30}}, PlanBox{98, 9, 142, 31}},
                          {"line due north", {{0, 8, 8}, {0, 10, 30}}, PlanBox{7.45, 9, 8.55, 31}},
                          {"one position", {{0, 8}, {0, -4}}, PlanBox{7.45, -4.55, 8.55, -3.45}}};
    for (const Case& c : cases) {
        const std::optional<PlanBox> box = track_index_box(c.track.table());
        ASSERT_EQ(box.has_value(), c.box.has_value()) << c.label;
        cQuadTree tree;
        tree.InitialiseQuadtree(0, 0, 1, 1, 1);
        EXPECT_EQ(build_track_index(c.track.table(), tree), c.box.has_value()) << c.label;
        EXPECT_EQ(tree.is_initialised(), c.box.has_value()) << c.label;
        if (!box) continue;
        EXPECT_DOUBLE_EQ(box->x_min, c.box->x_min) << c.label;
        EXPECT_DOUBLE_EQ(box->y_min, c.box->y_min) << c.label;
        EXPECT_DOUBLE_EQ(box->x_max, c.box->x_max) << c.label;
        EXPECT_DOUBLE_EQ(box->y_max, c.box->y_max) << c.label;
    }
}

TEST(TrackIndex, KeepsEveryPositionUnderItsRecord)
{
    Track track{{0}, {0}};
    for (int record = 1; record <= 1000; ++record) {
        track.x.push_back(record % 10 == 0 ? kNull : 3.0 * record);
        track.y.push_back(100);
    }
    cQuadTree tree;
    ASSERT_TRUE(build_track_index(track.table(), tree));
    EXPECT_EQ(tree.point_count(), 900);
    for (std::int32_t record = 1; record <= 1000; ++record) {
        if (record % 10 == 0) continue;
        EXPECT_EQ(tree.find_nearest_point(3.0 * record, 100).sample_index, record);
    }
}

} // namespace
} // namespace tarvo

#include "picks/pick_placing.h"

#include "fake_operator.h"
#include "picks/track_index.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(PickPlacing, LaysEveryPickOnItsNearestSample)
{
    const std::vector<double> x = {0, 0, 100, 200, kNull, 400};
    const std::vector<double> y = {0, 0, 10, 20, kNull, 40};
    const TrackTable track{.count = 5, .easting = x.data(), .northing = y.data()};
    cQuadTree index;
    ASSERT_TRUE(build_track_index(track, index));

    struct Case {
        const char* label;
        double x, y;
        std::int32_t sample;
        TrackDirection direction;
    };
    const Case cases[] = {{"on a sample", 100, 10, 2, {100, 10}}, {"beside the first", -5, 1, 1, {100, 10}},
                          {"before a gap", 220, 21, 3, {}},       {"at the end", 400, 40, 5, {}},
                          {"off the track", 900, 40, -1, {}},     {"without a position", kNull, 40, -1, {}}};
    PickList picks;
    for (const Case& c : cases) append_pick(picks, {.name = c.label, .sample_index = 77, .location = {0, c.x, c.y, 5}});
    FakeOperator op;
    locate_pick_list_on_track(picks, index, track, op);
    for (std::size_t pick = 1; pick <= std::size(cases); ++pick) {
        const Case& c = cases[pick - 1];
        EXPECT_EQ(picks.pick_sample_index[pick], c.sample) << c.label;
        EXPECT_EQ(track_direction(track, c.sample), c.direction) << c.label;
        EXPECT_EQ(picks.pick_locations[pick], (std::array{0.0, c.x, c.y, 5.0})) << c.label;
    }
}

TEST(PickPlacing, WaitsForAnIndexATrackAndAPick)
{
    PickList picks;
    append_pick(picks, {.name = "Target 1", .sample_index = 77});
    FakeOperator op;
    cQuadTree index;
    locate_pick_list_on_track(picks, index, {.count = 5}, op);
    index.InitialiseQuadtree(0, 0, 1, 1, 32);
    locate_pick_list_on_track(picks, index, {}, op);
    EXPECT_EQ(picks.pick_sample_index[1], 77);
}

} // namespace
} // namespace tarvo

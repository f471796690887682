#include "survey/planned_lines.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(PlannedLines, OffsetIsSquareToTheNearestLegAsSeenAlongTheWay)
{
    LayerShapes shapes;
    shapes.places = {{0, 0}, {100, 0}, {100, 100}, {0, 50}, {50, 50}, {3, 3}};
    shapes.path_ends = {3, 5, 6};
    shapes.labels = {"", "A7"};
    shapes.shapes = {{ShapeKind::line, 0, 0, 1, 1}, {ShapeKind::line, 0, 1, 1, 0}, {ShapeKind::point, 0, 2, 1, 0}};
    struct Case {
        const char* label;
        std::vector<LayerPlace> way; // the newest place last
        const char* text;
    };
    const Case cases[] = {
        {"left of an eastward line", {{10, 2}, {12, 2.34}}, "2.3 m to port of line A7"},
        {"the same place, going west", {{14, 2.34}, {12, 2.34}}, "2.3 m to starboard of line A7"},
        {"stopped: the way before counts", {{14, 3}, {12, 3}, {12, 3}}, "3.0 m to starboard of line A7"},
        {"no way: the line's own", {{12, 3}}, "3.0 m to port of line A7"},
        {"beyond its begin", {{-40, -4}, {-30, -4}}, "4.0 m to starboard of line A7"},
        {"nearest its second leg", {{104, 40}, {104, 50}}, "4.0 m to starboard of line A7"},
        {"one without a name", {{10, 51}, {20, 51}}, "1.0 m to port of the planned line"}};
    const std::vector<const LayerShapes*> layers = {&shapes};
    for (const Case& c : cases) {
        std::vector<double> easting = {0};
        std::vector<double> northing = {0};
        for (const LayerPlace& place : c.way) {
            easting.push_back(place.x);
            northing.push_back(place.y);
        }
        const auto count = static_cast<std::int32_t>(c.way.size());
        EXPECT_EQ(off_line_text(layers, {count, nullptr, nullptr, easting.data(), northing.data()}, count), c.text)
            << c.label;
    }
    EXPECT_EQ(off_nearest_line({}, {1, 1}, {}), std::nullopt);
}

} // namespace
} // namespace tarvo

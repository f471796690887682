#include "display/lever_arm_sketch.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

SurveyDefinitions with_arm(double offset, double length, double rotation)
{
    SurveyDefinitions definitions;
    definitions.fields[kDepth].name = "N/A";
    definitions.sensors[1].lever_arm = {0, 0, offset, 0, length, rotation};
    return definitions;
}

// Views of 220 pixels with a margin of 10: the sensor farthest out is 100 pixels from the middle at (110, 110).
TEST(LeverArmSketch, PutsSensorsWhereTheirArmsPoint)
{
    struct Case {
        const char* label;
        double offset, length, rotation;
        SketchPoint above, behind;
    };
    const Case cases[] = {{"at the fish", 0, 0, 0, {110, 110}, {110, 110}},
                          {"ahead", 2000, 0, 0, {110, 10}, {110, 110}},
                          {"to port", 0, 2000, 0, {10, 110}, {10, 110}},
                          {"above", 0, 2000, 90, {110, 110}, {110, 10}},
                          {"to starboard, behind", -2000, 1000, 180, {160, 210}, {160, 110}},
                          {"below", 0, 2000, 270, {110, 110}, {110, 210}}};
    for (const Case& c : cases) {
        const LeverArmSketch sketch = lever_arm_sketch(with_arm(c.offset, c.length, c.rotation), 220, 10);
        ASSERT_EQ(sketch.sensors.size(), 2U);
        EXPECT_NEAR(sketch.sensors[1].above.x, c.above.x, 1e-4) << c.label;
        EXPECT_NEAR(sketch.sensors[1].above.y, c.above.y, 1e-4) << c.label;
        EXPECT_NEAR(sketch.sensors[1].behind.x, c.behind.x, 1e-4) << c.label;
        EXPECT_NEAR(sketch.sensors[1].behind.y, c.behind.y, 1e-4) << c.label;
    }
}

TEST(LeverArmSketch, DepthCountsDownwardsUntilItsSignIsFlipped)
{
    SurveyDefinitions definitions = with_arm(0, 2000, 90);
    definitions.fields[kDepth].name = "depth";
    EXPECT_NEAR(lever_arm_sketch(definitions, 220, 10).sensors[1].behind.y, 210, 1e-4);
    definitions.flip_depth_sign = 1;
    EXPECT_NEAR(lever_arm_sketch(definitions, 220, 10).sensors[1].behind.y, 10, 1e-4);
}

TEST(LeverArmSketch, ScaleBarIsRoundAndFits)
{
    struct Case {
        double length;
        double bar;
    };
    // half a view is 1.1 times as long as the farthest sensor is away
    const Case cases[] = {{2000, 2}, {1000, 1}, {900, 0.5}, {4600, 5}, {0, 0.1}};
    for (const Case& c : cases) {
        EXPECT_NEAR(lever_arm_sketch(with_arm(0, c.length, 0), 220, 10).scale_bar, c.bar, 1e-9) << c.length;
    }
}

TEST(LeverArmSketch, IsEmptyWherePositionsAreRead)
{
    SurveyDefinitions definitions;
    definitions.read_sensor_location = 1;
    EXPECT_TRUE(lever_arm_sketch(definitions, 220, 10).sensors.empty());
}

} // namespace
} // namespace tarvo

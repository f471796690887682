#include "processing_run.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(FieldConversion, AppliesScalesBeyondTheirTolerance)
{
    struct Case {
        const char* label;
        double coordinate;
        double depth;
        double east;
        double z;
    };
    const Case cases[] = {{"1 % and less are no factor", 1.005, 0.995, 100, 10},
                          {"exactly 0.01 as 64-bit floats give it", 1.01, 0.99, 101, 9.9},
                          {"beyond", 1.02, 0.5, 102, 5}};
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.definitions.coordinate_scale = c.coordinate;
        survey.definitions.depth_scale = c.depth;
        survey.process("Time,East,North,Depth,Elevation,DEM,Pitch,M1", {"1,100,100,10,10,10,7,5"});
        EXPECT_DOUBLE_EQ(survey.channel(kEast, 1), c.east) << c.label;
        EXPECT_DOUBLE_EQ(survey.channel(kNorth, 1), c.east) << c.label;
        for (const int slot : {kDepth, kElevation, kDem}) EXPECT_DOUBLE_EQ(survey.channel(slot, 1), c.z) << c.label;
        EXPECT_EQ(survey.channel(kPitch, 1), 7);
        EXPECT_EQ(survey.average(1), 5);
    }
}

TEST(FieldConversion, TurnsSignsAndDerivesTheDem)
{
    struct Case {
        const char* label;
        int flip;
        const char* header;
        const char* line;
        double depth;
        double elevation;
        double dem;
    };
    const Case cases[] = {
        {"sum", 0, "Time,Depth,Elevation", "1,10,3", 10, 3, 13},
        {"difference of the negated depth", 1, "Time,Depth,Elevation", "1,10,3", -10, 3, -13},
        {"a DEM from a column changes sign too", 1, "Time,Depth,Elevation,DEM", "1,10,3,4", -10, 3, -4},
        {"DEM from a column", 0, "Time,Depth,Elevation,DEM", "1,10,3,4", 10, 3, 4},
        {"null depth", 1, "Time,Depth,Elevation", "1,*,3", kNull, 3, kNull},
        {"null elevation", 0, "Time,Depth,Elevation", "1,10,*", 10, kNull, kNull},
        {"no elevation", 0, "Time,Depth", "1,10", 10, kNull, kNull}};
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.definitions.flip_depth_sign = c.flip;
        survey.process(c.header, {c.line});
        EXPECT_EQ(survey.channel(kDepth, 1), c.depth) << c.label;
        EXPECT_EQ(survey.channel(kElevation, 1), c.elevation) << c.label;
        EXPECT_EQ(survey.channel(kDem, 1), c.dem) << c.label;
    }
}

TEST(FieldConversion, MakesTheTotalFieldOfThreeComponents)
{
    ProcessingRun survey(2, 3);
    survey.definitions.sensors[1].flip_sign = {0, 0, 1, 0};
    survey.process("Time,M1x,M1y,M1z,M2x,M2y,M2z", {"1,2,3,6,1,*,1"});
    EXPECT_EQ(survey.average(1, 0), 7);
    EXPECT_EQ(survey.average(1, 2), -3);
    EXPECT_EQ(survey.average(1, 0, 2), kNull);
    EXPECT_EQ(survey.average(1, 3, 2), 1);
}

TEST(SensorPositions, FollowTheFishByLeverArmAndAttitude)
{
    // Offset 2 m along the track, arm of 3 m: rotation 0 lies along v, 90 degrees along w.
    struct Case {
        const char* label;
        const char* attitude;
        double rotation;
        bool compass;
        std::vector<double> position;
    };
    const Case cases[] = {{"no attitude: u east, v north", "*,*,*", 0, false, {102, 203, 10}},
                          {"w is vertical", "0,0,0", 90, false, {102, 200, 13}},
                          {"heading 90: u north, v west", "90,0,0", 0, false, {97, 202, 10}},
                          {"pitch 90: u down", "0,90,0", 0, false, {100, 203, 8}},
                          {"roll 90: v up", "0,0,90", 0, false, {102, 200, 13}},
                          {"compass heading north: u north, v west", "0,0,0", 0, true, {97, 202, 10}},
                          {"compass heading east: u east, v north", "90,0,0", 0, true, {102, 203, 10}}};
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.parameters.CompassHeading = c.compass;
        survey.definitions.sensors[1].lever_arm = {0, 0, 2000, 0, 3000, c.rotation};
        survey.process("Time,East,North,Depth,Heading,Pitch,Roll,M1",
                       {std::string("1,100,200,10,") + c.attitude + ",5"});
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(survey.position(1)[axis], c.position[axis], 1e-6) << c.label;
        }
    }
}

TEST(SensorPositions, TakeElevationWithoutADepthAndKeepNullsApart)
{
    struct Case {
        const char* header;
        const char* line;
        std::vector<double> position;
    };
    const Case cases[] = {{"Time,East,North,Elevation", "1,5,6,7", {5, 6, 7}},
                          {"Time,East,North,Depth,Elevation", "1,5,6,*,7", {5, 6, kNull}},
                          {"Time,East,North,Depth", "1,*,6,7", {kNull, 6, 7}},
                          {"Time,North", "1,6", {kNull, 6, kNull}}};
    for (const Case& c : cases) {
        ProcessingRun survey;
        EXPECT_EQ(survey.process(c.header, {c.line}).position(1), c.position) << c.header;
    }
}

TEST(SensorPositions, AreReadFromColumnsInTheSystemOfTheFish)
{
    ProcessingRun survey;
    survey.definitions.read_sensor_location = 1;
    survey.definitions.coordinate_scale = 2;
    survey.definitions.depth_scale = 10;
    survey.definitions.flip_depth_sign = 1; // not for sensors
    survey.process("Time,North,M1,X1,Y1,Z1", {"1,9,5,10,20,3", "1.1,9,5,12,*,5"});
    EXPECT_EQ(survey.position(1), (std::vector<double>{22, 40, 40}));
    // The fish has no position: the track is the sensor's.
    const TrackTable track = track_table(survey.run.store);
    EXPECT_EQ(track.easting[1], 22);
    EXPECT_EQ(track.northing[1], 40);
}

TEST(TrackTable, GrowsByTheDistanceFromTheLastKnownPosition)
{
    ProcessingRun survey;
    survey.parameters.LoggingSampleRate = 0.5; // every second line
    survey.parameters.LoggingLineBreakDistance = 0;
    survey.parameters.LoggingLineBreakTime = 0;
    survey.parameters.CarryClosingSample = true;
    survey.process("Time,East,North", {"0,*,0", "2,10,20", "4,13,24", "6,*,24", "8,13,30"});
    const TrackTable track = track_table(survey.run.store);
    ASSERT_EQ(track.count, 5);
    EXPECT_EQ(std::vector<double>(track.distance + 1, track.distance + 6), (std::vector<double>{0, 0, 5, 5, 11}));
    EXPECT_EQ(track.time[2], 25569 + 2.0 / 86400);
}

} // namespace
} // namespace tarvo

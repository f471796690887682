#include "processing_run.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

using Lines = std::vector<std::string>;

TEST(AveragingBin, IsClosedByElapsedTimeAndLeavesOutTheSampleThatClosesIt)
{
    struct Case {
        const char* label;
        Lines lines;
        std::vector<double> times;
        std::vector<double> means;
        int left_out;
    };
    const Case cases[] = {
        {"no line", {}, {}, {}, 0},
        {"one sample", {"5 10"}, {5}, {10}, 0},
        {"exactly the interval closes", {"0 1", "0.9999 3", "1 50", "1.5 7"}, {0, 1.5}, {2, 7}, 1},
        {"rate of the data as low as that of the bins", {"0 1", "1 2", "2 3", "3 4"}, {0, 2}, {1, 3}, 2},
        {"a clock that runs back closes", {"86399.8 1", "86399.9 3", "0.1 50", "0.2 5"}, {86399.8, 0.2}, {2, 5}, 1},
        {"ten-thousandths, halves to even", {"0 1", "0.99995 2", "3 4"}, {0, 3}, {1, 4}, 1},
        {"time standing still", {"7 1", "7 2", "7 6"}, {7}, {3}, 0},
    };
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.parameters.LoggingLineBreakTime = 0;
        survey.process("Time M1", c.lines);
        EXPECT_EQ(survey.times(), c.times) << c.label;
        ASSERT_EQ(survey.records(), static_cast<std::int32_t>(c.means.size())) << c.label;
        for (std::size_t i = 0; i < c.means.size(); ++i) {
            EXPECT_EQ(survey.average(static_cast<std::int32_t>(i) + 1), c.means[i]) << c.label;
        }
        EXPECT_EQ(survey.run.lines_not_averaged, c.left_out) << c.label;
    }
}

TEST(AveragingBin, StartsWithTheSampleThatClosedTheLastOneWhenToldSo)
{
    ProcessingRun survey;
    survey.parameters.CarryClosingSample = true;
    survey.process("Time M1", {"0 1", "1 2", "2 3", "2.5 5", "4 8"});
    EXPECT_EQ(survey.times(), (std::vector<double>{0, 1, 2, 4}));
    EXPECT_EQ(survey.average(3), 4);
    EXPECT_EQ(survey.run.lines_not_averaged, 0);
}

TEST(AveragingBin, MeanSkipsInvalidValues)
{
    struct Case {
        const char* label;
        Lines values;
        double mean;
    };
    const Case cases[] = {{"null among valid", {"48210", "*", "48212"}, 48211},
                          {"exactly the limit", {"1e30", "48210", "-1e30"}, 48210},
                          {"just below it", {"0.9e30"}, 0.9e30},
                          {"nothing valid", {"", "nan", "1e31"}, kNull}};
    for (const Case& c : cases) {
        ProcessingRun survey;
        Lines lines;
        for (const std::string& value : c.values) lines.push_back("1," + value);
        EXPECT_EQ(survey.process("Time,M1", lines).average(1), c.mean) << c.label;
    }
    // A channel is bounded on one side alone.
    ProcessingRun survey;
    survey.process("Time,Pitch,Roll", {"1,-1e30,5e30", "1,4,5e30"});
    EXPECT_EQ(survey.channel(kPitch, 1), 4);
    EXPECT_EQ(survey.channel(kRoll, 1), 5e30);
}

TEST(AveragingBin, RefusesLinesWithoutATime)
{
    ProcessingRun survey;
    survey.process("Time M1", {"x 1", "", " ", "1 2", "1e300 3", "inf 4", "1"});
    EXPECT_EQ(survey.run.lines_read, 7);
    EXPECT_EQ(survey.run.lines_rejected, 5);
    EXPECT_EQ(survey.run.lines_processed, 2);
    EXPECT_EQ(survey.records(), 1);
    EXPECT_EQ(survey.average(1), 2); // the last line's field is missing: a null
}

TEST(AveragingBin, CountsTimeByLinesWhereThereIsNone)
{
    ProcessingRun survey;
    survey.parameters.LoggingSampleRate = 2;
    survey.process("M1", {"10", "20", "", "40", "50"});
    EXPECT_EQ(survey.times(), (std::vector<double>{0.5, 2.0}));
    EXPECT_EQ(survey.average(1), 10);
    EXPECT_EQ(survey.average(2), 40);
    EXPECT_EQ(survey.run.lines_not_averaged, 2);
}

TEST(AveragingBin, AveragesHeadingsOnTheCircleWhenToldSo)
{
    struct Case {
        Lines headings;
        double plain;
        double circular;
    };
    const Case cases[] = {{{"350", "10"}, 180, 0}, {{"358", "359", "6"}, 241, 1}, {{"10", "350", "*"}, 180, 0},
                          {{"90", "100"}, 95, 95}, {{"-10"}, -10, 350},           {{"720"}, 720, 0},
                          {{"*"}, kNull, kNull}};
    for (const Case& c : cases) {
        for (const bool circular : {false, true}) {
            ProcessingRun survey;
            survey.parameters.CircularHeading = circular;
            Lines lines;
            for (const std::string& heading : c.headings) lines.push_back("1," + heading);
            EXPECT_DOUBLE_EQ(survey.process("Time,Heading", lines).channel(kHeading, 1),
                             circular ? c.circular : c.plain);
        }
    }
}

TEST(AveragingBin, DecimatesOnlyWhatCountsTwice)
{
    ProcessingRun survey(2);
    survey.process("Time,Pitch,M1,M2", {"1,3,10,*"});
    FieldLocations locations;
    locate_header_fields(header_columns_of("Time,Pitch,M1,M2"), survey.definitions, locations);
    start_processing(survey.run, survey.definitions, locations, survey.parameters);
    process_data_line("1,3,10,*", survey.run);
    process_data_line("1.1,5,*,20", survey.run);
    process_data_line("1.2,*,30,*", survey.run);
    CurrentSample sample = survey.run.sample;
    EXPECT_EQ(decimate_accumulated_data_values(survey.run.bin, sample), 0);
    EXPECT_EQ(sample.ChannelValues[kPitch], 4);
    EXPECT_EQ(sample.ChannelValues[kRoll], kNull);
    EXPECT_EQ(sample.SensorValues[1], 20);
    EXPECT_EQ(sample.SensorValues[2], kNull);
}

} // namespace
} // namespace tarvo

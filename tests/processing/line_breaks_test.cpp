#include "processing_run.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

using Lines = std::vector<std::string>;
using Limits = std::vector<std::vector<int>>;

// Lines a second apart, each its own record, with the line numbers given.
Lines numbered(const std::vector<const char*>& numbers)
{
    Lines lines;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        lines.push_back(std::to_string(i) + ";" + numbers[i] + ";" + std::to_string(i));
    return lines;
}

TEST(LineBreaks, ComeFromTheLineNumbersOfTheData)
{
    struct Case {
        const char* label;
        std::vector<const char*> numbers;
        std::vector<double> lines;
        Limits limits;
        int dropped;
    };
    const Case cases[] = {
        {"two lines", {"7", "7", "7", "8", "8", "8"}, {7, 8}, {{1, 3, 3}, {4, 6, 3}}, 0},
        {"a short line is dropped, its records used again",
         {"7", "7", "8", "8", "8", "9"},
         {8, 9},
         {{1, 3, 3}, {4, 4, 1}},
         1},
        {"the last line stays, short or not", {"7", "7", "7", "8"}, {7, 8}, {{1, 3, 3}, {4, 4, 1}}, 0},
        {"a short line between long ones", {"7", "7", "7", "8", "9", "9", "9"}, {7, 9}, {{1, 3, 3}, {4, 6, 3}}, 1},
        {"back to an old number", {"7", "7", "7", "8", "8", "8", "7"}, {7, 8, 7}, {{1, 3, 3}, {4, 6, 3}, {7, 7, 1}}, 0},
        {"a null number breaks nothing", {"7", "*", "7", "8", "*", "8"}, {7, 8}, {{1, 3, 3}, {4, 6, 3}}, 0},
        {"a line opened with a null takes the first number", {"*", "7", "7", "8"}, {7, 8}, {{1, 3, 3}, {4, 4, 1}}, 0},
        {"-99999 is a number", {"-99999", "-99999", "-99999", "1"}, {-99999, 1}, {{1, 3, 3}, {4, 4, 1}}, 0},
        {"ten digits",
         {"2507290452", "2507290452", "2507290452", "2507290524"},
         {2507290452, 2507290524},
         {{1, 3, 3}, {4, 4, 1}},
         0},
    };
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.parameters.CarryClosingSample = true;
        survey.process("Time;Line;M1", numbered(c.numbers));
        EXPECT_EQ(survey.limits(), c.limits) << c.label;
        for (std::size_t line = 0; line < c.lines.size() && c.lines.size() == c.limits.size(); ++line) {
            EXPECT_EQ(survey.run.lines.LineNumbers[static_cast<std::int32_t>(line) + 1], c.lines[line]) << c.label;
        }
        EXPECT_EQ(survey.run.lines.ShortLinesDropped, c.dropped) << c.label;
        EXPECT_EQ(survey.average(survey.records()), static_cast<double>(c.numbers.size() - 1)) << c.label;
    }
}

TEST(LineBreaks, ComeFromDistanceAndTimeOtherwise)
{
    struct Case {
        const char* label;
        float distance;
        float time;
        Lines lines;
        Limits limits;
    };
    const Case cases[] = {
        {"exactly the distance", 5, 0, {"0,0,0", "1,1,0", "2,2,0", "2.5,5,4", "3.6,6,4"}, {{1, 2, 2}, {3, 3, 1}}},
        {"just below it", 5, 0, {"0,0,0", "1,1,0", "2,2,0", "2.5,4.9,4", "3.6,4.9,4"}, {{1, 2, 2}}},
        {"a null position breaks nothing", 5, 0, {"0,0,0", "1,*,0", "2,*,0", "2.5,900,*"}, {{1, 2, 2}}},
        {"more than the time", 0, 5, {"0,0,0", "0.5,0,0", "5.5001,0,0"}, {{1, 1, 1}, {2, 2, 1}}},
        {"exactly the time", 0, 5, {"0,0,0", "0.5,0,0", "5,0,0", "5.5,0,0"}, {{1, 2, 2}}},
        {"off", 0, 0, {"0,0,0", "1000,1000,0", "1001,5000,0"}, {{1, 2, 2}}},
    };
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.parameters.LoggingLineBreakDistance = c.distance;
        survey.parameters.LoggingLineBreakTime = c.time;
        survey.parameters.SmoothWindow = survey.parameters.GradientWindow = 1;
        ASSERT_EQ(min_line_records(survey.parameters), 2);
        survey.process("Time,East,North", c.lines);
        Limits kept = c.limits;
        if (kept.size() == 2 && kept[0][2] <= 2) kept = {{1, kept[1][2], kept[1][2]}}; // the first line was too short
        EXPECT_EQ(survey.limits(), kept) << c.label;
        EXPECT_EQ(survey.run.lines.CurrentLineNumber, c.limits.size()) << c.label;
    }
}

TEST(LineBreaks, CloseTheOpenBinAndOpenTheNextWithTheSampleAtHand)
{
    ProcessingRun survey;
    survey.process("Time,Line,M1", {"0,1,10", "0.1,1,20", "0.2,2,30", "0.3,2,50"});
    EXPECT_EQ(survey.records(), 1); // line 1 was too short
    EXPECT_EQ(survey.average(1), 40);
    EXPECT_EQ(survey.times(), std::vector<double>{0.2});
    EXPECT_EQ(survey.run.lines_not_averaged, 0);
}

TEST(LineBreaks, DroppingALineDropsItsTrack)
{
    ProcessingRun survey;
    survey.parameters.CarryClosingSample = true;
    survey.process("Time,East,North,Line",
                   {"0,0,0,1", "1,3,4,1", "2,*,4,1", "3,300,400,2", "4,*,4,2", "5,6,8,3", "6,6,8,3", "7,6,18,3"});
    const TrackTable track = track_table(survey.run.store);
    ASSERT_EQ(track.count, 6);
    EXPECT_EQ(std::vector<double>(track.distance + 1, track.distance + 7), (std::vector<double>{0, 5, 5, 10, 10, 20}));
    for (std::int32_t record = 1; record <= 6; ++record)
        EXPECT_EQ(line_of_record(survey.run.lines, record), record <= 3 ? 1 : 2);
}

TEST(LineBreaks, GrowTheTablesBeyondTheirSteps)
{
    Lines lines;
    for (int line = 1; line <= 3000; ++line) {
        for (int sample = 0; sample < 3; ++sample) {
            lines.push_back(std::to_string(line * 10 + sample) + "," + std::to_string(line) + "," +
                            std::to_string(line * sample));
        }
    }
    ProcessingRun survey;
    survey.parameters.CarryClosingSample = true;
    survey.process("Time,Line,M1", lines);
    ASSERT_EQ(survey.records(), 9000);
    ASSERT_EQ(survey.run.lines.CurrentLine, 3000);
    for (std::int32_t record = 1; record <= 9000; ++record) {
        const std::int32_t line = (record - 1) / 3 + 1;
        ASSERT_EQ(line_of_record(survey.run.lines, record), line);
        ASSERT_EQ(survey.average(record), line * ((record - 1) % 3));
    }
    EXPECT_EQ(survey.run.store.record_time.capacity() % 2048, 0);
    EXPECT_EQ(survey.run.lines.LineLimits.capacity() % 1024, 0);
}

} // namespace
} // namespace tarvo

#include "plain_projection.h"
#include "processing_run.h"

#include "intake/data_file.h"
#include "processing/format_rules.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// A run whose every accepted line is a record: "time east north total", separated by "|", nulls as "-".
struct LoggerRun {
    ProcessingRun survey;
    SampleProcessing& run = survey.run;
    std::string refusal;

    explicit LoggerRun(const std::vector<std::string>& format, const std::string& header = "Time,East,North,M1")
    {
        DataFormat data_format;
        for (const std::string& line : format) {
            EXPECT_EQ(take_data_format_line(data_format, line).outcome, KeyOutcome::taken) << line;
        }
        SurveyDefinitions& definitions = survey.definitions;
        definitions.data_format = data_format;
        for (const int slot : {kDepth, kElevation, kDem, kHeading, kPitch, kRoll, kLine}) {
            definitions.fields[static_cast<std::size_t>(slot)].name = "N/A";
        }
        survey.parameters.LoggingSampleRate = 10000;
        survey.parameters.CarryClosingSample = true;
        survey.parameters.LoggingLineBreakTime = 0;
        survey.parameters.LoggingLineBreakDistance = 0;
        survey.parameters.SmoothWindow = 0;
        survey.parameters.GradientWindow = 0;
        fill_using_template_number(definitions);
        FieldLocations locations;
        locate_header_fields(columns_of_names(header, definitions), definitions, locations);
        start_processing(run, definitions, locations, survey.parameters);
        refusal = data_format_refusal(definitions, &projections);
        if (refusal.empty()) {
            obey_data_format(run, definitions, locations, header, grid_of_positions(definitions, &projections));
        }
    }

    LoggerRun& take(const std::vector<std::string>& lines)
    {
        for (const std::string& line : lines) process_data_line(line, run);
        return *this;
    }

    std::string records()
    {
        close_open_bin(run);
        const auto text = [](double value) { return is_valid_sensor(value) ? format_shortest(value) : "-"; };
        std::string all;
        for (std::int32_t record = 1; record <= run.store.RecordCount; ++record) {
            const double seconds = survey.times()[static_cast<std::size_t>(record) - 1];
            all += (record > 1 ? "|" : "") + text(seconds) + ' ' + text(survey.channel(kEast, record)) + ' ' +
                   text(survey.channel(kNorth, record)) + ' ' + text(survey.average(record));
        }
        return all;
    }

    PlainProjections projections;
};

TEST(LoggerLines, AreReadByTheDataFormat)
{
    struct Case {
        const char* label;
        std::vector<std::string> format;
        std::string header;
        std::vector<std::string> lines;
        std::string records;
    };
    const Case cases[] = {
        {"an empty block: the plain form", {}, "Time,East,North,M1", {"1,2,3,4", "2 3 ;4,5"}, "1 2 3 4|2 3 4 5"},
        {"date and clock in two columns, joined in the order named",
         {"Time Columns : Clock, Day", "Time Form : hh:mm:ss DD.MM.YYYY", "Time Offset (s) : -18"},
         "Day,Clock,East,North,M1",
         {"02.01.1970,0:00:20.5,1,2,3"},
         "86402.5 1 2 3"},
        {"a clock runs on over midnight, a rise changes no day",
         {"Time Form : hh:mm:ss", "Survey Date : 1970-01-02"},
         "Time,East,North,M1",
         {"23:59:59,1,2,3", "00:00:01,1,2,3", "12:00:01,1,2,3", "00:00:02,1,2,3", "12:00:03,1,2,3"},
         "172799 1 2 3|172801 1 2 3|216001 1 2 3|172802 1 2 3|216003 1 2 3"},
        {"null texts as texts and as numbers, in any column; a null time rejects",
         {"Null Texts : * -9999.99 x", "Separator : semicolon"},
         "Time;East;North;M1",
         {"1;-9999.990;*;-9999.9", "*;1;1;1", "-9999.99;1;1;1", "2;X;x;+7"},
         "1 - - -9999.9|2 - - 7"},
        {"valid column: 0, empty or no number",
         {"Valid Column : ok"},
         "Time,East,North,M1,ok",
         {"1,1,1,5,1", "2,1,1,5,0", "3,1,1,5,", "4,1,1,5,x", "5,1,1,5,-2"},
         "1 1 1 5|2 1 1 -|3 1 1 -|4 1 1 -|5 1 1 5"},
        {"a unit counts where the first value of the column has one",
         {"Separator : comma"},
         "Time,East,North,M1",
         {"x,1,1,7", "1,,1m,", "2,3m,4,5nT", "3,4,5,6", "4,5m,6%,7nT", "5,5 m,6,7"},
         "1 - 1 -|2 3 4 5|3 4 5 6|4 5 6 7|5 - 6 7"},
        {"a unit is none where the first value has none",
         {},
         "Time,East,North,M1",
         {"1,x,4,5", "2,3m,4m,5nT"},
         "1 - 4 5|2 - - -"},
        {"the names again, marks and all",
         {"Separator : comma"},
         "# Time,East,North,M1 |",
         {"1,1,1,1", " # Time,East,North,M1 |", "Time,East,North,M1", "2,2,2,2"},
         "1 1 1 1|2 2 2 2"},
        {"degrees",
         {"Position Form : degrees", "Survey Grid : plain", "Separator : comma"},
         "Time,North,East,M1",
         {"1,1.5,2,7", "2,N 10 30,2W,7", "3,0,0,7", "4,91,2,7", "5,1,,7", "6,85,1,7", "7,0,270,7"},
         "1 2000 1500 7|2 -2000 10500 7|3 - - 7|4 - - 7|5 - - 7|6 - - 7|7 -90000 0 7"},
        {"NMEA with letters in the next columns",
         {"Position Form : NMEA", "Survey Grid : plain"},
         "Time,North,ns,East,ew,M1",
         {"1,0130.00,S,00200.0,W,7", "2,0130.00,E,00200.0,W,7"},
         "1 -2000 -1500 7|2 - - 7"},
        {"fields in quotes, nothing behind the last separator",
         {"Separator : tab"},
         "Time\tEast\tNorth\tM1",
         {"\"1\"\t2\t\t4\t", "2\t3"},
         "1 2 - 4|2 3 - -"},
    };
    for (const Case& c : cases) {
        LoggerRun run(c.format, c.header);
        ASSERT_EQ(run.refusal, "") << c.label;
        EXPECT_EQ(run.take(c.lines).records(), c.records) << c.label;
    }
}

TEST(LoggerLines, ScalesMetresOfTheGrid)
{
    LoggerRun run({"Position Form : degrees", "Survey Grid : plain"});
    run.run.plan.scaled_channels = {{kEast, 2}};
    EXPECT_EQ(run.take({"1,1,2,3"}).records(), "1 2000 2000 3");
}

TEST(LoggerLines, RefusesAFormatThatCannotBeObeyed)
{
    EXPECT_NE(LoggerRun({"Position Form : degrees"}).refusal, "");
    EXPECT_EQ(LoggerRun({"Position Form : degrees", "Survey Grid : UTM 99N"}).refusal, "no such grid");
    EXPECT_EQ(LoggerRun({"Survey Grid : UTM 99N"}).refusal, ""); // serves read-outs only
}

TEST(LoggerLines, PlacesRecordsBetweenFixes)
{
    struct Case {
        const char* label;
        std::vector<std::string> lines;
        std::string records;
    };
    const Case cases[] = {
        {"linear in time, once the later fix is there",
         {"1,10,20,7", "1.5,,20,7", "2,,,7", "3,30,0,7"},
         "1 10 20 7|1.5 15 15 7|2 20 10 7|3 30 0 7"},
        {"more than two seconds apart", {"1,10,20,7", "2,,,7", "3.0001,30,0,7"}, "1 10 20 7|2 - - 7|3.0001 30 0 7"},
        {"before the first fix", {"1,,,7", "2,30,0,7"}, "1 - - 7|2 30 0 7"},
        {"time that runs back", {"1,10,20,7", "5,,,7", "2,30,0,7"}, "1 10 20 7|5 - - 7|2 30 0 7"},
    };
    for (const Case& c : cases) {
        LoggerRun run({});
        EXPECT_EQ(run.take(c.lines).records(), c.records) << c.label;
    }
    LoggerRun run({});
    run.take({"1,0,0,7", "2,,,7", "3,6,8,7"}).records();
    EXPECT_EQ(run.run.store.distance[2], 5);
    EXPECT_EQ(run.run.store.distance[3], 10);
    EXPECT_EQ(run.survey.position(2), (std::vector<double>{3, 4, kNull})); // the sensor's
    EXPECT_EQ(run.run.first_placed_record, 2);
}

TEST(LoggerLines, FollowTheBoatAtALayback)
{
    struct Case {
        const char* label;
        std::vector<std::string> format;
        std::vector<std::string> lines;
        std::string records;
    };
    const Case cases[] = {
        {"round a corner, nothing before enough path is there",
         {"Layback (m) : 5"},
         {"1,0,0,7", "2,4,0,7", "3,6,0,7", "4,6,3,7"},
         "1 - - 7|2 - - 7|3 1 0 7|4 4 0 7"},
        {"latency alone: where the boat was",
         {"Latency (s) : 0.5"},
         {"1,0,0,7", "2,4,0,7", "2.25,5,0,7"},
         "1 - - 7|2 2 0 7|2.25 3 0 7"},
        {"a line between fixes is not on the path yet",
         {"Layback (m) : 1"},
         {"1,0,0,7", "2,,,7", "6,4,0,7"},
         "1 - - 7|2 - - 7|6 3 0 7"},
        {"ten seconds without a position keep the path, more begin it anew",
         {"Layback (m) : 1"},
         {"1,0,0,7", "11,4,0,7", "21.0001,8,0,7", "22,12,0,7"},
         "1 - - 7|11 3 0 7|21.0001 - - 7|22 11 0 7"},
        {"time that runs back begins it anew",
         {"Layback (m) : 1"},
         {"5,0,0,7", "4,4,0,7", "6,8,0,7"},
         "5 - - 7|4 - - 7|6 7 0 7"},
    };
    for (const Case& c : cases) {
        LoggerRun run(c.format);
        EXPECT_EQ(run.take(c.lines).records(), c.records) << c.label;
    }
}

TEST(LoggerLines, ListsTheFirstThousandRejectedOfEachReason)
{
    LoggerRun run({"Time Form : hh:mm:ss", "Null Texts : *"});
    run.take({"", "*,1,1,1", "25:00:00,\"1\n", "Time,East,North,M1", "12:00:00,1,1,1"});
    const std::string latin_one = "12:00:0\xE9" + std::string(300, 'a');
    run.take(std::vector<std::string>(1500, latin_one));
    const std::vector<std::string> files = {"folder/bay.csv"};
    std::string text;
    export_rejected_lines(run.run.rejected, files, [&text](std::string_view part) { text += part; });
    EXPECT_TRUE(text.starts_with("file,line,reason,text\n"
                                 "bay.csv,1,empty line,\n"
                                 "bay.csv,2,no time,\"*,1,1,1\"\n"
                                 "bay.csv,3,the time does not fit the time form,\"25:00:00,\"\"1\n\"\n"
                                 "bay.csv,4,repeats the names,\"Time,East,North,M1\"\n"
                                 "bay.csv,6,the time does not fit the time form,12:00:0\\xE9" +
                                 std::string(192, 'a') + "\n"))
        << text.substr(0, 600);
    EXPECT_EQ(run.run.rejected.lines.size(), 1003U);
    EXPECT_EQ(run.run.rejected.counts[static_cast<std::size_t>(LineFault::no_such_time)], 1501);
    EXPECT_EQ(run.run.lines_rejected, 1504);
}

} // namespace
} // namespace tarvo

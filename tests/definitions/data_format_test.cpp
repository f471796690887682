#include "definitions/definitions_file.h"

#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// A plain file with a block behind it; slot 1 is called "Time".
std::string with_block(const std::string& block)
{
    return "Tarvo Program Parameters V3.0\r\n\r\nCoordinate Data Scale : 1.0000\r\nDepth Data Scale : 1.0000 0\r\n\r\n"
           "Number of Fish Data Fields : 1 1\r\n\r\n1: Time\r\n\r\nNumber of Sensors : 1\r\n"
           "Number of Components per Sensor : 1\r\nRead Sensor Location: No\r\n\r\nSensor Number 1\r\n"
           "Sensor Along Track Offset from Fish Location (mm): 0.000\r\nSensor Arm Length (mm): 0.000\r\n"
           "Sensor Arm Rotation (deg): 0.000\r\nSensor Component 1: MAG\r\n\r\nSensor Name Template\r\n"
           "N/A\r\nN/A\r\nN/A\r\nN/A\r\nN/A\r\nN/A\r\n" +
           block;
}

const std::string kEveryKey = "\r\nData Format\r\nSeparator : tab\r\nNames : none\r\n"
                              "Time Columns : Time, \"Clock, \"\"local\"\"\"\r\nTime Form : YYYY/MM/DD hh:mm:ss\r\n"
                              "Time Offset (s) : -18.000\r\nSurvey Date : 2020-02-29\r\nPosition Form : NMEA\r\n"
                              "Survey Grid : UTM 35N\r\nNull Texts : -9999.99 *\r\nValid Column : Mag,Valid\r\n"
                              "Layback (m) : 12.500\r\nLatency (s) : 0.250\r\nColour of Box : red: dark\r\nnothing\r\n";

TEST(DataFormat, BlockReadsBackToTheByte)
{
    struct Case {
        const char* label;
        std::string block;
        std::string written;
    };
    const std::string title = "\r\nData Format\r\n";
    const Case cases[] = {
        {"none", "", ""},
        {"something else", "\r\nOther\r\nData Format\r\nNames : none\r\n", ""},
        {"title alone", title, title},
        {"every key", kEveryKey, kEveryKey},
        {"any order, case and blanks", "\n data format \nNAMES:NONE\n\tseparator : Comma ",
         title + "Separator : comma\r\nNames : none\r\n"},
        {"defaults and empty values",
         title + "Separator : any\r\nTime Form :\r\nTime Offset (s): 0\r\nSurvey Date: 1970-01-01\r\nLayback (m):\r\n",
         title},
        {"ends at an empty line", title + "Names : none\r\n \r\nSeparator : comma\r\n", title + "Names : none\r\n"},
        {"the Time slot's own column", title + "Time Columns : TIME\r\n", title},
    };
    const TestFolder folder;
    for (const Case& c : cases) {
        FakeOperator op;
        SurveyDefinitions read;
        read.data_format.emplace().survey_grid = "of the file before";
        int header_line = 1;
        ASSERT_EQ(read_definitions(folder.write("a.def", with_block(c.block)), read, header_line, op).status, 0)
            << c.label;
        EXPECT_EQ(op.messages.size(), c.block == kEveryKey ? 1U : 0U) << c.label;
        read.fields[kTime].name = "Time";
        ASSERT_EQ(write_definitions(folder.path("b.def"), read, header_line, op), 0) << c.label;
        EXPECT_EQ(folder.read("b.def"), with_block(c.written)) << c.label;
    }
}

TEST(DataFormat, FillsTheRecord)
{
    const TestFolder folder;
    FakeOperator op;
    SurveyDefinitions read;
    int header_line = 1;
    read_definitions(folder.write("a.def", with_block(kEveryKey)), read, header_line, op);
    const DataFormat expected{Separator::tab,
                              false,
                              {"Time", "Clock, \"local\""},
                              "YYYY/MM/DD hh:mm:ss",
                              -18,
                              {2020, 2, 29},
                              PositionForm::nmea,
                              "UTM 35N",
                              {"-9999.99", "*"},
                              "Mag,Valid",
                              12.5,
                              0.25,
                              {"Colour of Box : red: dark", "nothing"}};
    EXPECT_EQ(read.data_format, expected);

    read_definitions(folder.write("a.def", with_block("\nData Format\nTime Columns : Date,Clock")), read, header_line,
                     op);
    EXPECT_EQ(read.fields[kTime].name, "Date");
    EXPECT_EQ(time_column_names(read), (std::vector<std::string>{"Date", "Clock"}));
    read_definitions(folder.write("a.def", with_block("\nData Format\nTime Columns : Clock")), read, header_line, op);
    EXPECT_EQ(time_column_names(read), std::vector<std::string>{"Clock"});
    EXPECT_TRUE(read.data_format->time_columns.empty());
}

TEST(DataFormat, RefusalNamesTheLine)
{
    struct Case {
        const char* lines;
        const char* says;
    };
    const Case cases[] = {
        {"Names : none\nSeparator : pipe",
         "line 30: any, comma, semicolon, tab or blank as Separator was expected, found \"pipe\""},
        {"Names : none\nnames : line", "line 30: each key once was expected, found \"Names\" again"},
        {"Time Columns : a,b,c,d", "one to three"},
        {"Time Columns : a,,b", "one to three"},
        {"Time Columns : a,", "one to three"},
        {"Time Columns : \"a", "one to three"},
        {"Time Form : YYYY-MM",
         "a form such as YYYY/MM/DD hh:mm:ss (a date without its day) as Time Form was expected"},
        {"Time Offset (s) : 1,5", "a number of seconds as Time Offset (s) was expected, found \"1,5\""},
        {"Survey Date : 2021-02-29", "a date as YYYY-MM-DD"},
        {"Survey Date : 2021-2-9", "a date"},
        {"Position Form : metres", "grid, degrees or NMEA"},
        {"Layback (m) : -0.001", "of at least 0 as Layback"},
        {"Latency (s) : abc", "of at least 0 as Latency"},
    };
    const TestFolder folder;
    for (const Case& c : cases) {
        FakeOperator op;
        SurveyDefinitions read;
        int header_line = 1;
        const std::string file = folder.write("a.def", with_block("\nData Format\n" + std::string(c.lines)));
        EXPECT_EQ(read_definitions(file, read, header_line, op).status, -1) << c.lines;
        ASSERT_EQ(op.messages.size(), 1U) << c.lines;
        EXPECT_NE(op.messages[0].find(c.says), std::string::npos) << op.messages[0];
    }
}

} // namespace
} // namespace tarvo

#include "intake/header.h"

#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

SurveyDefinitions definitions_naming(std::array<const char*, number_of_field_slots + 1> names)
{
    SurveyDefinitions definitions;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) definitions.fields[slot].name = names[slot];
    definitions.sensors[1].component_columns[1] = "TMI";
    return definitions;
}

TEST(HeaderColumns, AreFoundWhateverCaseAndSpacing)
{
    const HeaderColumns columns = header_columns_of(" time, EAST ,north,Depth;TMI\tx,,time ");
    EXPECT_EQ(columns.names(), (std::vector<std::string>{"time", "EAST", "north", "Depth", "TMI", "x", "", "time"}));
    struct Case {
        const char* name;
        int index;
        const char* spelling;
    };
    const Case cases[] = {{"Time", 1, "time"}, {" east ", 2, "EAST"}, {"NORTH", 3, "north"}, {"tmi", 5, "TMI"},
                          {"", 0, "N/A"},      {" ", 0, "N/A"},       {"N/A", 0, "N/A"},     {"eas", 0, "N/A"}};
    for (const Case& c : cases) {
        EXPECT_EQ(columns.find_column(c.name).index, c.index) << c.name;
        EXPECT_EQ(columns.find_column(c.name).spelling, c.spelling) << c.name;
    }
    EXPECT_EQ(HeaderColumns({"N/A", "a"}).find_column("N/A").index, 0);
}

TEST(HeaderColumns, LeaveOutACommentMarkOfItsOwn)
{
    struct Case {
        const char* header;
        std::vector<std::string> names;
    };
    const Case cases[] = {{"/ Line X Y", {"Line", "X", "Y"}},
                          {"// a,b", {"a", "b"}},
                          {"#\ta b", {"a", "b"}},
                          {"% a", {"a"}},
                          {"#,a", {"#", "a"}},
                          {"# ,a", {"#", "a"}},
                          {"/ ;a", {"/", "a"}},
                          {"#a b", {"#a", "b"}},
                          {"///", {"///"}},
                          {"#", {"#"}},
                          {"", {}}};
    for (const Case& c : cases) EXPECT_EQ(header_columns_of(c.header).names(), c.names) << c.header;
}

TEST(HeaderReading, StopsAtTheHeaderLine)
{
    const TestFolder folder;
    const std::string file = folder.write("a.csv", "title\r\n\r\nTime,East\r\n1,2\r\n");
    struct Case {
        int mode;
        int line;
        int status;
        const char* header;
        bool stream;
    };
    const Case cases[] = {{1, 3, 0, "Time,East", true},
                          {0, 3, 0, "Time,East", false},
                          {1, 2, 0, "", true},
                          {1, 4, 0, "1,2", true},
                          {1, 5, -1, "", false}};
    for (const Case& c : cases) {
        FakeOperator op;
        const HeaderReading reading = read_header_line(c.mode, file, c.line, op);
        EXPECT_EQ(reading.status, c.status) << c.line;
        EXPECT_EQ(reading.header, c.header) << c.line;
        EXPECT_EQ(reading.stream != nullptr, c.stream) << c.line;
        if (c.status == 0)
            EXPECT_TRUE(op.messages.empty());
        else
            EXPECT_EQ(op.messages, std::vector<std::string>{"The specified file does not appear to contain any data"});
    }
    FakeOperator op;
    const HeaderReading reading = read_header_line(1, file, 3, op);
    EXPECT_EQ(reading.stream->characters_consumed(), 20);
    EXPECT_EQ(read_header_line(1, folder.path("absent.csv"), 1, op).status, -1);
    EXPECT_EQ(read_header_line(1, folder.path("."), 1, op).status, -1);
    EXPECT_EQ(op.messages.size(), 2U);
}

TEST(LocatedFields, CountInSlotOrderAndSensorByOrder)
{
    SurveyDefinitions definitions = definitions_naming({"", "t", "e", "n", "N/A", "z", "dem", "N/A", "p", "r", "l"});
    definitions.components_per_sensor = 3;
    definitions.read_sensor_location = 1;
    definitions.sensors.assign(3, SensorDefinition());
    definitions.number_of_sensors = 2;
    definitions.sensors[1].component_columns = {"", "B1X", "absent", "B1Z"};
    definitions.sensors[1].coordinate_columns = {"", "x1", "y1", "z1"};
    definitions.sensors[2].component_columns = {"", "B2X", "B2Y", "B2Z"};
    definitions.sensors[2].coordinate_columns = {"", "N/A", "y1", "z1"};
    FieldLocations at;
    const HeaderColumns header = header_columns_of("l,r,p,dem,z,n,e,t,b1x,b1z,b2x,b2y,b2z,x1,y1,z1");
    const ColumnLocating located = locate_header_fields(header, definitions, at);
    ASSERT_EQ(located.status, 0);
    EXPECT_EQ(at.column, (std::array<std::int32_t, 11>{-1, 7, 6, 5, -1, 4, 3, -1, 2, 1, 0}));
    EXPECT_EQ(at.located_field_count, 8);
    EXPECT_EQ(definitions.fields[kElevation].field_index, 4);
    EXPECT_EQ(definitions.fields[kHeading].field_index, 0);
    EXPECT_EQ(at.depth_channels, (std::vector<int>{kElevation, kDem}));
    EXPECT_EQ(at.attitude_channels, (std::vector<int>{kPitch, kRoll}));
    EXPECT_FALSE(at.derived_dem);
    EXPECT_EQ(at.sensor_column, (std::vector<std::int32_t>{-1, 8, 9, 13, 14, 15, 10, 11, 12, 14, 15}));
    EXPECT_EQ(definitions.sensors[1].column_slots,
              (std::array<std::int32_t, 12>{-1, -1, -1, 1, -1, -1, -1, -1, -1, 2, -1, -1}));
    EXPECT_EQ(definitions.sensors[1].location_slots, (std::array<std::int32_t, 4>{-1, 3, 4, 5}));
    EXPECT_EQ(definitions.sensors[2].location_slots, (std::array<std::int32_t, 4>{-1, -1, 9, 10}));
    constexpr WarningAbout kColumns = WarningAbout::columns;
    EXPECT_EQ(located.warnings,
              (Warnings{{kColumns, "Depth", "No Depth column was not found"},
                        {kColumns, "sensor 1", "The sensor component field absent was not located for sensor 1"},
                        {kColumns, "sensor 2", "The sensor coordinate field N/A was not located for sensor 2"}}));
}

TEST(LocatedFields, ReportEverythingThatIsMissing)
{
    SurveyDefinitions definitions =
        definitions_naming({"", "Time", "N/A", "", "Depth", "Elev", "N/A", "N/A", "N/A", "N/A", "Line"});
    FieldLocations at;
    std::vector<std::string> texts;
    for (const Warning& warning : locate_header_fields(HeaderColumns(), definitions, at).warnings) {
        texts.push_back(warning.text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"The Time column was not found", "The East column was not found",
                                               "The North column was not found", "No Depth column was not found",
                                               "The field name: Time was not located in the header",
                                               "The field name: Depth was not located in the header",
                                               "The field name: Elev was not located in the header",
                                               "The field name: Line was not located in the header",
                                               "The sensor component field TMI was not located for sensor 1"}));
}

TEST(LocatedFields, DeriveADemFromDepthAndElevation)
{
    for (const char* const header : {"depth,alt", "depth,alt,dem", "alt"}) {
        SurveyDefinitions definitions = definitions_naming({"", "", "", "", "depth", "alt", "dem", "", "", "", ""});
        FieldLocations at;
        locate_header_fields(header_columns_of(header), definitions, at);
        EXPECT_EQ(at.derived_dem, std::string(header) == "depth,alt") << header;
    }
}

} // namespace
} // namespace tarvo

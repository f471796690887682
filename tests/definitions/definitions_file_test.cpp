#include "definitions/definitions_file.h"

#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

const std::string kTwoSensors = "Tarvo Program Parameters V3.0\r\n\r\n"
                                "Coordinate Data Scale : 0.5000\r\nDepth Data Scale : 1.0000 1\r\n\r\n"
                                "Number of Fish Data Fields : 2 3\r\n\r\n1: UTC Time\r\n\r\n4: depth\r\n\r\n"
                                "Number of Sensors : 2\r\nNumber of Components per Sensor : 3\r\n"
                                "Read Sensor Location: No\r\n\r\n"
                                "Sensor Number 1\r\nSensor Along Track Offset from Fish Location (mm): -1250.500\r\n"
                                "Sensor Arm Length (mm): 300.000\r\nSensor Arm Rotation (deg): 0.000\r\n"
                                "Sensor Component 1: BX\r\nSensor Component 2 (flip sign): BY\r\n"
                                "Sensor Component 3: BZ\r\n\r\n"
                                "Sensor Number 2\r\nSensor Along Track Offset from Fish Location (mm): 0.000\r\n"
                                "Sensor Arm Length (mm): 300.000\r\nSensor Arm Rotation (deg): 180.000\r\n"
                                "Sensor Component 1: CX\r\nSensor Component 2: CY\r\nSensor Component 3: CZ\r\n\r\n"
                                "Sensor Name Template\r\nMag*_X\r\nMag*_Y\r\nMag*_Z\r\nX*\r\nY*\r\n Z* \r\n";

SurveyDefinitions two_sensors()
{
    SurveyDefinitions definitions;
    definitions.coordinate_scale = 0.5;
    definitions.flip_depth_sign = 1;
    for (FieldSlot& field : definitions.fields) field.name = "N/A";
    definitions.fields[kTime].name = "UTC Time";
    definitions.fields[kDepth].name = "depth";
    definitions.number_of_sensors = 2;
    definitions.components_per_sensor = 3;
    definitions.component_templates = {"N/A", "Mag*_X", "Mag*_Y", "Mag*_Z"};
    definitions.coordinate_templates = {"N/A", "X*", "Y*", " Z* "};
    definitions.sensors.assign(3, SensorDefinition());
    definitions.sensors[1].component_columns = {"N/A", "BX", "BY", "BZ"};
    definitions.sensors[1].flip_sign = {0, 0, 1, 0};
    definitions.sensors[1].lever_arm = {0, 0, -1250.5, 0, 300, 0};
    definitions.sensors[2].component_columns = {"N/A", "CX", "CY", "CZ"};
    definitions.sensors[2].lever_arm = {0, 0, 0, 0, 300, 180};
    return definitions;
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    text.replace(text.find(from), from.size(), to);
    return text;
}

TEST(DefinitionsFile, IsWrittenToTheByteAndReadsBackWhole)
{
    const TestFolder folder;
    FakeOperator op;
    SurveyDefinitions written = two_sensors();
    written.sensors[1].coordinate_columns = {"N/A", "x1", "y1", "z1"}; // not kept without columns to read
    ASSERT_EQ(write_definitions(folder.path("a.def"), written, 3, op), 0);
    EXPECT_EQ(folder.read("a.def"), kTwoSensors);
    EXPECT_EQ(written, two_sensors());

    SurveyDefinitions read;
    int header_line = 1;
    const DefinitionsReading reading = read_definitions(folder.path("a.def"), read, header_line, op);
    EXPECT_EQ(reading.status, 0);
    EXPECT_EQ(reading.version, 3);
    EXPECT_EQ(reading.field_lines, 2);
    EXPECT_EQ(header_line, 3);
    EXPECT_EQ(read, two_sensors());
    EXPECT_TRUE(op.messages.empty());

    written.fields[kTime].name = "Time, s"; // as a header in quotes may name it
    written.sensors[2].component_columns[3] = "CZ, NT";
    write_definitions(folder.path("a.def"), written, 3, op);
    EXPECT_EQ(read_definitions(folder.path("a.def"), read, header_line, op).status, 0);
    EXPECT_EQ(read, written);
}

TEST(DefinitionsFile, IsReadInEveryForm)
{
    // Version 2 carries lines that are passed over.
    std::string version2 = replaced(kTwoSensors, "V3.0\r\n\r\n", "V2.0\r\n\r\nx\r\nx\r\nx\r\n");
    version2 = replaced(version2, "1.0000 1\r\n", "1.0000 1\r\nx\r\n");
    version2 = replaced(version2, "UTC Time\r\n", "UTC Time\r\nx\r\n");
    version2 = replaced(version2, "depth\r\n", "depth\r\nx\r\n");
    version2 = replaced(version2, "Sensor : 3\r\n", "Sensor : 3\r\nx\r\n");
    version2 = replaced(version2, "Location: No\r\n", "Location: No\r\nx\r\nx\r\n");

    struct Case {
        const char* label;
        std::string text;
        std::function<void(SurveyDefinitions&)> change;
        int header = 3;
        int version = 3;
    };
    const auto same = [](SurveyDefinitions&) {};
    const Case cases[] = {
        {"version 1", replaced(kTwoSensors, "V3.0", "V1.0"), same, 3, 1},
        {"version 2", version2, same, 3, 2},
        {"no version", replaced(kTwoSensors, " Program Parameters V3.0", ""), same},
        {"no header line number", replaced(kTwoSensors, ": 2 3\r", ": 2\r"), same, 7},
        {"header line number 0", replaced(kTwoSensors, ": 2 3\r", ": 2 0\r"), same, 7},
        {"header line number that is none", replaced(kTwoSensors, ": 2 3\r", ": 2 x\r"), same, 7},
        {"depth sign from the scale's last digit", replaced(kTwoSensors, "1.0000 1\r", "1.0000\r"),
         [](SurveyDefinitions& d) { d.flip_depth_sign = 0; }},
        {"depth scale ending in 1", replaced(kTwoSensors, "1.0000 1\r", "1.01\r"),
         [](SurveyDefinitions& d) { d.depth_scale = 1.01; }},
        {"quoted value lines, a comma and what follows",
         replaced(replaced(kTwoSensors, "4: depth", "\"4: depth\""), ": 2\r\nNumber of C", ": 2, two\r\nNumber of C"),
         same},
        {"field 0 goes to the unused slot", replaced(kTwoSensors, "4: depth", "0: depth"),
         [](SurveyDefinitions& d) {
             d.fields[kDepth].name = "N/A";
             d.fields[0].name = "depth";
         }},
        {"components in upper case", replaced(kTwoSensors, ": BX", ": bx "), same},
        {"no templates", kTwoSensors.substr(0, kTwoSensors.find("\r\nSensor Name Template")),
         [](SurveyDefinitions& d) {
             d.component_templates = d.coordinate_templates = {"N/A", "old", "N/A", "N/A"};
         }},
    };
    const TestFolder folder;
    for (const Case& c : cases) {
        FakeOperator op;
        SurveyDefinitions read;
        read.component_templates = read.coordinate_templates = {"N/A", "old", "N/A", "N/A"};
        SurveyDefinitions expected = two_sensors();
        c.change(expected);
        int header_line = 7;
        const DefinitionsReading reading = read_definitions(folder.write("a.def", c.text), read, header_line, op);
        EXPECT_EQ(reading.status, 0) << c.label;
        EXPECT_EQ(reading.version, c.version) << c.label;
        EXPECT_EQ(header_line, c.header) << c.label;
        EXPECT_TRUE(read == expected) << c.label;
    }
}

TEST(DefinitionsFile, ReadsCoordinateColumnsInsteadOfLeverArms)
{
    const std::string text = "Tarvo V3.0\n\nc: 1\nd: 1 0\n\nn: 0 1\n\ns: 1\nc: 1\nRead Sensor Location: yEs\n\n"
                             "Sensor Number 1\nX: east 1\nY: north 1\nZ: up 1\nSensor Component 1: tmi";
    const TestFolder folder;
    FakeOperator op;
    SurveyDefinitions read;
    int header_line = 1;
    EXPECT_EQ(read_definitions(folder.write("a.def", text), read, header_line, op).status, 0);
    EXPECT_EQ(read.read_sensor_location, 1);
    EXPECT_EQ(read.sensors[1].coordinate_columns, (std::array<std::string, 4>{"N/A", "east 1", "north 1", "up 1"}));
    EXPECT_EQ(read.sensors[1].component_columns[1], "TMI");
}

TEST(DefinitionsFile, NamesLineAndExpectationOfWhatIsWrong)
{
    struct Case {
        std::string text;
        const char* says;
    };
    const Case cases[] = {
        {replaced(kTwoSensors, ": 0.5000", ": 0.5m"),
         "line 3: a number as coordinate data scale was expected, found \"0.5m\""},
        {replaced(kTwoSensors, ": 1.0000 1", ":"), "line 4: a number as depth data scale was expected, found \"\""},
        {replaced(kTwoSensors, "1.0000 1", "1.0000 yes"), "line 4: 0 or 1 as depth sign was expected, found \"yes\""},
        {replaced(kTwoSensors, "4: depth", "11: depth"), "line 10: a field number from 1 to 10 was expected, found 11"},
        {replaced(kTwoSensors, "4: depth", "-1: depth"), "found -1"},
        {replaced(kTwoSensors, "Sensors : 2", "Sensors : 0"),
         "a number of sensors from 1 to 1000 was expected, found 0"},
        {replaced(kTwoSensors, "Sensors : 2", "Sensors : 1001"), "found 1001"},
        {replaced(kTwoSensors, "Sensors : 2", "Sensors : 99999999999"), "found 99999999999"},
        {replaced(kTwoSensors, "Sensor : 3", "Sensor : 2"), "1 or 3 components per sensor was expected, found 2"},
        {replaced(kTwoSensors, "(mm): 300.000", "(mm): long"),
         "a number as lever arm value was expected, found \"long\""},
        {kTwoSensors.substr(0, kTwoSensors.find("Sensor Number 2")), "the file ends after line"},
        {kTwoSensors.substr(0, kTwoSensors.find("X*")), "a column name template was expected"},
        {"Tarvo\n" + std::string(2'000'000, 'x'), "over 1 MiB"},
    };
    const TestFolder folder;
    for (const Case& c : cases) {
        FakeOperator op;
        SurveyDefinitions read;
        int header_line = 1;
        EXPECT_EQ(read_definitions(folder.write("a.def", c.text), read, header_line, op).status, -1);
        ASSERT_EQ(op.messages.size(), 1U);
        EXPECT_TRUE(op.messages[0].starts_with("An error occurred while reading the Data Field Definitions : " +
                                               folder.path("a.def")));
        EXPECT_NE(op.messages[0].find(c.says), std::string::npos) << op.messages[0];
        EXPECT_EQ(read.sensors.size(), static_cast<std::size_t>(read.number_of_sensors) + 1);
    }
}

TEST(DefinitionsFile, LeavesTheRecordAloneWhenItIsNone)
{
    const TestFolder folder;
    for (const std::string text : {"", "tarvo V3.0",
                                   "\x7f"
                                   "ELF",
                                   "Time,East\n1,2\n"}) {
        FakeOperator op;
        SurveyDefinitions read = two_sensors();
        int header_line = 5;
        EXPECT_EQ(read_definitions(folder.write("a.def", text), read, header_line, op).status, -1);
        EXPECT_EQ(op.messages, std::vector<std::string>{"The specified file does not have the correct format"});
        EXPECT_EQ(read, two_sensors());
    }
}

TEST(DefinitionsFile, TellsWhatCannotBeWritten)
{
    const TestFolder folder;
    FakeOperator op;
    SurveyDefinitions definitions = two_sensors();
    EXPECT_EQ(write_definitions(folder.path("absent/a.def"), definitions, 1, op), -1);
    ASSERT_EQ(op.messages.size(), 1U);
    EXPECT_TRUE(op.messages[0].starts_with("An error occurred while writing the Data Field Definitions : "));
}

} // namespace
} // namespace tarvo

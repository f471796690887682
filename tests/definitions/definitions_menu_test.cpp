#include "definitions/definitions_menu.h"

#include "definitions/definitions_file.h"
#include "definitions/sensor_grid.h"
#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

constexpr const char* kFilter = "Data Field Definitions Files (*.def)|*.def|All files (*.*)|*.*";

SurveyDefinitions definitions_with_sensors(int sensors)
{
    SurveyDefinitions definitions;
    for (FieldSlot& field : definitions.fields) field.name = "N/A";
    definitions.number_of_sensors = sensors;
    definitions.sensors.resize(static_cast<std::size_t>(sensors) + 1);
    return definitions;
}

TEST(DefinitionsMenu, SaveWritesReportsAndNamesTheFile)
{
    const TestFolder folder;
    FakeOperator op;
    op.chosen_file = folder.path("bay.def");
    SurveyDefinitions working = definitions_with_sensors(2);
    const auto saved = menu_file_save(working, 3, op);
    ASSERT_TRUE(saved);
    EXPECT_EQ(definitions_caption(*saved), "Data Field Definitions : bay.def");
    EXPECT_EQ(op.messages, std::vector<std::string>{"Output complete"});
    EXPECT_TRUE(op.questions.empty());
    const FileQuestion& asked = op.file_questions.at(0);
    EXPECT_EQ(asked.title, "Select the Data Field Definitions file to create");
    EXPECT_EQ(asked.filter, kFilter);
    EXPECT_EQ(asked.initial_name, "*.def");
    EXPECT_EQ(asked.default_extension, "def");

    SurveyDefinitions back;
    int header_line = 1;
    op.messages.clear();
    EXPECT_EQ(menu_file_read(back, header_line, op), op.chosen_file);
    EXPECT_EQ(op.file_questions.at(1).title, "Select the Data Field Definitions file to read");
    EXPECT_EQ(op.file_questions.at(1).filter, kFilter);
    EXPECT_EQ(back.number_of_sensors, 2);
    EXPECT_EQ(header_line, 3);
    EXPECT_TRUE(op.messages.empty());
}

TEST(DefinitionsMenu, AnExistingFileIsOverwrittenOnlyAfterYes)
{
    for (const bool answer : {false, true}) {
        const TestFolder folder;
        FakeOperator op;
        op.answer = answer;
        op.chosen_file = folder.write("bay.def", "old");
        SurveyDefinitions working = definitions_with_sensors(1);
        EXPECT_EQ(menu_file_save(working, 1, op).has_value(), answer);
        EXPECT_EQ(op.questions, std::vector<std::string>{"That file already exists. Overwrite it?"});
        EXPECT_EQ(folder.read("bay.def") == "old", !answer);
        EXPECT_EQ(op.messages.size(), answer ? 1U : 0U);
    }
}

TEST(DefinitionsMenu, FailuresLeaveTheCopyAsItWas)
{
    struct Case {
        const char* label;
        std::string text;
        std::string message;
    };
    const Case cases[] = {
        {"another format", "time,mag\n", "The specified file does not have the correct format"},
        {"cut off after its sensor count",
         "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 9\nDepth Data Scale : 1 0\n\nNumber of Fish Data "
         "Fields : 0 7\n\nNumber of Sensors : 4\n",
         "An error occurred while reading the Data Field Definitions : "},
    };
    for (const Case& c : cases) {
        const TestFolder folder;
        FakeOperator op;
        op.chosen_file = folder.write("odd.def", c.text);
        SurveyDefinitions working = definitions_with_sensors(2);
        int header_line = 1;
        EXPECT_FALSE(menu_file_read(working, header_line, op)) << c.label;
        EXPECT_EQ(working, definitions_with_sensors(2)) << c.label;
        EXPECT_EQ(header_line, 1) << c.label;
        ASSERT_EQ(op.messages.size(), 1U) << c.label;
        EXPECT_TRUE(op.messages[0].starts_with(c.message)) << op.messages[0];
    }
}

TEST(DefinitionsMenu, AFailedWriteIsNotReportedComplete)
{
    const TestFolder folder;
    FakeOperator op;
    op.chosen_file = folder.path("none/bay.def");
    SurveyDefinitions working = definitions_with_sensors(1);
    EXPECT_FALSE(menu_file_save(working, 1, op));
    ASSERT_EQ(op.messages.size(), 1U);
    EXPECT_TRUE(op.messages[0].starts_with("An error occurred while writing the Data Field Definitions : "));
}

std::string captions_of(const SensorGrid& grid)
{
    std::string text;
    for (const SensorGrid::Column& column : grid.columns) text += column.caption + "|";
    return text;
}

TEST(SensorGrid, ColumnsFollowComponentsAndLocations)
{
    struct Case {
        int components;
        int located;
        const char* captions;
    };
    const Case cases[] = {{1, 0, "TMI|Offset (mm)|Arm (mm)|Rotation (deg)|"},
                          {3, 0, "Tx|Ty|Tz|Offset (mm)|Arm (mm)|Rotation (deg)|"},
                          {1, 1, "TMI|X|Y|Z|"},
                          {3, 1, "Tx|Ty|Tz|X|Y|Z|"}};
    for (const Case& c : cases) {
        SurveyDefinitions definitions = definitions_with_sensors(1);
        definitions.components_per_sensor = c.components;
        definitions.read_sensor_location = c.located;
        const SensorGrid grid = sensor_grid(definitions);
        EXPECT_EQ(captions_of(grid), c.captions);
        EXPECT_EQ(grid.rows.at(0).cells.size(), grid.columns.size());
        EXPECT_EQ(grid.columns[0].hint,
                  c.components == 1 ? "Name of field containing TMI value" : "Name of field containing Tx component");
    }
}

TEST(SensorGrid, RowsShowEachSensor)
{
    SurveyDefinitions definitions = definitions_with_sensors(2);
    definitions.sensors[2].component_columns[1] = "MAG2";
    definitions.sensors[2].flip_sign[1] = 1;
    definitions.sensors[2].lever_arm = {0, 0, -400, 0, 750, 120};
    const SensorGrid grid = sensor_grid(definitions);
    ASSERT_EQ(grid.rows.size(), 2U);
    EXPECT_EQ(grid.rows[0].caption, "Sensor 1 Definitions");
    EXPECT_EQ(grid.rows[1].caption, "Sensor 2 Definitions");
    EXPECT_EQ(grid.rows[1].cells, (std::vector<std::string>{"-MAG2", "-400.000", "750.000", "120.000"}));
}

} // namespace
} // namespace tarvo

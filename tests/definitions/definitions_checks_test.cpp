#include "definitions/definitions_checks.h"

#include "fake_operator.h"

#include <gtest/gtest.h>

#include <functional>

namespace tarvo {
namespace {

DefinitionsPage good_page()
{
    SurveyDefinitions definitions;
    set_default_field_names(definitions);
    return display_definitions(definitions);
}

TEST(GeneralPage, IsRefusedOrWarnedAboutInOrder)
{
    struct Case {
        const char* label;
        std::function<void(DefinitionsPage&)> edit;
        int status;
        std::vector<std::string> messages;
    };
    const std::string coordinate = "Warning: The coordinate scale factor is not valid";
    const std::string elevation = "Warning: The elevation scale factor is not valid";
    const Case cases[] = {
        {"as it is", [](auto&) {}, 0, {}},
        {"scale 0", [](auto& p) { p.Text_data_scale = "0"; }, -1, {coordinate}},
        {"scale -1", [](auto& p) { p.Text_data_scale = "-1"; }, -1, {coordinate}},
        {"no scale", [](auto& p) { p.Text_data_scale = ""; }, -1, {coordinate}},
        {"text as scale", [](auto& p) { p.Text_data_scale = "abc"; }, -1, {coordinate}},
        {"scale 0.5", [](auto& p) { p.Text_data_scale = "0.5"; }, 0, {}},
        {"elevation scale 0", [](auto& p) { p.Text_elevation_scale = "0"; }, -1, {elevation}},
        {"both scales: the first alone",
         [](auto& p) { p.Text_data_scale = p.Text_elevation_scale = "x"; },
         -1,
         {coordinate}},
        {"no time",
         [](auto& p) { p.Text_locations_column[kTime] = "N/A"; },
         0,
         {"Warning: The Time column has not been specified"}},
        {"no position",
         [](auto& p) {
             p.Text_locations_column[kEast] = "";
             p.Text_locations_column[kNorth] = "N/A";
         },
         0,
         {"Warning: The Easting column has not been specified", "Warning: The Northing column has not been specified"}},
        {"no position, but the sensors have theirs",
         [](auto& p) {
             p.Text_locations_column[kEast] = "N/A";
             p.Combo_sensor_location_determination = 1;
         },
         0,
         {}},
        {"a name that no line holds",
         [](auto& p) { p.Text_locations_column[kLine] = "a\nb"; },
         -1,
         {"A column name cannot hold a line break"}},
        {"a name that no item holds",
         [](auto& p) { p.Text_locations_column[kLine] = "a, \"b\""; },
         -1,
         {"A column name cannot hold a comma and a double quote"}},
        {"elevation alone", [](auto& p) { p.Text_locations_column[kDepth] = "N/A"; }, 0, {}},
        {"neither depth nor elevation",
         [](auto& p) { p.Text_locations_column[kDepth] = p.Text_locations_column[kElevation] = "N/A"; },
         0,
         {"Warning: No Depth or Elevation column has been specified"}},
    };
    for (const Case& c : cases) {
        DefinitionsPage page = good_page();
        c.edit(page);
        FakeOperator op;
        SurveyDefinitions working;
        working.coordinate_scale = 7;
        EXPECT_EQ(check_definitions(page, working, op), c.status) << c.label;
        EXPECT_EQ(op.messages, c.messages) << c.label;
        EXPECT_EQ(working.coordinate_scale == 7, c.status == -1) << c.label;
    }
}

TEST(GeneralPage, CopiesEverythingWhenAccepted)
{
    DefinitionsPage page = good_page();
    page.Text_locations_column[kLine] = "";
    page.Text_locations_column[kHeading] = "N/A";
    page.Check_fish_depth_sign = true;
    page.Text_num_mag = "4";
    page.Text_num_sensors = "3";
    page.Combo_sensor_location_determination = 1;
    FakeOperator op;
    SurveyDefinitions working;
    working.sensors[1].lever_arm[SensorDefinition::kLength] = 12;
    ASSERT_EQ(check_definitions(page, working, op), 0);
    EXPECT_EQ(working.fields[kLine].name, "Line"); // an empty name takes its default
    EXPECT_EQ(working.fields[kHeading].name, "N/A");
    EXPECT_EQ(working.fields[kNorth].colour, 0xFFFF00);
    EXPECT_EQ(working.flip_depth_sign, 1);
    EXPECT_EQ(working.number_of_sensors, 4);
    EXPECT_EQ(working.sensors.size(), 5U);
    EXPECT_EQ(working.sensors[1].lever_arm[SensorDefinition::kLength], 12);
    EXPECT_EQ(working.components_per_sensor, 3);
    EXPECT_EQ(working.read_sensor_location, 1);

    for (const char* const sensors : {"0", "1001", "x", ""}) {
        page.Text_num_mag = sensors;
        EXPECT_EQ(check_definitions(page, working, op), -1) << sensors;
    }
}

TEST(SensorPage, IsRefusedByItsFirstFault)
{
    SurveyDefinitions from_arm;
    SurveyDefinitions from_columns;
    from_columns.read_sensor_location = 1;
    from_columns.components_per_sensor = 3;
    SensorPage good;
    good.Text_TMI_column_name = {"", "a", "b", "c"};
    good.Text_TMI_xyz = {"", "x", "y", "z"};
    good.Text_TMI_xyz_position = {"", "1", "2", "3"};
    struct Case {
        const char* label;
        const SurveyDefinitions* definitions;
        std::function<void(SensorPage&)> edit;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {"arm", &from_arm, [](auto&) {}, {}},
        {"offset",
         &from_arm,
         [](auto& p) {
             p.Text_TMI_xyz_position = {"", "x", "", ""};
         },
         {"The sensor offset is not valid"}},
        {"length",
         &from_arm,
         [](auto& p) { p.Text_TMI_xyz_position[2] = " "; },
         {"The sensor arm length is not valid"}},
        {"rotation",
         &from_arm,
         [](auto& p) { p.Text_TMI_xyz_position[3] = ""; },
         {"The sensor arm rotation is not valid"}},
        {"other components do not matter", &from_arm, [](auto& p) { p.Text_TMI_column_name[2] = "N/A"; }, {}},
        {"columns", &from_columns, [](auto& p) { p.Text_TMI_xyz_position = {}; }, {}},
        {"X", &from_columns, [](auto& p) { p.Text_TMI_xyz = {}; }, {"The X sensor coordinate is not valid"}},
        {"Y", &from_columns, [](auto& p) { p.Text_TMI_xyz[2] = " N/A "; }, {"The Y sensor coordinate is not valid"}},
        {"Z", &from_columns, [](auto& p) { p.Text_TMI_xyz[3] = ""; }, {"The Z sensor coordinate is not valid"}},
        {"third component",
         &from_columns,
         [](auto& p) { p.Text_TMI_column_name[3] = " "; },
         {"The sensor component source column is not valid"}},
    };
    for (const Case& c : cases) {
        SensorPage page = good;
        c.edit(page);
        FakeOperator op;
        SurveyDefinitions working = *c.definitions;
        EXPECT_EQ(check_sensor_definitions(page, working, 1, op), c.messages.empty() ? 0 : -1) << c.label;
        EXPECT_EQ(op.messages, c.messages) << c.label;
        EXPECT_EQ(working == *c.definitions, !c.messages.empty()) << c.label;
    }
}

TEST(NameTemplates, ReplaceTheFirstStar)
{
    struct Case {
        const char* text;
        int number;
        const char* name;
    };
    const Case cases[] = {
        {"Sensor*", 3, "Sensor3"}, {"*_TMI", 12, "12_TMI"}, {"  TMI ", 5, "TMI"}, {"Mag*_X", 2, "Mag2_X"},
        {"a*b*", 7, "a7b*"},       {" *x ", 1, " 1x "},     {"", 4, ""},          {"*", 9, "9"}};
    for (const Case& c : cases) {
        std::string name;
        fill_name_from_template(c.text, c.number, name);
        EXPECT_EQ(name, c.name);
    }
}

TEST(NameTemplates, FillTheColumnsThatTheSurveyHas)
{
    for (const int components : {1, 3}) {
        SurveyDefinitions definitions;
        definitions.sensors.assign(3, SensorDefinition());
        definitions.number_of_sensors = 2;
        definitions.components_per_sensor = components;
        definitions.component_templates = {"TMI*", "X*", "Y*", "Z*"};
        definitions.coordinate_templates = {"", "E*", "N*", "H*"};
        fill_using_template_number(definitions);
        EXPECT_EQ(definitions.sensors[2].component_columns[1], components == 1 ? "TMI2" : "X2");
        EXPECT_EQ(definitions.sensors[2].component_columns[3], components == 1 ? "N/A" : "Z2");
        EXPECT_EQ(definitions.sensors[2].coordinate_columns[1], "N/A");
        definitions.read_sensor_location = 1;
        fill_using_template_number(definitions);
        EXPECT_EQ(definitions.sensors[1].coordinate_columns[3], "H1");
    }
}

} // namespace
} // namespace tarvo

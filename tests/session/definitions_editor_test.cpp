#include "session/definitions_editor.h"

#include "definitions/definitions_file.h"
#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

constexpr const char* kData = "A title\ntime,east,north,depth,mag1,mag2\n1,2,3,4,5,6\n";

struct EditedSurvey {
    explicit EditedSurvey(const TestFolder& folder) { survey.data_file_name = folder.write("bay.csv", kData); }

    DefinitionsAcceptance accept()
    {
        return accept_definitions(editor, display_definitions(editor.working), survey, op);
    }

    SurveyState survey;
    FakeOperator op;
    DefinitionsEditor editor;
};

TEST(DefinitionsEditor, GuessesForADataFileWithoutDefinitionsUntilAccepted)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    session.editor = open_definitions_editor(session.survey, session.op);
    EXPECT_EQ(session.editor.origin, DefinitionsEditor::Origin::guess);
    EXPECT_EQ(session.editor.header_line_number, 2);
    EXPECT_EQ(session.editor.working.number_of_sensors, 2);
    EXPECT_NE(session.survey.survey_definitions, session.editor.working) << "the copy is not current yet";
    EXPECT_FALSE(std::filesystem::exists(folder.path("bay.def")));

    const DefinitionsAcceptance acceptance = session.accept();
    EXPECT_EQ(acceptance.status, 0);
    EXPECT_TRUE(acceptance.changed);
    EXPECT_EQ(session.survey.survey_definitions, session.editor.working);
    EXPECT_EQ(session.survey.header_line_number, 2);
    EXPECT_TRUE(std::filesystem::exists(folder.path("bay.def"))) << "a run reads it";
    EXPECT_TRUE(session.op.messages.empty());
}

TEST(DefinitionsEditor, EditsTheFileThatARunWouldRead)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    SurveyDefinitions stored;
    stored.fields[kTime].name = "clock";
    ASSERT_EQ(write_definitions(folder.path("bay.def"), stored, 2, session.op), 0);
    session.editor = open_definitions_editor(session.survey, session.op);
    EXPECT_EQ(session.editor.origin, DefinitionsEditor::Origin::file);
    EXPECT_EQ(session.editor.working.fields[kTime].name, "clock");

    folder.write("bay.def", "Tarvo, broken");
    session.editor = open_definitions_editor(session.survey, session.op);
    EXPECT_EQ(session.editor.origin, DefinitionsEditor::Origin::guess);
    EXPECT_EQ(session.editor.working.fields[kTime].name, "time");
    EXPECT_EQ(session.op.messages.size(), 1U);
    const std::string unreadable = folder.read("bay.def");
    EXPECT_EQ(session.accept().status, 0);
    EXPECT_EQ(folder.read("bay.def.unreadable"), unreadable) << "a slip of the pen does not cost the file";
    EXPECT_NE(folder.read("bay.def"), unreadable);
}

TEST(DefinitionsEditor, ASensorWithoutColumnIsRefusedAndNamed)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    session.editor = open_definitions_editor(session.survey, session.op);
    session.editor.working.sensors[2].component_columns[1] = "N/A";
    const SurveyDefinitions before = session.survey.survey_definitions;
    const DefinitionsAcceptance acceptance = session.accept();
    EXPECT_EQ(acceptance.status, -1);
    EXPECT_EQ(acceptance.refused_sensor, 2);
    EXPECT_EQ(session.op.messages, std::vector<std::string>{"The sensor component source column is not valid"});
    EXPECT_EQ(session.survey.survey_definitions, before);
    EXPECT_FALSE(std::filesystem::exists(folder.path("bay.def")));
}

TEST(DefinitionsEditor, AFileThatCannotBeWrittenRefuses)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    session.editor = open_definitions_editor(session.survey, session.op);
    session.survey.definitions_file_name = folder.path("none/bay.def");
    EXPECT_EQ(session.accept().status, -1);
    EXPECT_EQ(session.survey.header_line_number, 1);
}

TEST(DefinitionsEditor, WithoutChangesLoadedDataStayValid)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    session.editor = open_definitions_editor(session.survey, session.op);
    session.accept();
    session.survey.survey_definitions.fields[kTime].field_index = 1; // as a run leaves it
    session.survey.survey_definitions.sensors[1].column_slots[3] = 1;
    session.editor = open_definitions_editor(session.survey, session.op); // component names come back in upper case
    EXPECT_FALSE(session.accept().changed);
    session.editor.working.sensors[2].flip_sign[1] = 1;
    EXPECT_TRUE(session.accept().changed);
}

TEST(DefinitionsEditor, WhatNobodyEditedKeepsItsDigitsAndWhatTheFileDropsIsAskedFor)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    constexpr double us_survey_foot = 0.3048006096012192;
    SurveyDefinitions stored;
    stored.coordinate_scale = us_survey_foot;
    stored.depth_scale = 0.00001; // its box reads 0.0000
    stored.sensors[1].lever_arm[SensorDefinition::kLength] = 1234.5678;
    stored.sensors[1].component_columns[1] = "MAG1";
    for (const bool keep_all : {true, false}) {
        session.op = FakeOperator();
        session.op.answer = keep_all;
        write_definitions(folder.path("bay.def"), stored, 2, session.op, NumberDigits::all);
        session.editor = open_definitions_editor(session.survey, session.op);
        session.editor.working.fields[kTime].name = "time";
        ASSERT_EQ(session.accept().status, 0);
        EXPECT_EQ(
            session.op.questions,
            std::vector<std::string>{"A definitions file holds scales with four decimals and arms with three: the "
                                     "coordinate scale 0.3048006096012192 would be written as 0.3048, the depth "
                                     "scale 1e-05 would be written as 0.0000, the arm length of sensor 1 "
                                     "1234.5678 would be written as 1234.568. Write every digit instead?"});
        EXPECT_EQ(session.survey.survey_definitions.coordinate_scale, us_survey_foot);
        EXPECT_EQ(session.survey.survey_definitions.sensors[1].lever_arm[SensorDefinition::kLength], 1234.5678);
        SurveyDefinitions read;
        int header_line = 0;
        read_definitions(folder.path("bay.def"), read, header_line, session.op);
        EXPECT_EQ(read.coordinate_scale, keep_all ? us_survey_foot : 0.3048);
        session.survey.survey_definitions = SurveyDefinitions();
    }
    DefinitionsPage page = display_definitions(stored);
    page.Text_data_scale = " 0.30480 "; // typed
    SurveyDefinitions typed = stored;
    take_definitions_page(page, typed);
    EXPECT_EQ(typed.coordinate_scale, 0.3048);
}

TEST(DefinitionsEditor, GuessingAgainKeepsScalesAndSign)
{
    const TestFolder folder;
    EditedSurvey session(folder);
    session.editor = open_definitions_editor(session.survey, session.op);
    session.editor.working.coordinate_scale = 0.3048;
    session.editor.working.flip_depth_sign = 1;
    session.editor.working.fields[kEast].name = "wrong";
    guess_from_header(session.editor);
    EXPECT_EQ(session.editor.working.fields[kEast].name, "east");
    EXPECT_EQ(session.editor.working.coordinate_scale, 0.3048);
    EXPECT_EQ(session.editor.working.flip_depth_sign, 1);
}

TEST(DefinitionsEditor, TypingASensorNumberLosesNoSensor)
{
    SurveyDefinitions working;
    DefinitionsPage page = display_definitions(working);
    page.Text_num_mag = "12";
    take_definitions_page(page, working);
    working.sensors[12].component_columns[1] = "MAG12";
    for (const char* const typed : {"1", "", "abc", "0", "12"}) {
        page.Text_num_mag = typed;
        take_definitions_page(page, working);
    }
    EXPECT_EQ(working.number_of_sensors, 12);
    EXPECT_EQ(working.sensors[12].component_columns[1], "MAG12");
}

} // namespace
} // namespace tarvo

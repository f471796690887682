#include "session/data_format_editor.h"

#include "fake_operator.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(DataFormatEditor, WhatIsRefusedStaysInItsBoxAndRefusesTheDialog)
{
    DefinitionsEditor editor;
    EXPECT_EQ(edit_data_format(editor, "Names", "none"), "") << "nothing is in use";
    EXPECT_FALSE(editor.working.data_format);
    use_data_format(editor, true);
    EXPECT_EQ(data_format_box_text(editor, "Separator"), "any");
    EXPECT_EQ(data_format_box_text(editor, "Time Form"), "s");
    EXPECT_EQ(edit_data_format(editor, "Survey Date", "2021-02-29"), "a date as YYYY-MM-DD was expected");
    EXPECT_EQ(editor.working.data_format, DataFormat());
    EXPECT_EQ(data_format_box_text(editor, "Survey Date"), "2021-02-29");

    SurveyState survey;
    FakeOperator op;
    DefinitionsPage page = display_definitions(editor.working);
    EXPECT_TRUE(accept_definitions(editor, page, survey, op).refused_format);
    EXPECT_EQ(op.messages,
              std::vector<std::string>{"The data format is not valid: Survey Date: a date as YYYY-MM-DD was "
                                       "expected, found \"2021-02-29\""});
    EXPECT_EQ(edit_data_format(editor, "Survey Date", "2020-02-29"), "");
    EXPECT_FALSE(accept_definitions(editor, page, survey, op).refused_format);
}

TEST(DataFormatEditor, TheTimeSlotShowsTheFirstTimeColumn)
{
    DefinitionsEditor editor;
    set_default_field_names(editor.working);
    use_data_format(editor, true);
    EXPECT_EQ(data_format_box_text(editor, "Time Columns"), "Time");
    EXPECT_EQ(edit_data_format(editor, "Time Columns", "Date, Clock"), "");
    EXPECT_EQ(editor.working.fields[kTime].name, "Date");

    DefinitionsPage page = display_definitions(editor.working);
    page.Text_locations_column[kTime] = "Day";
    take_definitions_page(page, editor.working);
    EXPECT_EQ(data_format_box_text(editor, "Time Columns"), "Day, Clock");
    page.Text_locations_column[kTime] = "N/A";
    take_definitions_page(page, editor.working);
    EXPECT_EQ(data_format_box_text(editor, "Time Columns"), "");
}

TEST(DataFormatEditor, TakenOutItComesBackAsItWas)
{
    DefinitionsEditor editor;
    use_data_format(editor, true);
    edit_data_format(editor, "Null Texts", "* -9999");
    edit_data_format(editor, "Latency (s)", "-1");
    use_data_format(editor, false);
    EXPECT_FALSE(editor.working.data_format);
    EXPECT_TRUE(editor.format_faults.empty());
    use_data_format(editor, true);
    EXPECT_EQ(data_format_box_text(editor, "Null Texts"), "* -9999");
}

} // namespace
} // namespace tarvo

#include "session/processing_dialog.h"

#include "fake_operator.h"

#include <gtest/gtest.h>

#include <iterator>

namespace tarvo {
namespace {

using Page = ProcessingPage;

struct Dialog {
    ProcessingParameters parameters;
    DisplaySettings settings;
    FakeOperator op;

    ProcessingPage page() const { return display_processing_parameters(parameters, settings); }
    ProcessingChanges done(const ProcessingPage& page)
    {
        return done_processing_parameters(page, parameters, settings, op);
    }
};

TEST(ProcessingDialog, ShowsCurrentValuesInTheirFormats)
{
    const ProcessingPage page = Dialog().page();
    EXPECT_EQ(page.Text_logging_scroll_step, "2");
    EXPECT_EQ(page.Text_sample_rate, "1.0");
    EXPECT_EQ(page.Text_average_window, "5");
    EXPECT_EQ(page.Text_timing_tick, "2");
    EXPECT_EQ(page.Text_section_length, "100.0");
    EXPECT_EQ(page.Text_max_TG_range, "10.0");
}

TEST(ProcessingDialog, RefusesEachBoxWithItsMessageInTheirOrder)
{
    struct Case {
        const char* label;
        std::string Page::*box;
        std::string text;
        std::string message;
    };
    const std::string step = "The Logging Scroll Step is not valid";
    const std::string rate = "The sample rate is not valid";
    const std::string average = "The averaging window width is not valid";
    const std::string depth_average = "The depth averaging window width is not valid";
    const std::string length = "The section length is not valid";
    const std::string spacing = "The section tick spacing is not valid";
    const std::string depth_range = "Warning: The maximum depth range is not valid";
    const std::string tmi_range = "Warning: The maximum TMI range is not valid";
    const std::string tmi_tick = "Warning: The maximum TMI tick spacing is not valid";
    const std::string tg_range = "Warning: The maximum TG range is not valid";
    const std::string tg_tick = "Warning: The maximum TG tick spacing is not valid";
    const Case cases[] = {
        {"step 0", &Page::Text_logging_scroll_step, "0", step},
        {"step empty", &Page::Text_logging_scroll_step, "", step},
        {"rate 0", &Page::Text_sample_rate, "0", rate},
        {"rate of a comma", &Page::Text_sample_rate, "1,5", rate},
        {"distance", &Page::Text_line_break_distance, "5 m", "The line break distance is not valid"},
        {"distance 0 is off", &Page::Text_line_break_distance, "0", ""},
        {"time", &Page::Text_line_break_time, "abc", "The line break time is not valid"},
        {"negative time", &Page::Text_line_break_time, "-1", ""},
        {"average -5", &Page::Text_average_window, "-5", average},
        {"depth average 0", &Page::Text_depth_average_window, "0", depth_average},
        {"tick", &Page::Text_timing_tick, "x", "The timing tick is not valid"},
        {"tick 0", &Page::Text_timing_tick, "0", ""},
        {"length 25", &Page::Text_section_length, "25", length},
        {"length just over", &Page::Text_section_length, "25.1", ""},
        {"spacing below 0", &Page::Text_section_tick_spacing, "-0.1", spacing},
        {"spacing 0", &Page::Text_section_tick_spacing, "0", ""},
        {"depth range 10", &Page::Text_max_elevation_range, "10", depth_range},
        {"TMI range 10", &Page::Text_max_TMI_range, "10", tmi_range},
        {"TMI tick 0", &Page::Text_TMI_tick_spacing, "0", tmi_tick},
        {"TG range 0", &Page::Text_max_TG_range, "0", tg_range},
        {"TG range below 1", &Page::Text_max_TG_range, "0.5", ""},
        {"TG tick", &Page::Text_TG_tick_spacing, "-2", tg_tick},
    };
    for (const Case& c : cases) {
        Dialog dialog;
        ProcessingPage page = dialog.page();
        page.*c.box = c.text;
        const bool refused = !c.message.empty();
        EXPECT_EQ(dialog.done(page).status, refused ? -1 : 0) << c.label;
        EXPECT_EQ(dialog.op.messages, refused ? std::vector{c.message} : std::vector<std::string>{}) << c.label;
        EXPECT_EQ(dialog.page() == Dialog().page(), refused) << c.label;
    }

    ProcessingPage page = Dialog().page();
    for (auto c = std::rbegin(cases); c != std::rend(cases); ++c) { // with the boxes behind it wrong, too
        if (c->message.empty()) continue;
        page.*c->box = c->text;
        Dialog dialog;
        dialog.done(page);
        EXPECT_EQ(dialog.op.messages, std::vector{c->message}) << c->label;
    }
}

TEST(ProcessingDialog, TellsWhatHasToFollow)
{
    struct Case {
        const char* label;
        void (*edit)(ProcessingPage&);
        bool asks;
        bool reload;
        bool gradients;
        bool redraw;
    };
    const Case cases[] = {
        {"nothing", [](Page&) {}, false, false, false, false},
        {"scroll step", [](Page& p) { p.Text_logging_scroll_step = "7"; }, false, false, false, false},
        {"rate", [](Page& p) { p.Text_sample_rate = "2"; }, true, true, false, false},
        {"distance", [](Page& p) { p.Text_line_break_distance = "0"; }, true, true, false, false},
        {"time", [](Page& p) { p.Text_line_break_time = "9"; }, true, true, false, false},
        {"closing sample", [](Page& p) { p.Check_carry_closing_sample = true; }, true, true, false, false},
        {"circular heading", [](Page& p) { p.Check_circular_heading = true; }, true, true, false, false},
        {"compass heading", [](Page& p) { p.Check_compass_heading = true; }, true, true, false, false},
        {"averaging window", [](Page& p) { p.Text_average_window = "7"; }, false, false, true, false},
        {"depth window", [](Page& p) { p.Text_depth_average_window = "13"; }, false, false, true, false},
        {"timing tick", [](Page& p) { p.Text_timing_tick = "1"; }, false, false, false, true},
        {"section length", [](Page& p) { p.Text_section_length = "50"; }, false, false, false, true},
        {"TG range", [](Page& p) { p.Text_max_TG_range = "20"; }, false, false, false, true},
        {"same value written otherwise", [](Page& p) { p.Text_sample_rate = " 1.00"; }, false, false, false, false},
    };
    for (const Case& c : cases) {
        Dialog dialog;
        ProcessingPage page = dialog.page();
        c.edit(page);
        const ProcessingChanges changes = dialog.done(page);
        EXPECT_EQ(changes.status, 0) << c.label;
        EXPECT_EQ(dialog.op.questions.size(), c.asks ? 1U : 0U) << c.label;
        EXPECT_EQ(changes.reload, c.reload) << c.label;
        EXPECT_EQ(changes.gradients, c.gradients) << c.label;
        EXPECT_EQ(changes.redraw, c.redraw) << c.label;
    }
}

TEST(ProcessingDialog, NoToTheReloadAppliesTheScrollStepAlone)
{
    Dialog dialog;
    dialog.op.answer = false;
    ProcessingPage page = dialog.page();
    page.Text_logging_scroll_step = "4";
    page.Text_sample_rate = "5";
    page.Text_average_window = "9";
    page.Text_max_TMI_range = "500";
    const ProcessingChanges changes = dialog.done(page);
    EXPECT_EQ(changes.status, -1);
    EXPECT_EQ(dialog.op.questions,
              std::vector<std::string>{"The data file processing parameter changes require that the data file be "
                                       "reloaded. Procced?"});
    ProcessingPage expected = Dialog().page();
    expected.Text_logging_scroll_step = "4";
    EXPECT_EQ(dialog.page(), expected);

    // The dialog is still open: going back on the scroll step counts against the value just applied.
    page = dialog.page();
    page.Text_logging_scroll_step = "2";
    EXPECT_EQ(dialog.done(page).status, 0);
    EXPECT_EQ(dialog.parameters.LoggingScrollStep, 2);
}

TEST(ProcessingDialog, YesStoresEverything)
{
    Dialog dialog;
    ProcessingPage page = dialog.page();
    page.Text_sample_rate = "12.5";
    page.Text_line_break_distance = "0";
    page.Text_depth_average_window = "21.9";
    page.Text_max_TG_range = "0.5";
    page.Check_compass_heading = true;
    EXPECT_TRUE(dialog.done(page).reload);
    EXPECT_EQ(dialog.parameters.LoggingSampleRate, 12.5F);
    EXPECT_EQ(dialog.parameters.LoggingLineBreakDistance, 0.0F);
    EXPECT_EQ(dialog.parameters.GradientWindow, 21) << "whole numbers are truncated";
    EXPECT_EQ(dialog.settings.gradient_max_range, 1.0);
    EXPECT_TRUE(dialog.parameters.CompassHeading);
}

TEST(ProcessingDialog, ShownRoundingChangesNothing)
{
    Dialog dialog;
    dialog.parameters.LoggingSampleRate = 0.04F; // reads 0.0, which would be refused
    dialog.parameters.LoggingLineBreakTime = 0.25F;
    dialog.settings.tmi_tick_spacing = 12.34;
    const ProcessingChanges changes = dialog.done(dialog.page());
    EXPECT_EQ(changes.status, 0);
    EXPECT_FALSE(changes.reload || changes.gradients || changes.redraw);
    EXPECT_EQ(dialog.parameters.LoggingLineBreakTime, 0.25F);
    EXPECT_EQ(dialog.settings.tmi_tick_spacing, 12.34);
    const ProcessingPage exact = exact_processing_parameters(dialog.parameters, dialog.settings);
    EXPECT_EQ(exact.Text_sample_rate, "0.04");
    EXPECT_EQ(exact.Text_TMI_tick_spacing, "12.34");
}

} // namespace
} // namespace tarvo

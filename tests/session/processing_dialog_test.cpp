#include "session/processing_dialog.h"

#include "fake_operator.h"

#include <gtest/gtest.h>

#include <iterator>

namespace tarvo {
namespace {

using Page = ProcessingPage;

struct Dialog {
    Settings settings;
    FakeOperator op;

    ProcessingPage page() const { return display_processing_parameters(settings); }
    ProcessingChanges done(const ProcessingPage& page) { return done_processing_parameters(page, settings, op); }
};

TEST(ProcessingDialog, ShowsCurrentValuesInTheirFormats)
{
    const ProcessingPage page = Dialog().page();
    EXPECT_EQ(page.at("LoggingScrollStep"), "2");
    EXPECT_EQ(page.at("LoggingSampleRate"), "1.0");
    EXPECT_EQ(page.at("SmoothWindow"), "5");
    EXPECT_EQ(page.at("TimingTick"), "2");
    EXPECT_EQ(page.at("TrackAxisLength"), "100.0");
    EXPECT_EQ(page.at("GradientMaxRange"), "10.0");
}

TEST(ProcessingDialog, RefusesEachBoxWithItsMessageInTheirOrder)
{
    struct Case {
        const char* label;
        const char* box;
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
        {"step 0", "LoggingScrollStep", "0", step},
        {"step empty", "LoggingScrollStep", "", step},
        {"rate 0", "LoggingSampleRate", "0", rate},
        {"rate of a comma", "LoggingSampleRate", "1,5", rate},
        {"distance", "LoggingLineBreakDistance", "5 m", "The line break distance is not valid"},
        {"distance 0 is off", "LoggingLineBreakDistance", "0", ""},
        {"time", "LoggingLineBreakTime", "abc", "The line break time is not valid"},
        {"negative time", "LoggingLineBreakTime", "-1", ""},
        {"average -5", "SmoothWindow", "-5", average},
        {"depth average 0", "GradientWindow", "0", depth_average},
        {"tick", "TimingTick", "x", "The timing tick is not valid"},
        {"tick 0", "TimingTick", "0", ""},
        {"length 25", "TrackAxisLength", "25", length},
        {"length just over", "TrackAxisLength", "25.1", ""},
        {"spacing below 0", "TrackAxisTickSpacing", "-0.1", spacing},
        {"spacing 0", "TrackAxisTickSpacing", "0", ""},
        {"depth range 10", "ElevationMaxRange", "10", depth_range},
        {"TMI range 10", "TMIMaxRange", "10", tmi_range},
        {"TMI tick 0", "TMITickSpacing", "0", tmi_tick},
        {"TG range 0", "GradientMaxRange", "0", tg_range},
        {"TG range below 1", "GradientMaxRange", "0.5", ""},
        {"TG tick", "GradientTickSpacing", "-2", tg_tick},
    };
    for (const Case& c : cases) {
        Dialog dialog;
        ProcessingPage page = dialog.page();
        page[c.box] = c.text;
        const bool refused = !c.message.empty();
        EXPECT_EQ(dialog.done(page).status, refused ? -1 : 0) << c.label;
        EXPECT_EQ(dialog.op.messages, refused ? std::vector{c.message} : std::vector<std::string>{}) << c.label;
        EXPECT_EQ(dialog.page() == Dialog().page(), refused) << c.label;
    }

    ProcessingPage page = Dialog().page();
    for (auto c = std::rbegin(cases); c != std::rend(cases); ++c) { // with the boxes behind it wrong, too
        if (c->message.empty()) continue;
        page[c->box] = c->text;
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
        {"scroll step", [](Page& p) { p["LoggingScrollStep"] = "7"; }, false, false, false, false},
        {"rate", [](Page& p) { p["LoggingSampleRate"] = "2"; }, true, true, false, false},
        {"distance", [](Page& p) { p["LoggingLineBreakDistance"] = "0"; }, true, true, false, false},
        {"time", [](Page& p) { p["LoggingLineBreakTime"] = "9"; }, true, true, false, false},
        {"closing sample", [](Page& p) { p["CarryClosingSample"] = "1"; }, true, true, false, false},
        {"circular heading", [](Page& p) { p["CircularHeading"] = "1"; }, true, true, false, false},
        {"spacing over fixes", [](Page& p) { p["SpacingOverFixes"] = "1"; }, true, true, false, false},
        {"compass heading", [](Page& p) { p["CompassHeading"] = "1"; }, true, true, false, false},
        {"averaging window", [](Page& p) { p["SmoothWindow"] = "7"; }, false, false, true, false},
        {"depth window", [](Page& p) { p["GradientWindow"] = "13"; }, false, false, true, false},
        {"timing tick", [](Page& p) { p["TimingTick"] = "1"; }, false, false, false, true},
        {"section length", [](Page& p) { p["TrackAxisLength"] = "50"; }, false, false, false, true},
        {"TG range", [](Page& p) { p["GradientMaxRange"] = "20"; }, false, false, false, true},
        {"same value written otherwise", [](Page& p) { p["LoggingSampleRate"] = " 1.00"; }, false, false, false, false},
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
    page["LoggingScrollStep"] = "4";
    page["LoggingSampleRate"] = "5";
    page["SmoothWindow"] = "9";
    page["TMIMaxRange"] = "500";
    const ProcessingChanges changes = dialog.done(page);
    EXPECT_EQ(changes.status, -1);
    EXPECT_EQ(dialog.op.questions,
              std::vector<std::string>{"The data file processing parameter changes require that the data file be "
                                       "reloaded. Procced?"});
    ProcessingPage expected = Dialog().page();
    expected["LoggingScrollStep"] = "4";
    EXPECT_EQ(dialog.page(), expected);

    // The dialog is still open: going back on the scroll step counts against the value just applied.
    page = dialog.page();
    page["LoggingScrollStep"] = "2";
    EXPECT_EQ(dialog.done(page).status, 0);
    EXPECT_EQ(dialog.settings.parameters.LoggingScrollStep, 2);
}

TEST(ProcessingDialog, YesStoresEverything)
{
    Dialog dialog;
    ProcessingPage page = dialog.page();
    page["LoggingSampleRate"] = "12.5";
    page["LoggingLineBreakDistance"] = "0";
    page["GradientWindow"] = "21.9";
    page["GradientMaxRange"] = "0.5";
    page["CompassHeading"] = "1";
    EXPECT_TRUE(dialog.done(page).reload);
    EXPECT_EQ(dialog.settings.parameters.LoggingSampleRate, 12.5F);
    EXPECT_EQ(dialog.settings.parameters.LoggingLineBreakDistance, 0.0F);
    EXPECT_EQ(dialog.settings.parameters.GradientWindow, 21) << "whole numbers are truncated";
    EXPECT_EQ(dialog.settings.display_settings.gradient_max_range, 1.0);
    EXPECT_TRUE(dialog.settings.parameters.CompassHeading);
}

TEST(ProcessingDialog, ShownRoundingChangesNothing)
{
    Dialog dialog;
    dialog.settings.parameters.LoggingSampleRate = 0.04F; // reads 0.0, which would be refused
    dialog.settings.parameters.LoggingLineBreakTime = 0.25F;
    dialog.settings.display_settings.tmi_tick_spacing = 12.34;
    const ProcessingChanges changes = dialog.done(dialog.page());
    EXPECT_EQ(changes.status, 0);
    EXPECT_FALSE(changes.reload || changes.gradients || changes.redraw);
    EXPECT_EQ(dialog.settings.parameters.LoggingLineBreakTime, 0.25F);
    EXPECT_EQ(dialog.settings.display_settings.tmi_tick_spacing, 12.34);
}

} // namespace
} // namespace tarvo

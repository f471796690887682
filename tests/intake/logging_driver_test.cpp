#include "intake/logging_driver.h"

#include "definitions/definitions_file.h"
#include "display/track_navigation.h"
#include "fake_operator.h"
#include "fake_pick_display.h"
#include "fake_run_display.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// A survey of `lines` samples a second apart, one after the other along the track, in a folder of its own.
struct DriverTest : testing::Test {
    TestFolder folder;
    FakeOperator op;
    FakeRunDisplay display;
    SurveyState survey;
    FakePickDisplay pick_display;
    PickWorkflow pick_work{survey.picks, survey.current_pick, survey.pick_settings, op, pick_display};
    LoggingDriver driver{survey, pick_work, op, display};

    void SetUp() override { write_survey(100); }

    void write_survey(int lines)
    {
        std::string text = "Time,East,North,Depth,M1\r\n";
        for (int line = 0; line < lines; ++line) {
            text += std::to_string(line) + "," + std::to_string(line * 2) + ",0,5," + std::to_string(line) + "\r\n";
        }
        survey.data_file_name = folder.write("line.csv", text);
        SurveyDefinitions definitions;
        for (const std::size_t slot : std::initializer_list<std::size_t>{kTime, kEast, kNorth, kDepth}) {
            definitions.fields[slot].name = kFieldSlots[slot].name;
        }
        definitions.sensors[1].component_columns[1] = "M1";
        write_definitions(folder.path("line.def"), definitions, 1, op);
        survey.parameters.CarryClosingSample = true;
        survey.parameters.LoggingLineBreakDistance = 0;
    }

    std::int32_t records() const { return survey.processing.store.RecordCount; }
    int press(StartButton button) { return driver.Command_start_logging(button); }
};

TEST_F(DriverTest, ALoadStoresEverythingAndDrawsAtTheEnd)
{
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(records(), 100);
    EXPECT_EQ(survey.processing.store.gradient_records, 100);
    EXPECT_EQ(survey.track_index.point_count(), 100);
    EXPECT_EQ(survey.track_image.mode, TrackMode::whole);
    EXPECT_EQ(display.finished_runs, 1);
    EXPECT_TRUE(display.replayed.empty());
    EXPECT_TRUE(op.messages.empty());
    // The captions and locks of the run, then everything locked until it is finished, then the idle state; the
    // counters go back to 0.
    ASSERT_GE(display.controls.size(), 3U);
    EXPECT_EQ(display.controls.back().start_caption, "Start replay");
    EXPECT_EQ(display.controls.back().pause_caption, "Start load");
    EXPECT_TRUE(display.controls.back().file_controls_enabled);
    const RunControls& finishing = display.controls[display.controls.size() - 2];
    EXPECT_FALSE(finishing.start_enabled || finishing.file_controls_enabled || finishing.pick_list_enabled);
    const RunControls& running = display.controls[display.controls.size() - 3];
    EXPECT_EQ(running.start_caption, "Stop Load");
    EXPECT_EQ(running.pause_caption, "Pause Load");
    EXPECT_FALSE(running.file_controls_enabled);
    EXPECT_FALSE(running.moving_anomalies_enabled);
    EXPECT_EQ(display.counters.back().lines_read, 0);
    EXPECT_EQ(display.counters.back().samples_stored, 0);
    EXPECT_FALSE(driver.state().any_run_active());
}

TEST_F(DriverTest, PicksLeaveTheTrackWithARunAndAreLaidOnItAtTheEnd)
{
    resize_track_image(survey.track_image, track_scene(survey), 200, 100, op);
    press(StartButton::load_or_pause);
    append_pick(survey.picks, {.name = "Anomaly 1", .sample_index = 4, .location = {0, 61.0, 0, 0}});
    append_pick(survey.picks, {.name = "Far off 1", .location = {0, 1e6, 0, 0}});
    std::int32_t during = 99;
    display.at_line = [&](std::int64_t) {
        during = survey.picks.pick_sample_index[1];
        EXPECT_FALSE(pick_display.controls.moving_enabled);
    };
    pick_work.choose_pick(1);
    press(StartButton::load_or_pause);
    EXPECT_EQ(during, -1);
    // The ring is in the picture that shows the whole track: the picks were laid before it was drawn.
    ASSERT_EQ(survey.track_image.pick_labels.size(), 1U);
    EXPECT_EQ(survey.picks.pick_sample_index[1], 31);
    EXPECT_EQ(survey.picks.pick_sample_index[2], -1);
    EXPECT_TRUE(pick_display.controls.moving_enabled);

    remove_pick(survey.picks, 1); // what stays behind the last pick is not drawn
    EXPECT_EQ(track_scene(survey).picks.records.size(), 2U);
}

TEST_F(DriverTest, ALiveRunLeavesThePicksOfAFileBehind)
{
    press(StartButton::load_or_pause);
    pick_work.open_picks_of(survey.data_file_name, indexed_track(survey));
    survey.pick_settings.ShowNewPickDialog = false;
    pick_work.mnuAddAnomaly(indexed_track(survey).track, 4);
    const std::string stored = folder.read("line_pick.dat");
    driver.start_pipe_data_logging();
    EXPECT_TRUE(survey.data_file_name.empty());
    EXPECT_TRUE(survey.picks.pick_file_name.empty());
    EXPECT_EQ(survey.picks.number_of_picks, 0);
    driver.process_input_data("1,2,0,5,48000");
    driver.process_input_data("2,4,0,5,48000");
    op.chosen_file = folder.path("live_pick.dat");
    pick_work.mnuAddAnomaly(indexed_track(survey).track, 1);
    EXPECT_EQ(folder.read("line_pick.dat"), stored);
    EXPECT_EQ(survey.picks.pick_file_name, folder.path("live_pick.dat"));
    driver.start_pipe_data_logging(); // the same live survey begins anew
    EXPECT_EQ(survey.picks.number_of_picks, 1);
}

TEST_F(DriverTest, AReplayShowsEverySampleAndWaitsBetweenLines)
{
    display.at_line = [&](std::int64_t line) {
        if (line == 1) driver.HScroll_speed_change(90); // 100 / 10 ms
        if (line == 3) driver.HScroll_speed_change(100);
    };
    EXPECT_EQ(press(StartButton::replay_or_stop), kEndOfData);
    EXPECT_EQ(display.replayed.size(), 99U); // the last bin is stored at the end of the run
    EXPECT_EQ(display.replayed.back(), 99);
    EXPECT_EQ(display.dials.size(), 9U);
    EXPECT_EQ(display.waits, (std::vector<int>{10, 10}));
    EXPECT_EQ(records(), 100);
}

TEST_F(DriverTest, RefusalsLeaveItIdle)
{
    struct Case {
        const char* label;
        std::function<void()> spoil;
        std::string message;
    };
    const Case cases[] = {
        {"header line abc", [&] { survey.header_line_text = "abc"; }, "The header line number is not valid"},
        {"header line 0", [&] { survey.header_line_text = "0"; }, "The header line number is not valid"},
        {"header line beyond the end", [&] { survey.header_line_text = "500"; },
         "The specified file does not appear to contain any data"},
        {"no file chosen",
         [&] {
             survey.header_line_text.reset();
             survey.data_file_name.clear();
         },
         "The MAG data file has not been specified"},
        {"vanished file", [&] { survey.data_file_name = folder.path("absent.csv"); },
         "The MAG data file could not be located"},
        {"no definitions", [&] { survey.data_file_name = folder.write("other.csv", "Time\n1\n"); },
         "No definition file was found"},
        {"not a definitions file", [&] { folder.write("other.def", "x"); },
         "The specified file does not have the correct format"},
    };
    for (const Case& c : cases) {
        op.messages.clear();
        c.spoil();
        EXPECT_EQ(press(StartButton::load_or_pause), -1) << c.label;
        EXPECT_EQ(op.messages, std::vector<std::string>{c.message}) << c.label;
        EXPECT_FALSE(driver.state().any_run_active()) << c.label;
        EXPECT_EQ(display.controls.back().start_caption, "Start replay") << c.label;
    }
    EXPECT_EQ(display.finished_runs, 0);
}

TEST_F(DriverTest, PausedRunsGoOnWithTheNextLine)
{
    display.at_line = [&](std::int64_t line) {
        if (line == 40) press(StartButton::load_or_pause);
    };
    EXPECT_EQ(press(StartButton::load_or_pause), 0);
    EXPECT_TRUE(driver.state().run_paused);
    EXPECT_EQ(display.controls.back().pause_caption, "Resume Load");
    EXPECT_EQ(survey.processing.lines_read, 40);
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(records(), 100);
    for (std::int32_t record = 1; record <= 100; ++record)
        ASSERT_EQ(survey.processing.store.channel(kEast, record), (record - 1) * 2);
    EXPECT_EQ(display.finished_runs, 1);
}

TEST_F(DriverTest, StopsAtOnceRunningOrPaused)
{
    for (const bool pause_first : {false, true}) {
        display.finished_runs = 0;
        display.at_line = [&](std::int64_t line) {
            if (line == 40) press(pause_first ? StartButton::load_or_pause : StartButton::replay_or_stop);
        };
        int ended = press(StartButton::replay_or_stop);
        EXPECT_EQ(ended, pause_first ? 0 : kEndOfData);
        if (pause_first) ended = press(StartButton::replay_or_stop);
        EXPECT_EQ(ended, kEndOfData);
        EXPECT_EQ(records(), 40); // the open bin was stored
        EXPECT_EQ(display.finished_runs, 1);
        EXPECT_FALSE(driver.state().any_run_active());
    }
}

TEST_F(DriverTest, HastyPressesBetweenTwoLinesDoNotReEnterTheLoop)
{
    int depth = 0;
    display.at_line = [&](std::int64_t line) {
        ++depth;
        EXPECT_EQ(depth, 1) << "the loop was entered again from within itself";
        if (line == 10) { // pause and resume before the loop gets to see either
            press(StartButton::load_or_pause);
            press(StartButton::load_or_pause);
        }
        if (line == 20) { // pause, then stop
            press(StartButton::load_or_pause);
            press(StartButton::replay_or_stop);
        }
        --depth;
    };
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(records(), 20);
    EXPECT_EQ(display.finished_runs, 1);
}

TEST_F(DriverTest, PressesWhileARunIsFinishedAreIgnored)
{
    display.at_finish = [&] { EXPECT_EQ(press(StartButton::load_or_pause), 0); };
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(display.finished_runs, 1);
    EXPECT_EQ(records(), 100);
}

TEST_F(DriverTest, AFaultAtTheEndOfARunIsToldAndLeavesItIdle)
{
    display.at_finish = [] { throw std::bad_alloc(); };
    EXPECT_EQ(press(StartButton::load_or_pause), -1);
    EXPECT_EQ(op.messages, std::vector<std::string>{"An error occurred while finishing the run: std::bad_alloc"});
    EXPECT_FALSE(driver.is_at_work() || driver.state().any_run_active());
    EXPECT_EQ(records(), 100) << "nothing is lost";
    display.at_finish = nullptr;
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
}

TEST_F(DriverTest, AFaultInTheGradientsIsTheRunsAndLeavesTheRestShown)
{
    int calls = 0; // the second one comes from within
    display.at_step = [&](std::string_view) {
        if (++calls == 2) throw std::bad_alloc();
    };
    EXPECT_EQ(press(StartButton::load_or_pause), -1);
    EXPECT_EQ(op.messages.size(), 1U);
    EXPECT_EQ(display.finished_runs, 1);
    EXPECT_EQ(records(), 100);
}

TEST_F(DriverTest, AStopWhileARunIsFinishedLeavesOutWhatIsStillToBeComputed)
{
    std::vector<std::string> steps;
    display.at_step = [&](std::string_view step) {
        if (steps.empty() || steps.back() != step) steps.emplace_back(step);
        if (step == "Gradients") driver.request_stop();
    };
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(steps, (std::vector<std::string>{"Gradients", "Building the index", "Drawing"}));
    EXPECT_EQ(records(), 100);
    EXPECT_TRUE(driver.counters().stopped_at.has_value());
    display.at_step = nullptr;
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_FALSE(driver.counters().stopped_at.has_value());
}

TEST_F(DriverTest, ARunThatIsStoppedSaysWhereItWas)
{
    display.at_line = [&](std::int64_t line) {
        if (line == 25) driver.request_stop();
    };
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    ASSERT_TRUE(driver.counters().stopped_at.has_value());
    EXPECT_NEAR(*driver.counters().stopped_at, 0.25, 0.03);
}

TEST_F(DriverTest, NoViewChosenWhileARunGoesOnHidesTheWholeTrackAtItsEnd)
{
    resize_track_image(survey.track_image, {}, 300, 200, op);
    press(StartButton::load_or_pause);
    const Picture whole = survey.track_image.picture;
    const Picture black(300, 200);
    ASSERT_NE(whole, black);
    TrackImage& image = survey.track_image;
    const std::function<void()> choices[] = {
        [&] { zoom_about_pixel(image, track_scene(survey), 10, 10, 3, op); },
        [&] { Combo_zoom_click(image, track_scene(survey), "200%", 1, op); },
        [&] { Combo_zoom_change(image, track_scene(survey), "1000%", op); },
        [&] { make_record_current(image, track_scene(survey), 20, Recentre::yes, op); },
        [&] { redraw_colours(image, track_scene(survey), op); },
        [&] { update_image_display(image, track_scene(survey), Redraw::requested, op); },
    };
    for (const StartButton button : {StartButton::load_or_pause, StartButton::replay_or_stop}) {
        for (const auto& choose : choices) {
            display.at_line = [&](std::int64_t line) {
                if (line != 50) return;
                choose();
                if (button == StartButton::load_or_pause) {
                    EXPECT_EQ(image.picture, black);
                }
            };
            press(button);
            image.current_record = 0; // what was chosen lies over the track
            image.section = {};
            display_location_crosshair(image, {});
            update_image_display(image, track_scene(survey), Redraw::requested, op);
            EXPECT_EQ(image.picture, whole);
        }
    }
}

TEST_F(DriverTest, ASecondRunKeepsNothingOfTheFirst)
{
    press(StartButton::load_or_pause);
    write_survey(7);
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(records(), 7);
    EXPECT_EQ(survey.processing.lines.CurrentLine, 1);
    EXPECT_EQ(survey.track_index.point_count(), 7);
}

TEST_F(DriverTest, CountsLongAndEmptyLinesAsRejectedAndWarnsOfTheFieldCountOnce)
{
    survey.data_file_name = folder.write("line.csv", "Time,East,North,Depth,M1\n\n1,2,3,4\n2,3\n" +
                                                         std::string(2'000'000, '7') + "\n3,4,5,6,7");
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(op.messages, std::vector<std::string>{"The header names 5 columns, the first data line holds 4 fields"});
    EXPECT_EQ(survey.processing.lines_read, 5);
    EXPECT_EQ(survey.processing.lines_rejected, 2);
    EXPECT_EQ(records(), 3);
}

TEST_F(DriverTest, AHeaderWithoutDataIsARunOfNothing)
{
    survey.data_file_name = folder.write("line.csv", "Time,East,North,Depth,M1");
    EXPECT_EQ(press(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(records(), 0);
    EXPECT_EQ(survey.processing.lines.CurrentLine, 0);
    EXPECT_EQ(display.finished_runs, 1);
    EXPECT_TRUE(op.messages.empty());
}

} // namespace
} // namespace tarvo

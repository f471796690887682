#include "core_load.h"
#include "session/session.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tarvo {
namespace {

// A window that keeps the order of what it was asked for.
class FakeSessionDisplay : public SessionDisplay {
public:
    std::vector<std::string> calls;
    std::function<void()> in_definitions_dialog = [] {};

    void show_missing_columns(const std::string& columns) override
    {
        if (!columns.empty()) calls.push_back("missing " + columns);
    }
    void note_opened_file(const std::string& name) override
    {
        calls.push_back("opened " + std::filesystem::path(name).filename().string());
    }
    void edit_definitions() override
    {
        calls.emplace_back("definitions");
        in_definitions_dialog();
    }
    void keep_settings() override { calls.emplace_back("keep"); }
    void end_listening() override { calls.emplace_back("end listening"); }
    void close_later() override { calls.emplace_back("close later"); }
};

struct SessionOrder : testing::Test {
    TestFolder folder;
    FakeOperator op;
    FakeRunDisplay run_display;
    FakePickDisplay pick_display;
    FakeSessionDisplay display;
    Session session{op, run_display, pick_display, display};

    std::string write_survey(const std::string& name, int lines, const std::string& sensor = "M1")
    {
        folder.write(name + ".def",
                     "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1.0\nDepth Data Scale : 1.0 0\n"
                     "\nNumber of Fish Data Fields : 4 1\n\n1: Time\n\n2: East\n\n3: North\n\n4: Depth\n\nNumber of "
                     "Sensors : 1\n"
                     "Number of Components per Sensor : 1\nRead Sensor Location: No\n\nSensor Number 1\n"
                     "Sensor Along Track Offset from Fish Location (mm): 0\nSensor Arm Length (mm): 0\n"
                     "Sensor Arm Rotation (deg): 0\nSensor Component 1: " +
                         sensor + "\n");
        std::string text = "Time,East,North,Depth,M1\n";
        for (int line = 0; line < lines; ++line) text += std::to_string(line) + ",1,2,3,48000\n";
        return folder.write(name + ".csv", text);
    }
    void press(StartButton button) { session.press_start(button, "1"); }
    std::int64_t lines_read() { return session.survey.processing.lines_read; }
};

constexpr StartButton kReplay = StartButton::replay_or_stop; // and stop
constexpr StartButton kLoad = StartButton::load_or_pause;    // and pause

// What the operator wants in the middle of a run ends it cleanly, and is done when it is over.
TEST_F(SessionOrder, WishesInMidRunWaitForItsEnd)
{
    const std::string first = write_survey("first", 60);
    const std::string second = write_survey("second", 30);
    struct Case {
        const char* label;
        StartButton button;
        std::function<void()> act; // after five lines
        std::string open_at_end;
        std::int64_t lines_at_end;
        int finished_runs;
    };
    const Case cases[] = {
        {"stop, load", kLoad, [&] { press(kReplay); }, first, 5, 1},
        {"stop, replay", kReplay, [&] { press(kReplay); }, first, 5, 1},
        {"stop twice and start", kLoad, [&] { press(kReplay), press(kReplay), press(kLoad); }, first, 5, 1},
        {"open another, load", kLoad, [&] { session.open_file(second); }, second, 0, 1},
        {"open another, replay", kReplay, [&] { session.open_file(second); }, second, 0, 1},
        {"open the same", kLoad, [&] { session.open_file(first); }, first, 0, 1},
        {"pause, then open another", kReplay, [&] { press(kLoad), session.open_file(second); }, second, 0, 1},
        {"start the other load", kReplay, [&] { session.when_idle([&] { press(kLoad); }); }, first, 60, 2},
        {"two wishes, in their order", kLoad,
         [&] { session.open_file(second), session.when_idle([&] { press(kLoad); }); }, second, 30, 2},
        {"a changed parameter", kLoad, [&] { session.reload_after([] {}); }, first, 60, 2},
    };
    for (const Case& c : cases) {
        session.open_file(first);
        run_display.finished_runs = 0;
        bool acted = false;
        run_display.at_line = [&](std::int64_t line) {
            if (line != 5 || acted) return;
            acted = true;
            c.act();
            EXPECT_EQ(session.survey.data_file_name, first) << c.label << ": the run still reads it";
            EXPECT_FALSE(session.is_idle()) << c.label;
        };
        press(c.button);
        EXPECT_TRUE(acted && session.is_idle()) << c.label;
        EXPECT_EQ(session.survey.data_file_name, c.open_at_end) << c.label;
        EXPECT_EQ(lines_read(), c.lines_at_end) << c.label;
        EXPECT_EQ(run_display.finished_runs, c.finished_runs) << c.label;
        EXPECT_EQ(run_display.controls.back().start_caption, "Start replay") << c.label;
        EXPECT_TRUE(run_display.controls.back().file_controls_enabled) << c.label;
    }
    EXPECT_TRUE(op.messages.empty());
}

TEST_F(SessionOrder, APausedRunIsEndedByAWishToo)
{
    session.open_file(write_survey("a", 60));
    run_display.at_line = [&](std::int64_t line) {
        if (line == 5) press(kLoad);
    };
    press(kLoad);
    EXPECT_EQ(session.driver.phase(), RunPhase::load_paused);
    EXPECT_EQ(session.close(), Closing::later);
    EXPECT_EQ(display.calls.back(), "close later");
    EXPECT_TRUE(session.is_idle());
    EXPECT_EQ(lines_read(), 5);
    EXPECT_EQ(session.close(), Closing::now);
}

TEST_F(SessionOrder, PicksThatAreInNoFileKeepTheSurveyOpen)
{
    session.open_file(write_survey("a", 60));
    press(kLoad);
    session.survey.pick_settings.ShowNewPickDialog = false;
    session.survey.picks.pick_file_name = folder.path("gone/a_pick.dat");
    session.pick_work.mnuAddAnomaly(indexed_track(session.survey).track, 2);
    op.answer = false;
    EXPECT_EQ(session.close(), Closing::refused);
    session.open_file(folder.path("a.csv"));
    EXPECT_EQ(session.survey.picks.number_of_picks, 1);
    session.driver.lock_for_pipe();
    EXPECT_EQ(session.close(), Closing::refused);
    EXPECT_NE(display.calls.back(), "end listening") << "asked before anything is ended";
    op.answer = true;
    EXPECT_EQ(session.close(), Closing::now);
    EXPECT_EQ(display.calls.back(), "end listening");
}

TEST_F(SessionOrder, AFileWithoutDefinitionsIsDefinedAndThenLoaded)
{
    const std::string file = write_survey("a", 60);
    std::filesystem::rename(folder.path("a.def"), folder.path("kept.def"));
    display.in_definitions_dialog = [&] {
        std::filesystem::rename(folder.path("kept.def"), folder.path("a.def"));
        session.take_edited_definitions();
    };
    session.open_file(file);
    EXPECT_EQ(display.calls[0], "opened a.csv");
    EXPECT_EQ(display.calls[1], "definitions");
    EXPECT_EQ(lines_read(), 60) << "Yes to the load that is offered";
    EXPECT_TRUE(session.is_idle());
}

TEST_F(SessionOrder, AnOpenPipeKeepsFilesAndReloadsAway)
{
    session.driver.lock_for_pipe();
    session.open_file(write_survey("a", 60));
    EXPECT_EQ(op.messages, std::vector<std::string>{"Close the UDP pipe before you open a file"});
    session.reload_after([] { ADD_FAILURE() << "nothing is to be changed"; });
    EXPECT_TRUE(session.survey.data_file_name.empty());
    session.driver.unlock_from_pipe();
    session.open_file(write_survey("b", 60, "MAG_7"));
    EXPECT_EQ(display.calls.back().substr(0, 14), "missing MAG_7 ");
}

} // namespace
} // namespace tarvo

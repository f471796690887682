#include "picks/pick_workflow.h"

#include "fake_operator.h"
#include "fake_pick_display.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "picks/pick_texts.h"
#include "picks/track_index.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace tarvo {
namespace {

// Ten samples, ten metres apart; sample s lies at (500 + 10 s, 900), one second after the one before.
struct StraightTrack {
    std::vector<double> distance = {0}, time = {0}, easting = {0}, northing = {0};
    cQuadTree tree;

    StraightTrack()
    {
        for (int sample = 1; sample <= 10; ++sample) {
            distance.push_back(10.0 * (sample - 1));
            time.push_back(45453 + sample / 86400.0);
            easting.push_back(500 + 10.0 * sample);
            northing.push_back(900);
        }
        build_track_index(table(), tree);
    }
    TrackTable table() const { return {10, distance.data(), time.data(), easting.data(), northing.data()}; }
};

class PickWork : public testing::Test {
protected:
    TestFolder folder;
    StraightTrack track;
    PickList picks;
    std::int32_t current_pick = -1;
    FakeOperator op;
    FakePickDisplay display;
    PickSettings settings;
    PickWorkflow work{picks, current_pick, settings, op, display};
    const IndexedTrack ground{track.table(), track.tree};

    void SetUp() override { work.open_picks_of(folder.path("line7.csv"), ground); }

    void mark(std::int32_t sample, const PickTexts& texts)
    {
        display.in_new_pick_dialog = [this, texts] { work.Command_save_anomaly(texts); };
        work.Command_mark_anomaly_location(track.table(), sample);
        op.messages.clear();
        display.calls.clear();
    }

    // "Target 1@3": name and sample of every pick, and the file's bytes those of the list.
    std::string list() const
    {
        if (picks.number_of_picks > 0) {
            EXPECT_EQ(folder.read("line7_pick.dat"), pick_file_text(picks));
        }
        std::string text;
        for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
            const Pick shown = pick_at(picks, pick);
            text += (pick == 1 ? "" : ", ") + shown.name + "@" + std::to_string(shown.sample_index);
        }
        return text;
    }
};

TEST_F(PickWork, SavesAMarkedPickBesideTheDataAndMakesItCurrent)
{
    display.in_new_pick_dialog = [this] {
        EXPECT_EQ(work.new_pick_texts(), (PickTexts{"Anomaly", "1", "0"}));
        EXPECT_EQ(work.Command_save_anomaly({"", "1", "0"}), -1);
        EXPECT_EQ(picks.number_of_picks, 0);
        EXPECT_EQ(work.Command_save_anomaly({"Target", "1", "2"}), 0);
    };
    work.mnuAddAnomaly(track.table(), 3);
    EXPECT_EQ(op.messages, (std::vector<std::string>{"No name has been specified", "The pick has been saved"}));
    EXPECT_EQ(list(), "Target 1@3");
    EXPECT_EQ(pick_at(picks, 1), (Pick{"Target 1", 2, 3, 45453 + 3 / 86400.0, {0, 530, 900, 20}}));
    EXPECT_EQ(current_pick, 1);
    EXPECT_EQ(display.calls,
              (std::vector<std::string>{"list", "redraw", "marker 3", "dialog", "no marker", "list", "redraw"}));
    EXPECT_EQ(display.controls, (PickControls{.names = {"Target 1"},
                                              .selected = 0,
                                              .label = "Current pick (1 of 1)",
                                              .choosing_enabled = true,
                                              .actions_enabled = true,
                                              .moving_enabled = true}));
}

TEST_F(PickWork, OffersNothingBesideTheTrackAndSavesNothingUnasked)
{
    for (const std::int32_t sample : {-1, 0, 11}) work.Command_mark_anomaly_location(track.table(), sample);
    display.in_new_pick_dialog = [] {};
    mark(2, {"Target", "1", "0"});
    display.in_new_pick_dialog = [] {};
    work.Command_mark_anomaly_location(track.table(), 4); // the operator closes the dialog
    EXPECT_EQ(display.calls, (std::vector<std::string>{"marker 4", "dialog", "no marker"}));
    EXPECT_EQ(list(), "Target 1@2");
}

TEST_F(PickWork, MarksNothingWithoutAPositionAndStepsOverIt)
{
    track.easting[4] = track.northing[4] = track.northing[5] = kNull;
    work.Command_mark_anomaly_location(track.table(), 4);
    EXPECT_EQ(op.messages, std::vector<std::string>{"No pick can be placed here: this sample has no position"});
    mark(3, {"Target", "1", "0"});
    work.HScroll_shift_anomaly(track.table(), 1);
    EXPECT_EQ(list(), "Target 1@6");
    work.HScroll_shift_anomaly(track.table(), -2);
    EXPECT_EQ(list(), "Target 1@3");
    track.easting[2] = track.easting[1] = kNull;
    work.HScroll_shift_anomaly(track.table(), -1);
    EXPECT_EQ(list(), "Target 1@3") << "nothing with a position is left on that side";
}

TEST_F(PickWork, SaysThatASampleHasAPickBeforeItTakesAnother)
{
    mark(3, {"Target", "1", "0"});
    mark(4, {"Target", "2", "0"});
    EXPECT_TRUE(op.questions.empty());
    op.answer = false;
    mark(3, {"Target", "3", "0"});
    EXPECT_EQ(list(), "Target 1@3, Target 2@4");
    op.answer = true;
    mark(3, {"Target", "3", "0"});
    EXPECT_EQ(list(), "Target 1@3, Target 2@4, Target 3@3");
    const std::string question = "This sample has a pick already: Target 1. Save another one there?";
    EXPECT_EQ(op.questions, (std::vector<std::string>{question, question}));
}

TEST_F(PickWork, AsksBeforeItMovesAPickThatLiesBesideTheTrack)
{
    mark(3, {"Target", "1", "0"});
    struct Case {
        double northing;
        bool answer;
        bool is_asked, is_moved;
    };
    const Case cases[] = {{910, false, false, true}, {910.1, false, true, false}, {877, true, true, true}};
    for (const Case& c : cases) {
        picks.pick_sample_index[1] = 3;
        picks.pick_locations[1] = {0, 530, c.northing, 20};
        op.questions.clear();
        op.answer = c.answer;
        EXPECT_EQ(picks_beyond(picks, track.table(), settings.PickTolerance), c.is_asked ? 1 : 0) << c.northing;
        work.HScroll_shift_anomaly(track.table(), 1);
        EXPECT_EQ(op.questions.size(), c.is_asked ? 1U : 0U) << c.northing;
        EXPECT_EQ(picks.pick_sample_index[1], c.is_moved ? 4 : 3) << c.northing;
    }
    EXPECT_EQ(op.questions.back(), "The anomaly Target 1 was marked 23.0 m away from its nearest sample. Give it the "
                                   "place and time of a sample?");
}

TEST_F(PickWork, OffersToDeleteTheFileThatAnEmptiedListLeaves)
{
    mark(3, {"Target", "1", "0"});
    EXPECT_EQ(leftover_pick_file(picks), "");
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(leftover_pick_file(picks), folder.path("line7_pick.dat"));
    work.undo(ground);
    EXPECT_EQ(leftover_pick_file(picks), "");
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(work.delete_leftover_file(), 0);
    EXPECT_EQ(leftover_pick_file(picks), "");
    EXPECT_FALSE(std::filesystem::exists(folder.path("line7_pick.dat")));
    folder.write("line7_pick.dat", "another program's");
    EXPECT_EQ(leftover_pick_file(picks), "") << "not this list's";
}

TEST_F(PickWork, SeveralAreTypedDeletedAndTakenBackAtOnce)
{
    for (const std::int32_t sample : {2, 4, 6, 8}) mark(sample, {"Target", std::to_string(sample), "0"});
    EXPECT_EQ(work.set_types({1, 3}, "x"), -1);
    EXPECT_EQ(picks.pick_types[1], 0);
    EXPECT_EQ(work.set_types({3, 1, 3, 9}, "5"), 0);
    EXPECT_EQ(picks.pick_types[1] + picks.pick_types[3], 10);
    EXPECT_EQ(picks.pick_types[2], 0);

    work.choose_pick(4);
    op.answer = false;
    work.delete_picks({2, 1}, ground);
    EXPECT_EQ(op.questions.back(), "Delete 2 anomalies: Target 2, Target 4?");
    EXPECT_EQ(picks.number_of_picks, 4);
    op.answer = true;
    work.delete_picks({3, 1, 2}, ground);
    EXPECT_EQ(list(), "Target 8@8");
    EXPECT_EQ(current_pick, 1) << "still Target 8";
    EXPECT_EQ(work.controls().undo_caption, "Undo delete of Target 2 and others");
    work.undo(ground);
    EXPECT_EQ(list(), "Target 2@2, Target 4@4, Target 6@6, Target 8@8");
    EXPECT_EQ(current_pick, 4);
    work.undo(ground);
    EXPECT_EQ(picks.pick_types[1] + picks.pick_types[3], 0) << "the types, both at once";
    EXPECT_FALSE(work.controls().undo_enabled);
}

TEST_F(PickWork, ADuplicateIsAskedAboutOrNotMade)
{
    settings.ShowNewPickDialog = false;
    work.Command_mark_anomaly_location(track.table(), 3);
    work.Command_mark_anomaly_location(track.table(), 3); // the chosen pick is here
    EXPECT_EQ(op.messages.back(), "Anomaly 1 is marked here already");
    op.answer = false;
    settings.DuplicateRadius = 10;
    work.Command_mark_anomaly_location(track.table(), 4); // exactly 10 m on
    EXPECT_EQ(list(), "Anomaly 1@3, Anomaly 2@4");
    EXPECT_TRUE(op.questions.empty());
    settings.DuplicateRadius = 10.5;
    work.Command_mark_anomaly_location(track.table(), 5);
    EXPECT_EQ(op.questions.back(), "Less than 10.5 m away is a pick already: Anomaly 2. Save another one here?");
    EXPECT_EQ(picks.number_of_picks, 2);
}

TEST_F(PickWork, SavesUnderAnotherNameAndKeepsItsOwnWhenThatFails)
{
    work.menu_write_list_as();
    EXPECT_TRUE(op.file_questions.empty()) << "nothing to save";
    mark(2, {"Target", "1", "0"});
    op.chosen_file = folder.path("gone/other.dat");
    work.menu_write_list_as();
    EXPECT_TRUE(op.messages.back().starts_with("An error occurred while saving the aomaly file: "));
    EXPECT_EQ(picks.pick_file_name, folder.path("line7_pick.dat"));
    EXPECT_FALSE(picks.is_unsaved);
    op.chosen_file = folder.path("other.dat");
    work.menu_write_list_as();
    EXPECT_EQ(picks.pick_file_name, folder.path("other.dat"));
    EXPECT_EQ(folder.read("other.dat"), folder.read("line7_pick.dat"));
}

TEST_F(PickWork, FollowsItsTwoSwitches)
{
    settings = {.ShowNewPickDialog = false, .DeferPickCombo = true};
    work.Command_mark_anomaly_location(track.table(), 2);
    EXPECT_EQ(list(), "Anomaly 1@2");
    EXPECT_EQ(current_pick, -1);
    EXPECT_TRUE(display.controls.names.empty());
    settings.DeferPickCombo = false;
    work.Command_mark_anomaly_location(track.table(), 5);
    EXPECT_EQ(list(), "Anomaly 1@2, Anomaly 2@5");
    EXPECT_EQ(display.controls.names, (std::vector<std::string>{"Anomaly 1", "Anomaly 2"}));
    EXPECT_EQ(current_pick, 2);
    EXPECT_EQ(work.Command_add_next({"Target", "", "3"}), (PickTexts{"Target", "0", "3"}));
    EXPECT_EQ(work.Command_add_next({"Anomaly", "1", "3"}), (PickTexts{"Anomaly", "3", "3"}));
}

TEST_F(PickWork, AsksForAFileWhenThereIsNoDataFile)
{
    work.open_picks_of("", ground);
    settings.ShowNewPickDialog = false;
    work.Command_mark_anomaly_location(track.table(), 2);
    EXPECT_EQ(op.messages, std::vector<std::string>{"The pick is in no file yet: no pick file has been chosen"});
    op.chosen_file = folder.path("line7_pick.dat");
    work.Command_mark_anomaly_location(track.table(), 3);
    work.Command_mark_anomaly_location(track.table(), 4);
    EXPECT_EQ(op.file_questions.size(), 2U);
    EXPECT_EQ(list(), "Anomaly 1@2, Anomaly 2@3, Anomaly 3@4");
}

TEST_F(PickWork, MovesTheCurrentPickOnlyWithinTheTrack)
{
    mark(3, {"Target", "1", "0"});
    struct Case {
        int step;
        const char* list;
    };
    const Case cases[] = {{-3, "Target 1@3"}, {-2, "Target 1@1"}, {-1, "Target 1@1"},
                          {10, "Target 1@1"}, {9, "Target 1@10"}, {1, "Target 1@10"}};
    for (const Case& c : cases) {
        work.HScroll_shift_anomaly(track.table(), c.step);
        EXPECT_EQ(list(), c.list) << c.step;
    }
    EXPECT_EQ(pick_at(picks, 1), (Pick{"Target 1", 0, 10, 45453 + 10 / 86400.0, {0, 600, 900, 90}}));
    EXPECT_EQ(display.calls, (std::vector<std::string>{"item 1", "redraw", "item 1", "redraw"}));

    work.take_picks_off_track();
    EXPECT_FALSE(display.controls.moving_enabled);
    work.HScroll_shift_anomaly(track.table(), 5);
    EXPECT_EQ(list(), "Target 1@-1");
    work.choose_pick(7);
    work.HScroll_shift_anomaly(track.table(), 5);
    EXPECT_EQ(current_pick, -1);
}

TEST_F(PickWork, DeletesWhatTheOperatorConfirms)
{
    for (int pick = 1; pick <= 4; ++pick) mark(pick, {"Target", std::to_string(pick), "0"});
    op.answer = false;
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(op.questions, std::vector<std::string>{"Delete the anomaly Target 4?"});
    EXPECT_EQ(picks.number_of_picks, 4);

    op.answer = true;
    work.select_pick_row(2);
    work.Command_delete_selected_pick(ground);
    EXPECT_EQ(list(), "Target 1@1, Target 3@3, Target 4@4");
    EXPECT_EQ(current_pick, 3) << "still Target 4";
    EXPECT_FALSE(work.list_controls().editing_enabled);
    work.Command_delete_selected_pick(ground);
    EXPECT_EQ(picks.number_of_picks, 3) << "no row is selected any more";
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(list(), "Target 1@1, Target 3@3");
    EXPECT_EQ(current_pick, -1);

    work.choose_pick(1);
    work.Command_delete_selected_anomaly(ground);
    const std::string file_of_the_last_pick = folder.read("line7_pick.dat");
    work.choose_pick(1);
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(folder.read("line7_pick.dat"), file_of_the_last_pick);
    EXPECT_EQ(display.controls,
              (PickControls{.names = {}, .undo_caption = "Undo delete of Target 3", .undo_enabled = true}));
}

TEST_F(PickWork, EditsNameAndTypeAndPutsRefusedTextsBack)
{
    mark(3, {"Target", "0", "1"});
    mark(4, {"Target", "7", "1"});
    const PickTexts fields = work.select_pick_row(1);
    EXPECT_EQ(fields, (PickTexts{"Target", "0", "1"}));
    EXPECT_EQ(work.Command_save_edit(fields), fields);
    EXPECT_TRUE(op.messages.empty());
    EXPECT_EQ(work.Command_save_edit({"TARGET", "7", "1"}), fields);
    EXPECT_EQ(op.messages, std::vector<std::string>{"That name is already in use"});
    EXPECT_EQ(work.Command_save_edit({"Target", "0", "2"}), (PickTexts{"Target", "0", "2"}));
    EXPECT_EQ(work.Command_save_edit({" Wreck ", "1.5", "2"}), (PickTexts{"Wreck", "1.5", "2"}));
    EXPECT_EQ(work.Command_cancel_edit(), (PickTexts{"Wreck", "1.5", "2"}));
    EXPECT_EQ(op.messages.back(), "The edits have been saved");
    EXPECT_EQ(list(), "Wreck 1.5@3, Target 7@4");
    EXPECT_EQ(display.controls.names[0], "Wreck 1.5");
}

TEST_F(PickWork, TakesBackMovesEditsAndDeletionsLastFirst)
{
    mark(3, {"Target", "1", "1"});
    mark(6, {"Target", "2", "1"});
    work.HScroll_shift_anomaly(track.table(), 2);
    work.select_pick_row(1);
    work.Command_save_edit({"Wreck", "1", "4"});
    work.Command_delete_selected_pick(ground);
    EXPECT_EQ(list(), "Target 2@8");
    work.undo(ground);
    EXPECT_EQ(list(), "Wreck 1@3, Target 2@8");
    EXPECT_EQ(current_pick, 2);
    EXPECT_EQ(display.controls.undo_caption, "Undo edit of Target 1");
    mark(9, {"Target", "1", "1"});
    work.undo(ground);
    EXPECT_EQ(op.messages, std::vector<std::string>{"That name is already in use"});
    work.choose_pick(3);
    work.Command_delete_selected_anomaly(ground);
    work.undo(ground);
    EXPECT_EQ(list(), "Wreck 1@3, Target 2@8, Target 1@9");
    work.select_pick_row(3);
    work.Command_save_edit({"Target", "3", "1"});
    for (int change = 0; change < 2; ++change) work.undo(ground);
    EXPECT_EQ(list(), "Wreck 1@3, Target 2@8, Target 1@9") << "the name of the older edit is taken again";
}

TEST_F(PickWork, ReadsAnotherListAndWritesToItFromThen)
{
    mark(3, {"Target", "1", "1"});
    PickList other;
    append_pick(other, {.name = "Far 1", .location = {0, 9000, 900, 0}});
    append_pick(other, {.name = "Near 2", .location = {0, 561, 900, 0}});
    other.pick_file_name = folder.path("other.dat");
    ASSERT_EQ(write_pick_file(other, op), 0);

    work.menu_read_list(ground);
    EXPECT_EQ(list(), "Target 1@3") << "cancelled";
    EXPECT_EQ(op.file_questions.back().title, "Select the MAG profile pick File");
    EXPECT_EQ(op.file_questions.back().filter, "MAG profile pick Files|*.dat;*_pick.dat|All files (*.*)|*.*");
    op.chosen_file = other.pick_file_name;
    work.menu_read_list(ground);
    EXPECT_EQ(pick_at(picks, 1).sample_index, -1);
    EXPECT_EQ(pick_at(picks, 2).sample_index, 6);
    EXPECT_EQ(current_pick, -1);
    EXPECT_FALSE(display.controls.undo_enabled);
    work.choose_pick(2);
    EXPECT_EQ(display.calls, (std::vector<std::string>{"list", "redraw", "sample 6", "redraw"}));
    work.HScroll_shift_anomaly(track.table(), 1);
    EXPECT_EQ(folder.read("other.dat"), pick_file_text(picks));

    op.chosen_file = folder.write("broken.dat", "no picks");
    work.menu_read_list(ground);
    EXPECT_EQ(display.controls, PickControls{});
    work.menu_write_list();
    settings.ShowNewPickDialog = false;
    work.Command_mark_anomaly_location(track.table(), 2);
    EXPECT_EQ(folder.read("broken.dat"), pick_file_text(picks));
    EXPECT_EQ(folder.read("broken.dat.unreadable"), "no picks");
}

TEST_F(PickWork, ShowsTheListInAnyOrderWithoutTouchingIt)
{
    mark(3, {"beta", "10", "2"});
    mark(1, {"Alpha", "9", "1"});
    mark(2, {"beta", "9.5", "1"});
    const std::vector<PickRow> grid = pick_grid(picks, op);
    ASSERT_EQ(grid.size(), 4U);
    EXPECT_EQ(grid[0], (PickRow{"Name", "ID", "Type", "X", "Y", "Distance", "Time"}));
    EXPECT_EQ(grid[3], (PickRow{"beta", "9.5", "1", "520.0", "900.0", "10.0", "00:00:02"}));
    using Order = std::vector<std::int32_t>;
    EXPECT_EQ(sorted_picks(picks, PickColumn::name, SortOrder::rising), (Order{2, 1, 3}));
    EXPECT_EQ(sorted_picks(picks, PickColumn::name, SortOrder::falling), (Order{1, 3, 2}));
    EXPECT_EQ(sorted_picks(picks, PickColumn::id, SortOrder::rising), (Order{2, 3, 1}));
    EXPECT_EQ(sorted_picks(picks, PickColumn::type, SortOrder::rising), (Order{2, 3, 1}));
    EXPECT_EQ(sorted_picks(picks, PickColumn::time, SortOrder::falling), (Order{1, 3, 2}));
    EXPECT_EQ(list(), "beta 10@3, Alpha 9@1, beta 9.5@2");
}

TEST_F(PickWork, AnotherListUnderTheQuestionIsNotDeletedFrom)
{
    mark(3, {"Target", "1", "0"});
    mark(5, {"Target", "2", "0"});
    op.under_question = [this] { work.open_picks_of({}, ground); };
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(picks.number_of_picks, 0);
    EXPECT_EQ(current_pick, -1);
}

TEST_F(PickWork, ChangesThatAreInNoFileAreNotDroppedWithoutAQuestion)
{
    mark(3, {"Target", "1", "0"});
    EXPECT_TRUE(work.may_leave_list());
    EXPECT_TRUE(op.questions.empty()) << "the file has it";
    picks.pick_file_name = folder.path("not/there/line7_pick.dat");
    work.HScroll_shift_anomaly(track.table(), 1);
    op.answer = false;
    EXPECT_FALSE(work.may_leave_list());
    EXPECT_EQ(op.questions, std::vector<std::string>{"The last changes of the pick list are not in its file, " +
                                                     picks.pick_file_name + ". Go on and lose them?"});
    op.chosen_file = folder.path("line7_pick.dat");
    work.menu_read_list(ground);
    EXPECT_EQ(picks.pick_sample_index[1], 4) << "still the list that was changed";
    op.answer = true;
    work.menu_read_list(ground);
    EXPECT_EQ(picks.pick_sample_index[1], 3);
    EXPECT_TRUE(work.may_leave_list());

    work.open_picks_of({}, ground);
    op.chosen_file.reset();
    mark(4, {"Target", "1", "0"});
    op.answer = false;
    EXPECT_FALSE(work.may_leave_list()) << "in no file yet";
}

TEST_F(PickWork, KeepsTheListWhenTheFileCannotBeWritten)
{
    mark(3, {"Target", "1", "1"});
    std::filesystem::remove(folder.path("line7_pick.dat"));
    std::filesystem::create_directory(folder.path("line7_pick.dat"));
    work.HScroll_shift_anomaly(track.table(), 1);
    work.Command_save_anomaly({"Target", "2", "1"});
    ASSERT_EQ(op.messages.size(), 2U);
    EXPECT_TRUE(op.messages[1].starts_with("An error occurred while saving the aomaly file: "));
    EXPECT_EQ(pick_at(picks, 1).sample_index, 4);
    EXPECT_EQ(picks.number_of_picks, 2);
}

TEST_F(PickWork, RemarksFollowTheirPicks)
{
    mark(3, {"Target", "1", "0"});
    mark(5, {"Target", "2", "0"});
    const auto written = [&] { return folder.read("line7_remarks.csv"); };
    work.set_remark(1, "wreck, \"old\"");
    EXPECT_EQ(written(), "name,remark\r\nTarget 1,\"wreck, \"\"old\"\"\"\r\n");

    work.select_pick_row(1);
    work.Command_save_edit({"Wreck", "7", "0"});
    EXPECT_EQ(written(), "name,remark\r\nWreck 7,\"wreck, \"\"old\"\"\"\r\n");
    work.undo(ground);
    EXPECT_EQ(work.remark_of(1), "wreck, \"old\"");

    work.choose_pick(1);
    work.Command_delete_selected_anomaly(ground);
    EXPECT_EQ(written(), "name,remark\r\n"); // another Target 1 is another pick
    work.undo(ground);
    EXPECT_EQ(work.remark_of(1), "wreck, \"old\"");
    EXPECT_EQ(written(), "name,remark\r\nTarget 1,\"wreck, \"\"old\"\"\"\r\n");

    work.open_picks_of(folder.path("line7.csv"), ground);
    EXPECT_EQ(work.remark_of(1), "wreck, \"old\"");
    work.set_remark(1, "");
    EXPECT_EQ(written(), "name,remark\r\n");
}

TEST_F(PickWork, RemarksThatCannotBeReadAreNotWrittenOver)
{
    mark(3, {"Target", "1", "0"});
    folder.write("line7_remarks.csv", "a list\nof something else\n");
    work.open_picks_of(folder.path("line7.csv"), ground);
    EXPECT_EQ(op.messages.size(), 1U);
    work.set_remark(1, "wreck");
    EXPECT_EQ(folder.read("line7_remarks.csv"), "a list\nof something else\n");
    EXPECT_EQ(op.messages.size(), 2U);
}

TEST_F(PickWork, RemarksThatTheDiskRefusedAreAskedAboutAndWrittenWithTheNextChange)
{
    mark(3, {"Target", "1", "0"});
    const std::string blocked = folder.path("line7_remarks.csv." + std::to_string(getpid()) + ".tmp");
    std::filesystem::create_directories(blocked + "/in the way");
    work.set_remark(1, "wreck");
    ASSERT_EQ(op.messages.size(), 1U);
    const std::string start = "An error occurred while saving the remarks: cannot write ";
    EXPECT_TRUE(op.messages[0].starts_with(start + folder.path("line7_remarks.csv") + ": ")) << op.messages[0];
    op.answer = false;
    EXPECT_FALSE(work.may_leave_list());

    std::filesystem::remove_all(blocked);
    mark(5, {"Target", "2", "0"});
    EXPECT_EQ(folder.read("line7_remarks.csv"), "name,remark\r\nTarget 1,wreck\r\n");
    EXPECT_TRUE(work.may_leave_list());
}

TEST_F(PickWork, RemarksOfASecondMonitorAreKept)
{
    mark(3, {"Target", "1", "0"});
    const std::string others = "name,remark\r\nTarget 1,the other's\r\n";
    folder.write("line7_remarks.csv", others);
    for (const char* const remark : {"first", "second"}) work.set_remark(1, remark);
    EXPECT_EQ(folder.read("line7_remarks.csv"), "name,remark\r\nTarget 1,second\r\n");
    EXPECT_EQ(folder.read("line7_remarks.csv.changed"), others);
    EXPECT_FALSE(std::filesystem::exists(folder.path("line7_remarks.csv.changed2")));
}

} // namespace
} // namespace tarvo

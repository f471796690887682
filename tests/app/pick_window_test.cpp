#include "window_fixture.h"

#include "app/dialogs/new_pick_form.h"
#include "app/dialogs/pick_list_form.h"
#include "app/panels/sensor_colours.h"
#include "picks/pick_file.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvo {

namespace {

// A loaded survey whose picks are worked on. After every step the file is the list.
class PickWindowTest : public WindowTest {
protected:
    std::string file;

    void SetUp() override
    {
        WindowTest::SetUp();
        file = write_survey(folder, "a", 3000);
        window.open_file(file);
        click("Command_start_logging_1");
        QApplication::processEvents();
    }

    PickList& picks() { return window.survey().picks; }
    QAction& action(const char* name) { return control<QAction>(name); }

    // A shortcut belongs to the active window, which a closed dialog leaves to nobody on a desktop without a manager.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    // Saves what the new pick dialog offers, or what is typed over it.
    void in_the_dialog(std::function<void(NewPickForm&)> act)
    {
        at_turn([this] { return window.findChild<NewPickForm*>() != nullptr; },
                [this, act] { act(*window.findChild<NewPickForm*>()); });
    }
    void mark(std::int32_t record, const QString& name = {})
    {
        window.view().make_current(record, Recentre::no);
        in_the_dialog([name](NewPickForm& form) {
            if (!name.isEmpty()) QTest::keyClicks(form.findChild<QLineEdit*>("Text_anomaly_name"), name);
            QTest::keyClick(&form, Qt::Key_Return);
        });
        press(Qt::Key_M);
        EXPECT_EQ(window.findChild<NewPickForm*>(), nullptr) << "saved and closed";
    }
    PickListForm& open_list()
    {
        action("menu_display_pick_list").trigger();
        return *window.findChild<PickListForm*>();
    }
    PickListForm& list_of_three()
    {
        mark(30, "Wreck");
        mark(60, "Anchor");
        mark(90, "Chain");
        return open_list();
    }
    // "Anomaly 1@30 ..." of the list; the same was read back from the disk.
    std::string list()
    {
        PickList on_disk;
        FakeOperator reader;
        EXPECT_EQ(read_pick_file(folder.path("a_pick.dat"), on_disk, reader).status, 0);
        EXPECT_EQ(on_disk.number_of_picks, picks().number_of_picks);
        std::string text;
        for (std::int32_t pick = 1; pick <= std::min(on_disk.number_of_picks, picks().number_of_picks); ++pick) {
            const Pick shown = pick_at(picks(), pick);
            const Pick stored = pick_at(on_disk, pick);
            EXPECT_EQ(stored.name, shown.name);
            EXPECT_EQ(stored.type, shown.type);
            for (std::size_t at = 1; at <= 3; ++at) EXPECT_NEAR(stored.location[at], shown.location[at], 0.051);
            text += (pick > 1 ? " | " : "") + shown.name + "@" + std::to_string(shown.sample_index);
        }
        return text;
    }
};

} // namespace

TEST_F(PickWindowTest, EveryStepIsInTheFile)
{
    EXPECT_FALSE(action("menu_display_pick_list").isEnabled());
    mark(30);
    mark(60);
    mark(90, "Wreck");
    EXPECT_EQ(list(), "Anomaly 1@30 | Anomaly 2@60 | Wreck 3@90");
    EXPECT_EQ(control<QLabel>("Label_current_pick").text(), "Current pick (3 of 3)");
    EXPECT_TRUE(action("menu_display_pick_list").isEnabled());

    auto& shift = control<QScrollBar>("HScroll_shift_anomaly");
    shift.triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(list(), "Anomaly 1@30 | Anomaly 2@60 | Wreck 3@100");
    EXPECT_EQ(shift.value(), 0) << "ready for the next move";
    control<QWidget>("Picture_data_track").setFocus();
    press(Qt::Key_Left);
    EXPECT_EQ(list(), "Anomaly 1@30 | Anomaly 2@60 | Wreck 3@99");

    auto& combo = control<QComboBox>("Combo_current_pick");
    combo.setCurrentIndex(0);
    emit combo.activated(0);
    EXPECT_EQ(window.survey().current_pick, 1);
    EXPECT_EQ(window.survey().track_image.current_record, 30) << "shown in the middle";
    op.answer = false;
    click("Command_delete_selected_anomaly");
    EXPECT_EQ(op.questions.back(), "Delete the anomaly Anomaly 1?");
    EXPECT_EQ(list(), "Anomaly 1@30 | Anomaly 2@60 | Wreck 3@99");
    op.answer = true;
    control<QPushButton>("Command_delete_selected_anomaly").setFocus();
    click("Command_delete_selected_anomaly");
    EXPECT_EQ(window.focusWidget(), &control<QWidget>("Picture_data_track")) << "no text box takes the next keys";
    EXPECT_EQ(list(), "Anomaly 2@60 | Wreck 3@99");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(list(), "Anomaly 1@30 | Anomaly 2@60 | Wreck 3@99");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(list(), "Anomaly 1@30 | Anomaly 2@60 | Wreck 3@100") << "the last move";
}

TEST_F(PickWindowTest, TheListSortsEditsAndJumpsWithoutChangingItsOrder)
{
    PickListForm& form = list_of_three();
    auto& grid = *form.findChild<QTableView*>("Grid_anomaly_picks");
    EXPECT_EQ(grid.currentIndex().row(), 2) << "opens on the current pick";
    const auto names = [&grid] {
        QStringList shown;
        for (int row = 0; row < grid.model()->rowCount(); ++row) shown += grid.model()->index(row, 0).data().toString();
        return shown.join(QLatin1Char(' ')).toStdString();
    };
    EXPECT_EQ(names(), "Wreck Anchor Chain");
    grid.sortByColumn(0, Qt::AscendingOrder);
    EXPECT_EQ(names(), "Anchor Chain Wreck");
    EXPECT_EQ(list(), "Wreck 1@30 | Anchor 2@60 | Chain 3@90");

    grid.selectRow(1);
    auto& name = *form.findChild<QLineEdit*>("Text_anomaly_name");
    EXPECT_EQ(name.text(), "Chain");
    name.setText("Zinc");
    QTest::mouseClick(form.findChild<QPushButton*>("Command_save_edit"), Qt::LeftButton);
    EXPECT_EQ(op.messages.back(), "The edits have been saved");
    EXPECT_EQ(list(), "Wreck 1@30 | Anchor 2@60 | Zinc 3@90");
    EXPECT_EQ(names(), "Anchor Wreck Zinc");
    EXPECT_EQ(name.text(), "Zinc") << "still the selected pick";

    emit grid.doubleClicked(grid.model()->index(0, 0));
    EXPECT_EQ(window.survey().current_pick, 2);
    EXPECT_EQ(window.survey().track_image.current_record, 60);
    grid.selectRow(0);
    QTest::mouseClick(form.findChild<QPushButton*>("Command_delete_selected_pick"), Qt::LeftButton);
    EXPECT_EQ(list(), "Wreck 1@30 | Zinc 3@90");
    EXPECT_EQ(names(), "Wreck Zinc");
    EXPECT_FALSE(name.isEnabled()) << "nothing is selected";
    form.close();
}

TEST_F(PickWindowTest, NamesOfOtherEncodingsStayWhenNobodyChangesThem)
{
    mark(30, "Green");
    window.survey().picks.pick_names[1] = "Gr\xFCn 1"; // as a list of another program holds it
    PickListForm& form = open_list();
    op.messages.clear();
    auto* const save = form.findChild<QPushButton*>("Command_save_edit");
    QTest::mouseClick(save, Qt::LeftButton);
    EXPECT_TRUE(op.messages.empty()) << "nothing was typed";
    form.findChild<QLineEdit*>("Text_anomaly_type")->setText("4");
    QTest::mouseClick(save, Qt::LeftButton);
    EXPECT_EQ(window.survey().picks.pick_names[1], "Gr\xFCn 1");
    EXPECT_EQ(window.survey().picks.pick_types[1], 4);
    form.close();
}

TEST_F(PickWindowTest, PointingMarksAndChooses)
{
    auto& track = control<QWidget>("Picture_data_track");
    const auto pixel_of = [this](std::int32_t record) {
        const SampleStore& store = window.survey().processing.store;
        const PixelTransform transform = active_transform(window.survey().track_image);
        return QPoint(pixel_x(transform, store.channel(kEast, record)),
                      pixel_y(transform, store.channel(kNorth, record)));
    };
    in_the_dialog([](NewPickForm& form) { QTest::keyClick(&form, Qt::Key_Return); });
    QTest::mouseDClick(&track, Qt::LeftButton, {}, pixel_of(250));
    EXPECT_EQ(list(), "Anomaly 1@250");
    in_the_dialog([](NewPickForm& form) { QTest::keyClick(&form, Qt::Key_Escape); });
    QTest::mouseDClick(&track, Qt::LeftButton, {}, pixel_of(100));
    EXPECT_EQ(list(), "Anomaly 1@250") << "closed without saving";
    mark(120);
    EXPECT_EQ(window.survey().current_pick, 2);
    QTest::mouseClick(&track, Qt::LeftButton, {}, pixel_of(250));
    EXPECT_EQ(window.survey().current_pick, 1) << "its ring was clicked";
}

TEST_F(PickWindowTest, LinesInGraphsAndBarsShowChooseAndMovePicks)
{
    mark(30, "Wreck");
    mark(60);
    mark(250);
    window.view().make_current(45, Recentre::no);
    QApplication::processEvents();
    auto& graph = control<QWidget>("Graph_profiles");
    auto& bar = control<QWidget>("Picture_TG_colour_bar_1");
    const auto share_of = [this](std::int32_t record) { // of the stretch about the current point
        const RecordValues& distance = window.survey().processing.store.distance;
        const double from = distance[window.survey().track_image.current_record];
        const double length = static_cast<double>(window.survey().display_settings.track_axis_length);
        return (distance[record] - from) / length + 0.5;
    };
    const auto x_in_graph = [&](std::int32_t record) {
        return static_cast<int>(
            std::lround(kAxisMargin + share_of(record) * (graph.width() - kAxisMargin - kEndMargin)));
    };
    const auto x_in_bar = [&](std::int32_t record) {
        return static_cast<int>(std::lround(share_of(record) * bar.width()));
    };
    const auto has_current_line = [](QWidget& widget, int x, QRgb colour) {
        QApplication::processEvents();
        const QImage shown = widget.grab().toImage();
        return shown.pixel(x, shown.height() - 3 - (widget.height() > 100 ? 60 : 0)) == colour;
    };
    const auto current_is_at = [&](std::int32_t record) {
        return has_current_line(graph, x_in_graph(record), 0xFFE02020) &&
               has_current_line(bar, x_in_bar(record), 0xFFFFFFFF);
    };
    EXPECT_FALSE(current_is_at(30));
    QTest::mouseClick(&graph, Qt::LeftButton, {}, {x_in_graph(30) + 2, 40});
    EXPECT_EQ(window.survey().current_pick, 1);
    EXPECT_EQ(window.survey().track_image.current_record, 30) << "in the middle";
    EXPECT_TRUE(current_is_at(30));
    EXPECT_FALSE(current_is_at(60));

    press(Qt::Key_Right); // the click gave the graphs the keyboard
    EXPECT_EQ(list(), "Wreck 1@31 | Wreck 2@60 | Wreck 3@250");
    EXPECT_EQ(window.survey().track_image.current_record, 30) << "the curves stay";
    EXPECT_TRUE(current_is_at(31));

    QTest::mouseClick(&bar, Qt::LeftButton, {}, {x_in_bar(60), 5});
    EXPECT_EQ(window.survey().current_pick, 2);
    EXPECT_TRUE(current_is_at(60));
    for (int step = 0; step < 17; ++step) press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(list(), "Wreck 1@31 | Wreck 2@230 | Wreck 3@250");
    EXPECT_TRUE(current_is_at(230)) << "the view goes along with a pick that would leave it";
    window.view().make_current(60, Recentre::no);
    QTest::mouseClick(&graph, Qt::LeftButton, {}, {x_in_graph(60), 40});
    EXPECT_EQ(window.survey().current_pick, 2) << "no pick is there any more";
}

TEST_F(PickWindowTest, ANameInABarChoosesItsPickAndMMarksNoSecondOne)
{
    mark(30, "A long name of a wreck");
    mark(250);
    window.view().make_current(60, Recentre::no);
    QApplication::processEvents();
    auto& bar = control<QWidget>("Picture_TG_colour_bar_1");
    const RecordValues& distance = window.survey().processing.store.distance;
    const double share = 0.5 + (distance[30] - distance[60]) / 100;
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {static_cast<int>(share * bar.width()) + 12, 4}); // beside the line
    EXPECT_EQ(window.survey().current_pick, 1);
    EXPECT_EQ(window.survey().track_image.current_record, 30);
    op.messages.clear();
    press(Qt::Key_M);
    EXPECT_EQ(window.findChild<NewPickForm*>(), nullptr);
    EXPECT_EQ(op.messages, std::vector<std::string>{"A long name of a wreck 1 is marked here already"});
    press(Qt::Key_Period);
    press(Qt::Key_Period);
    press(Qt::Key_Comma);
    EXPECT_EQ(window.survey().track_image.current_record, 31) << "the current point goes by samples";
    EXPECT_EQ(picks().pick_sample_index[1], 30) << "and no pick goes with it";
}

TEST_F(PickWindowTest, TheListNarrowsAndWorksOnSeveral)
{
    PickListForm& form = list_of_three();
    auto& grid = *form.findChild<QTableView*>("Grid_anomaly_picks");
    const auto box = [&form](const char* name) { return form.findChild<QLineEdit*>(QLatin1String(name)); };
    box("Text_filter_name")->setText(QStringLiteral("ch"));
    EXPECT_EQ(grid.model()->rowCount(), 2);
    grid.selectAll();
    EXPECT_FALSE(box("Text_anomaly_name")->isEnabled()) << "they have names of their own";
    box("Text_anomaly_type")->setText(QStringLiteral("7"));
    form.findChild<QPushButton*>("Command_save_edit")->click();
    EXPECT_EQ(picks().pick_types[1], 0);
    EXPECT_EQ(picks().pick_types[2] + picks().pick_types[3], 14);

    grid.selectAll();
    op.chosen_file = folder.path("some.csv");
    form.findChild<QAction*>("menu_list_export_picks")->trigger();
    const std::string some = folder.read("some.csv");
    EXPECT_EQ(std::count(some.begin(), some.end(), '\n'), 3) << "those two alone";
    EXPECT_EQ(some.find("Wreck"), std::string::npos);
    form.findChild<QPushButton*>("Command_delete_selected_pick")->click();
    EXPECT_EQ(picks().number_of_picks, 1);
    form.findChild<QAbstractButton*>("Command_show_all_picks")->click();
    EXPECT_EQ(grid.model()->rowCount(), 1);

    grid.selectRow(0);
    box("Text_anomaly_name")->setText(QStringLiteral("Wrong"));
    op.answer = false;
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_EQ(op.questions.back(), "What was edited here is not saved. Close and lose it?");
    EXPECT_TRUE(form.isVisible());
    op.answer = true;
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
}

TEST_F(PickWindowTest, AKilledProgramHasEverythingOnItsSamplesWhenItStartsAgain)
{
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) { // one thread works on the core alone, and is killed at once after its last step
        window.survey().pick_settings.ShowNewPickDialog = false;
        for (const std::int32_t record : {40, 80, 120, 160}) {
            window.session().pick_work.mnuAddAnomaly(indexed_track(window.survey()).track, record);
        }
        window.session().pick_work.HScroll_shift_anomaly(indexed_track(window.survey()).track, -7);
        window.session().pick_work.choose_pick(2);
        window.session().pick_work.Command_delete_selected_anomaly(indexed_track(window.survey()));
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    window.open_file(file);
    click("Command_start_logging_1");
    EXPECT_EQ(list(), "Anomaly 1@40 | Anomaly 3@120 | Anomaly 4@153");
}

} // namespace tarvo

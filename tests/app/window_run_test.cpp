#include "app/panels/hint_bar.h"
#include "survey/survey_readings.h"
#include "text/numbers.h"
#include "window_fixture.h"

#include <QAction>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QSlider>
#include <QUrl>

namespace tarvo {

namespace {

constexpr const char* kReplay = "Command_start_logging_0"; // and stop
constexpr const char* kLoad = "Command_start_logging_1";   // and pause
constexpr int kManyLines = 60000;                          // enough for several turns of the event loop

} // namespace

TEST_F(WindowTest, LoadStoresAndDrawsWhatTheCoreDoes)
{
    const std::string file = write_survey(folder, "a", 5000);
    window.open_file(file);
    EXPECT_EQ(caption(kLoad), QStringLiteral("Start load"));
    EXPECT_FALSE(control<QAbstractButton>("Command_mark_anomaly_location").isEnabled());
    click(kLoad);
    EXPECT_TRUE(control<QAbstractButton>("Command_mark_anomaly_location").isEnabled());
    CoreLoad core(file);
    EXPECT_EQ(stored_samples(window.survey().processing), stored_samples(core.session.survey.processing));
    EXPECT_EQ(control<QLabel>("Text_num_lines_read").text(), QStringLiteral("5,000"));
    EXPECT_EQ(control<QLabel>("Text_num_data").text(), QStringLiteral("455"));

    TrackImage& image = core.session.survey.track_image;
    const TrackImage& shown = window.survey().track_image;
    const TrackScene scene = track_scene(core.session.survey);
    resize_track_image(image, scene, shown.picture.width(), shown.picture.height(), op);
    make_record_current(image, scene, shown.current_record, Recentre::no, op);
    EXPECT_TRUE(image.picture == shown.picture);
    const QImage grabbed = control<QWidget>("Picture_data_track").grab().toImage();
    EXPECT_EQ(grabbed.pixel(shown.crosshair.x, 3) & 0xFFFFFF, shown.picture.row(3)[shown.crosshair.x]);
    EXPECT_TRUE(op.messages.empty());
}

TEST_F(WindowTest, PausedAndResumedReplayReadsEveryLineOnce)
{
    const std::string file = write_survey(folder, "a", kManyLines);
    window.open_file(file);
    int pauses = 0;
    for (const std::int64_t line : {500, 20000, 50000}) {
        at_turn([this, line] { return lines_read() >= line; },
                [this, &pauses] {
                    if (!run().replay_running || run().run_paused) return;
                    click(kLoad);
                    ++pauses;
                    EXPECT_EQ(caption(kLoad), QStringLiteral("Resume Replay"));
                });
    }
    click(kReplay);
    while (run().file_run_active()) {
        const std::int64_t read = lines_read();
        QApplication::processEvents();
        EXPECT_EQ(lines_read(), read) << "a paused run reads on";
        click(kLoad);
    }
    EXPECT_GE(pauses, 1);
    EXPECT_EQ(stored_samples(window.survey().processing), loaded_samples(file));
}

TEST_F(WindowTest, APausedReplayShowsAndMarksTheClickedPoint)
{
    window.open_file(write_survey(folder, "a", 4 * kManyLines));
    at_turn([this] { return window.survey().processing.store.RecordCount >= 300; }, [this] { click(kLoad); });
    click(kReplay);
    ASSERT_TRUE(run().run_paused);
    const std::int32_t newest = window.survey().processing.store.RecordCount;
    EXPECT_GT(window.view().middle_record(), newest / 2) << "no point was chosen";
    window.view().make_current(100, Recentre::no);
    EXPECT_EQ(window.view().middle_record(), 100);
    const std::string text = record_text(window.survey(), 100);
    EXPECT_EQ(control<QLabel>("Label_pointed").text().toStdString(), text);
    EXPECT_NE(text.find("   line 1   "), std::string::npos) << "by its name";
    EXPECT_EQ(control<QLabel>("Text_current_line").text(), QStringLiteral("line 1"));
    EXPECT_EQ(control<QLabel>("Dial_field_1").text().toStdString(),
              readable_number(dial_readings_of_record(window.survey(), 100).total_field[1], 2) + " nT");
    window.survey().pick_settings.ShowNewPickDialog = false;
    control<QAction>("menu_mark_anomaly").trigger();
    EXPECT_EQ(window.survey().picks.pick_sample_index[1], 100);
    const SectionLimits& section = window.survey().track_image.section;
    at_turn([&] { return window.survey().processing.store.RecordCount > newest + 20; },
            [&] {
                window.view().make_current(150, Recentre::no);
                EXPECT_TRUE(section.is_empty()) << "the bars show other metres";
                click(kLoad);
            });
    click(kLoad);
    ASSERT_TRUE(run().run_paused);
    EXPECT_TRUE(section.first < 150 && section.last > 150) << "as the bars";
    click(kReplay);
    EXPECT_TRUE(eventually([this] { return !run().any_run_active(); }));
}

TEST_F(WindowTest, WishesInMidRunStopItCleanlyFirst)
{
    const std::string first = write_survey(folder, "first", kManyLines);
    const std::string second = write_survey(folder, "second", 3000);
    const auto drop = [&] {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(second))});
        QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        QDropEvent event(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    };
    struct Case {
        const char* label;
        const char* button;
        std::function<void()> act;
        std::string open_at_end;
    };
    const Case cases[] = {
        {"stop", kLoad, [&] { click(kReplay); }, first},
        {"Esc", kReplay, [&] { control<QAction>("menu_stop").trigger(); }, first},
        {"drop another", kReplay, drop, second},
    };
    for (const Case& c : cases) {
        window.open_file(first);
        bool acted = false;
        at_turn([&] { return run().file_run_active() && lines_read() > 0; },
                [&] {
                    acted = true;
                    c.act();
                });
        click(c.button);
        EXPECT_TRUE(eventually([&] { return acted; })) << c.label;
        EXPECT_TRUE(eventually([&] { return !run().any_run_active() && !window.session().driver.is_at_work(); }))
            << c.label;
        EXPECT_TRUE(eventually([&] { return window.survey().data_file_name == c.open_at_end; })) << c.label;
        EXPECT_EQ(caption(kReplay), QStringLiteral("Start replay")) << c.label;
        EXPECT_TRUE(control<QLineEdit>("Text_locations_name_line").isEnabled()) << c.label;
    }
    for (const std::string& told : op.messages) { // on a busy machine the stop comes after the last line was read
        EXPECT_NE(told.find("the run was stopped while they were computed"), std::string::npos) << told;
    }
    window.open_file(second);
    click(kLoad);
    EXPECT_EQ(stored_samples(window.survey().processing), loaded_samples(second));
}

TEST_F(WindowTest, ClosingEndsTheRunFirst)
{
    for (const char* const button : {kLoad, kReplay}) {
        window.show();
        window.open_file(write_survey(folder, "a", kManyLines));
        at_turn([this] { return run().file_run_active(); },
                [this] {
                    EXPECT_FALSE(window.close());
                    EXPECT_TRUE(window.isVisible()) << "the loop is still at work";
                });
        click(button);
        EXPECT_TRUE(eventually([&] { return !window.isVisible(); }));
        EXPECT_FALSE(run().file_run_active());
        EXPECT_LT(lines_read(), kManyLines);
    }
}

TEST_F(WindowTest, UnsavedPicksAreWrittenFromTheirHint)
{
    window.open_file(write_survey(folder, "a", 300));
    click(kLoad);
    window.survey().pick_settings.ShowNewPickDialog = false;
    window.survey().picks.pick_file_name = folder.path("gone/a_pick.dat");
    window.session().pick_work.mnuAddAnomaly(indexed_track(window.survey()).track, 20);
    op.answer = false;
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    std::filesystem::create_directory(folder.path("gone"));
    click("Command_hint_unsaved_picks");
    EXPECT_TRUE(std::filesystem::exists(folder.path("gone/a_pick.dat")));
    const auto* const hint = window.findChild<QWidget*>(QStringLiteral("Hint_unsaved_picks"));
    EXPECT_TRUE(hint == nullptr || !hint->isVisible());
}

TEST_F(WindowTest, DialogHoldsTheRun)
{
    window.open_file(write_survey(folder, "a", kManyLines));
    bool held = false;
    at_turn([this] { return run().load_running; },
            [&] {
                const std::int64_t before = lines_read();
                at_turn([] { return QApplication::activeModalWidget() != nullptr; },
                        [&] {
                            QTest::qWait(50);
                            held = lines_read() == before;
                            QApplication::activeModalWidget()->close();
                        });
                control<QAction>("menu_about").trigger();
            });
    click(kLoad);
    EXPECT_TRUE(held);
    EXPECT_EQ(lines_read(), kManyLines);
}

TEST_F(WindowTest, StopDoesNotWaitForTheReplaysDelay)
{
    window.open_file(write_survey(folder, "a", kManyLines));
    std::int64_t lines_at_stop = 0;
    at_turn([this] { return lines_read() > 0; }, [this] { control<QSlider>("HScroll_speed").setValue(0); });
    at_turn([this] { return control<QSlider>("HScroll_speed").value() == 0 && run().replay_running; },
            [&] {
                lines_at_stop = lines_read();
                control<QAction>("menu_stop").trigger();
            });
    click(kReplay);
    EXPECT_GT(lines_at_stop, 0);
    EXPECT_LE(window.survey().processing.lines_read, lines_at_stop + 1) << "one delay is a second";
    EXPECT_EQ(control<QSlider>("HScroll_speed").value(), 100);
}

TEST_F(WindowTest, ViewIsChangedInMidRunWithoutHarm)
{
    const std::string file = write_survey(folder, "a", 2 * kManyLines);
    window.open_file(file);
    int turns = 0;
    auto* const timer = new QTimer(&window);
    QObject::connect(timer, &QTimer::timeout, &window, [&] {
        ++turns;
        switch (turns % 7) {
        case 0: click("Option_whole_track"); break;
        case 1: window.view().zoom_about(100 + turns % 300, 100, 1.5); break;
        case 2: window.view().drag(40, -25); break;
        case 3: window.resize(1000 + turns % 7 * 40, 700); break;
        case 4: click("Command_fit_range"); break;
        case 5: click("Option_scroll_track"); break;
        default: click("Option_follow_track");
        }
        QTest::mouseClick(&control<QWidget>("Picture_data_track"), Qt::LeftButton, {}, {200, 200});
    });
    timer->start(0);
    for (int run = 0; run < 20 && turns < 7; ++run) click(kReplay); // until every kind has had its turn
    timer->stop();
    EXPECT_GE(turns, 7);
    EXPECT_EQ(stored_samples(window.survey().processing), loaded_samples(file));
}

TEST_F(WindowTest, HintsInsteadOfBoxes)
{
    const std::string file = write_survey(folder, "a", 2000);
    window.open_file(file);
    EXPECT_EQ(control<QFrame>("Frame_hints").isVisible(), false);
    click(kLoad);
    const auto* const hint = window.findChild<QWidget*>(QStringLiteral("Hint_averages"));
    ASSERT_NE(hint, nullptr);
    EXPECT_EQ(hint->findChildren<QLabel*>().constLast()->text().left(8), QStringLiteral("9 % of y"));
    click("Command_hint_averages");
    EXPECT_TRUE(eventually([&] { return window.survey().processing.lines_not_averaged == 0; }));
    EXPECT_EQ(window.survey().processing.lines_read, 2000);
    EXPECT_EQ(settings.values["CarryClosingSample"], "1");

    std::string definitions = folder.read("a.def");
    definitions.replace(definitions.find("mag"), 3, "MAG_7");
    folder.write("a.def", definitions);
    window.open_file(file);
    ASSERT_NE(window.findChild<QWidget*>(QStringLiteral("Hint_columns")), nullptr);
    EXPECT_EQ(caption("Command_columns"), QStringLiteral("4 columns, 1 missing"));
    EXPECT_EQ(control<QMenu>("menu_columns").actions().constFirst()->text(),
              QStringLiteral("Missing: sensor 1: MAG_7"));
}

TEST_F(WindowTest, RefusalsAreShownAndLeaveTheWindowIdle)
{
    struct Case {
        const char* label;
        std::function<void()> act;
        const char* message;
    };
    const std::string bare = folder.write("bare.csv", "time,east\n1,2\n");
    const std::string file = write_survey(folder, "a", 100);
    const Case cases[] = {
        {"no file", [&] { click(kLoad); }, "The MAG data file has not been specified"},
        {"gone file", [&] { window.open_file(folder.path("gone.csv")); }, "The MAG data file could not be located"},
        {"empty file", [&] { window.open_file(folder.write("empty.csv", "")); },
         "The specified file does not appear to contain any data"},
        {"no definitions",
         [&] {
             QTimer::singleShot(0, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject(); });
             window.open_file(bare); // which offers to define the columns
             click(kLoad);
         },
         "No definition file was found"},
        {"header line abc",
         [&] {
             window.open_file(file);
             control<QLineEdit>("Text_locations_name_line").setText(QStringLiteral("abc"));
             click(kReplay);
         },
         "The header line number is not valid"},
    };
    for (const Case& c : cases) {
        op.messages.clear();
        c.act();
        EXPECT_EQ(op.messages, std::vector<std::string>{c.message}) << c.label;
        EXPECT_FALSE(run().any_run_active()) << c.label;
        EXPECT_TRUE(control<QAbstractButton>(kLoad).isEnabled()) << c.label;
    }
}

} // namespace tarvo

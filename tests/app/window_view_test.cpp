#include "app/panels/hint_bar.h"
#include "app/panels/sensor_colours.h"
#include "window_fixture.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QWheelEvent>

namespace tarvo {

namespace {

class LoadedWindowTest : public WindowTest {
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        window.open_file(write_survey(folder, "a", 6000));
        click("Command_start_logging_1");
        QApplication::processEvents();
    }
    const TrackImage& image() { return window.survey().track_image; }
    QWidget& track() { return control<QWidget>("Picture_data_track"); }
    QPoint pixel_of(std::int32_t record)
    {
        const SampleStore& store = window.survey().processing.store;
        const PixelTransform transform = active_transform(image());
        return {pixel_x(transform, store.channel(kEast, record)), pixel_y(transform, store.channel(kNorth, record))};
    }
    void turn_wheel(const QPoint& at, int notches)
    {
        QWheelEvent event(at, track().mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&track(), &event);
    }
};

} // namespace

TEST_F(LoadedWindowTest, ClickMakesTheNearestPointCurrentEverywhere)
{
    QTest::mouseClick(&track(), Qt::LeftButton, {}, pixel_of(300));
    EXPECT_EQ(image().current_record, 300);
    EXPECT_EQ(control<QScrollBar>("HScroll_pan").value(), 300);
    EXPECT_EQ(window.view().middle_record(), 300);
    control<QScrollBar>("HScroll_pan").setValue(42);
    EXPECT_EQ(image().current_record, 42);
    QTest::keyClick(&control<QScrollBar>("HScroll_pan"), Qt::Key_Right);
    EXPECT_EQ(image().current_record, 43) << "goes where it points";
    QTest::keyClick(&control<QScrollBar>("HScroll_pan"), Qt::Key_PageDown);
    EXPECT_GT(image().current_record, 44) << "as everywhere";
    control<QScrollBar>("HScroll_pan").setValue(42);
    QWidget& bar = control<QWidget>("Picture_TG_colour_bar_1");
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() - 1, 5});
    const RecordValues& distance = window.survey().processing.store.distance;
    EXPECT_NEAR(distance[image().current_record] - distance[42], 50, 1) << "half of the bar's 100 m";
}

TEST_F(LoadedWindowTest, WheelZoomKeepsThePlaceUnderThePointer)
{
    const QPoint at = pixel_of(200);
    const GridPlace before = place_of_pixel(image(), at.x(), at.y());
    turn_wheel(at, 6);
    EXPECT_FLOAT_EQ(image().zoomed_view.zoom, 4.0F);
    EXPECT_EQ(control<QComboBox>("Combo_zoom").currentText(), QStringLiteral("400%"));
    const GridPlace after = place_of_pixel(image(), at.x(), at.y());
    EXPECT_NEAR(after.easting, before.easting, 1e-6);
    EXPECT_NEAR(after.northing, before.northing, 1e-6);

    const QPoint enlarged = pixel_of(200);
    QTest::mousePress(&track(), Qt::LeftButton, {}, at);
    QTest::mouseMove(&track(), at + QPoint(30, 10));
    QTest::mouseMove(&track(), at + QPoint(60, -20));
    QTest::mouseRelease(&track(), Qt::LeftButton, {}, at + QPoint(60, -20));
    EXPECT_LE((pixel_of(200) - enlarged - QPoint(60, -20)).manhattanLength(), 2) << "rounding";
    turn_wheel(at, -20);
    EXPECT_EQ(image().zoomed_view.zoom, 1.0F);
    EXPECT_EQ(pixel_of(200), at);
}

TEST_F(LoadedWindowTest, ZoomIsTypedChosenAndLeft)
{
    auto& zoom = control<QComboBox>("Combo_zoom");
    zoom.setFocus();
    zoom.lineEdit()->selectAll();
    QTest::keyClicks(zoom.lineEdit(), QStringLiteral("250"));
    EXPECT_FLOAT_EQ(image().zoomed_view.zoom, 2.5F);
    EXPECT_EQ(zoom.currentText(), QStringLiteral("250"));
    control<QAction>("menu_whole_track").trigger();
    EXPECT_EQ(zoom.currentText(), QStringLiteral("100%"));
    EXPECT_EQ(image().zoomed_view.zoom, 1.0F);
    EXPECT_TRUE(control<QAbstractButton>("Option_whole_track").isChecked());
}

TEST_F(LoadedWindowTest, GraphsTakeATypedLengthAndFitTheirHeights)
{
    auto& length = *control<QComboBox>("Combo_display_axis_length").lineEdit();
    const auto type = [&](const QString& text) {
        length.setFocus();
        length.selectAll();
        QTest::keyClicks(&length, text);
        QTest::keyClick(&length, Qt::Key_Return);
    };
    type(QStringLiteral("35"));
    EXPECT_EQ(window.survey().display_settings.track_axis_length, 35);
    EXPECT_TRUE(eventually([this] { return settings.values["TrackAxisLength"] == "35"; }));
    type(QStringLiteral("none"));
    EXPECT_EQ(window.survey().display_settings.track_axis_length, 35);
    EXPECT_EQ(length.text(), QStringLiteral("35")) << "what holds is shown again";

    const auto rows_of_curves = [this] {
        QApplication::processEvents();
        const QImage shown = control<QWidget>("Graph_profiles").grab().toImage();
        int rows = 0;
        for (int y = 0; y < shown.height(); ++y) {
            bool any = false;
            for (int x = 0; x < shown.width(); ++x) any |= shown.pixel(x, y) == sensor_colour(1).rgb();
            rows += any ? 1 : 0;
        }
        return rows;
    };
    const int fitted = rows_of_curves();
    click("Command_fit_heights");
    EXPECT_LT(rows_of_curves(), fitted / 2);
    EXPECT_TRUE(eventually([this] { return settings.values["FitHeights"] == "0"; }));
    click("Command_fit_heights");
    EXPECT_EQ(rows_of_curves(), fitted);

    length.setFocus();
    length.selectAll();
    QTest::keyClicks(&length, QStringLiteral("333"));
    window.close();
    EXPECT_EQ(settings.values["TrackAxisLength"], "333") << "what was being typed is kept";
}

TEST_F(LoadedWindowTest, GraphsBarsSectionAndBoxSpanTheSameMetres)
{
    const RecordValues& distance = window.survey().processing.store.distance;
    QWidget& graph = control<QWidget>("Graph_profiles");
    QWidget& bar = control<QWidget>("Picture_TG_colour_bar_1");
    const auto expect_same_metres = [&](const char* label) {
        const double length = control<QComboBox>("Combo_display_axis_length").currentText().toDouble();
        const std::int32_t middle = window.view().middle_record();
        EXPECT_DOUBLE_EQ(window.survey().display_settings.track_axis_length, length) << label;
        EXPECT_GE(distance[image().section.first], distance[middle] - length / 2) << label;
        EXPECT_NEAR(distance[image().section.last], distance[middle] + length / 2, 1) << label;
        for (QWidget* const shown : {&graph, &bar}) { // a click at the right end goes half the length on
            const int end = shown == &graph ? graph.width() - kEndMargin - 1 : bar.width() - 1;
            window.view().hold_middle(middle);
            QTest::mouseClick(shown, Qt::LeftButton, {}, {end, 7});
            EXPECT_NEAR(distance[image().current_record], distance[middle] + length / 2, 1.5) << label;
        }
        window.view().make_current(200, Recentre::no);
    };
    const auto turn = [&](int notches) {
        QWheelEvent event(QPointF(150, 60), graph.mapToGlobal(QPoint(150, 60)), {}, {0, 120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&graph, &event);
    };
    window.view().make_current(200, Recentre::no);
    expect_same_metres("at first");
    turn(-3);
    EXPECT_EQ(control<QComboBox>("Combo_display_axis_length").currentText(), QStringLiteral("200"));
    expect_same_metres("zoomed out");
    turn(6);
    expect_same_metres("zoomed in");
    QTest::mousePress(&graph, Qt::LeftButton, {}, {200, 60});
    QTest::mouseMove(&graph, {180, 60});
    QTest::mouseMove(&graph, {160, 60});
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, {160, 60});
    EXPECT_GT(window.view().middle_record(), 203);
    EXPECT_EQ(image().current_record, 200);
    expect_same_metres("dragged");
    control<QAction>("menu_whole_line").trigger();
    EXPECT_NEAR(window.survey().display_settings.track_axis_length,
                distance[window.survey().processing.store.RecordCount], 1);
    QTest::mouseClick(&graph, Qt::LeftButton, {}, {(kAxisMargin + graph.width()) / 2 + 20, 60});
    EXPECT_LT(image().section.first, 3) << "the line stays whole when a point of it becomes current";
    control<QAction>("menu_whole_line").trigger();
    expect_same_metres("back from the whole line");
}

TEST_F(LoadedWindowTest, PlayMovesAlongTheTrackToItsEnd)
{
    auto& pan = control<QScrollBar>("HScroll_pan");
    click("Command_play_track");
    ASSERT_TRUE(eventually([&] { return pan.value() > 10; }));
    window.view().choose_zoom(QStringLiteral("500%"), 1);
    auto& zoom = *control<QComboBox>("Combo_zoom").lineEdit();
    zoom.setFocus();
    zoom.selectAll();
    for (const char* const digit : {"1", "0", "0", "0"}) {
        QTest::keyClicks(&zoom, QLatin1String(digit));
        const int before = pan.value();
        EXPECT_TRUE(eventually([&] { return pan.value() != before; })); // the play writes nothing into what is typed
    }
    EXPECT_FLOAT_EQ(image().zoomed_view.zoom, 10.0F);
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(caption("Command_play_track"), QStringLiteral("Play"));
    pan.setValue(pan.maximum() - 5);
    click("Command_play_track");
    EXPECT_TRUE(eventually(
        [&] { return pan.value() == pan.maximum() && caption("Command_play_track") == QStringLiteral("Play"); }));
    EXPECT_GE(image().current_record, window.survey().processing.store.RecordCount - 1);
}

TEST_F(LoadedWindowTest, RangeIsFittedAndKept)
{
    click("Command_fit_range");
    const double fitted = window.survey().display_settings.gradient_max_range;
    EXPECT_NE(fitted, 10.0);
    click("VScroll_TG_1_widen");
    EXPECT_DOUBLE_EQ(window.survey().display_settings.gradient_max_range, fitted * 1.25);
    EXPECT_TRUE(eventually([&] { return settings.values.contains("GradientMaxRange"); }));
    EXPECT_EQ(settings.values["GradientMaxRange"], format_shortest(fitted * 1.25));
}

TEST_F(LoadedWindowTest, ExportsEqualTheCores)
{
    op.chosen_file = folder.path("out.csv");
    control<QAction>("menu_export_samples").trigger();
    EXPECT_EQ(folder.read("out.csv"), samples_text(window.survey().processing));
    op.chosen_file = folder.path("track.png");
    control<QAction>("menu_export_track").trigger();
    const QImage png(QString::fromStdString(folder.path("track.png")));
    EXPECT_EQ(png.size(), QSize(image().picture.width(), image().picture.height()));
    op.chosen_file = folder.path("no/such/folder.csv");
    control<QAction>("menu_export_lines").trigger();
    ASSERT_EQ(op.messages.size(), 1U);
    EXPECT_TRUE(op.messages[0].starts_with("An error occurred while writing the survey lines: "));
}

TEST_F(LoadedWindowTest, LayoutIsKeptFromOneStartToTheNext)
{
    control<QAction>("menu_layout_interpretation").trigger();
    control<QAction>("menu_show_DisplayPicks").trigger();
    window.resize(1200, 700);
    QApplication::processEvents();
    const QSize graphs = control<QWidget>("Dock_DisplayGraphs").size();
    window.close();

    MainWindow next(settings, &op);
    next.show();
    QApplication::processEvents();
    const auto dock = [&next](const char* name) { return next.findChild<QWidget*>(QLatin1String(name)); };
    EXPECT_EQ(next.size(), window.size());
    EXPECT_EQ(dock("Dock_DisplayGraphs")->size(), graphs);
    EXPECT_FALSE(dock("Dock_DisplayPicks")->isVisible());
    next.actions().action("menu_layout_reset").trigger();
    EXPECT_TRUE(dock("Dock_DisplayDials")->isVisible());
}

TEST_F(LoadedWindowTest, TheTrackHasItsRoomInAWatch)
{
    window.resize(1280, 720);
    window.survey().pick_settings.ShowNewPickDialog = false;
    for (int pick = 0; pick < 100; ++pick) {
        window.session().pick_work.mnuAddAnomaly(indexed_track(window.survey()).track, 30);
    }
    control<QAction>("menu_layout_watch").trigger();
    QApplication::processEvents();
    EXPECT_GE(track().width() * track().height(), 0.6 * 1280 * 720);
    window.resize(1024, 700);
    QApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(1024, 700)) << "nothing keeps it wider";
    const QSize before = track().size();
    control<HintBar>("Frame_hints").show_hint(QStringLiteral("long"), QString(400, QLatin1Char('x')));
    QApplication::processEvents();
    EXPECT_EQ(track().size(), before) << "a hint pushes nothing";
}

TEST_F(LoadedWindowTest, EveryControlHasATooltipAndFits)
{
    window.resize(1280, 720);
    QApplication::processEvents();
    EXPECT_LE(window.minimumSizeHint().width(), 1280);
    EXPECT_LE(window.minimumSizeHint().height(), 720 - 40) << "a desktop has bars of its own";
    for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->text().size() > 0) {
            EXPECT_FALSE(button->toolTip().isEmpty()) << button->objectName().toStdString();
            const auto* const tool = qobject_cast<const QToolButton*>(button);
            if (tool != nullptr && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull()) {
                continue; // its text is not drawn
            }
            EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()))
                << button->objectName().toStdString();
        }
    }
}

} // namespace tarvo

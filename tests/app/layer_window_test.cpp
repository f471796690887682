#include "app/panels/layer_tree.h"
#include "tools/common/layer_module.h"
#include "window_fixture.h"

#include <QAction>
#include <QDockWidget>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>

namespace tarvo {

TEST_F(WindowTest, LayersLieUnderTheTrackAndLeaveNoTrace)
{
    if (!has_layer_module()) GTEST_SKIP() << "the module of background layers is not built";
    const std::string data = write_survey(folder, "a", 3000);
    folder.write("a_area.geojson",
                 R"({"type": "Feature", "properties": {}, "geometry": {"type": "Polygon", "coordinates":
[[[499900, 5999900], [500100, 5999900], [500100, 6000100], [499900, 6000100], [499900, 5999900]]]}})");
    window.layers().dock().show(); // the picture keeps its size from here on
    QApplication::processEvents();
    window.open_file(data);
    click("Command_start_logging_1");
    const Picture& picture = window.survey().track_image.picture;
    const Picture plain = picture;

    auto& menu = control<QMenu>("menu_layers");
    const auto press = [&](const char* text) {
        emit menu.aboutToShow();
        for (QAction* const action : menu.actions()) {
            if (action->text() == QLatin1String(text)) return action->trigger();
        }
        ADD_FAILURE() << text;
    };
    press("a_area.geojson");
    ASSERT_TRUE(eventually([&] { return picture != plain; }));
    const Picture with_layer = picture;
    EXPECT_EQ(control<LayerTree>("List_layers").topLevelItemCount(), 1);
    EXPECT_TRUE(eventually([&] { return folder.read("a.layers").find("\"a_area.geojson\"") != std::string::npos; }));

    window.open_file(data); // the list is read with the survey
    click("Command_start_logging_1");
    EXPECT_TRUE(eventually([&] { return picture == with_layer; }));
    press("a_area.geojson");
    EXPECT_TRUE(picture == plain);

    QMimeData files; // one of a survey would be opened as such
    files.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path("a_area.geojson")))});
    QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter); // without it no drop gets anywhere
    QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    EXPECT_TRUE(eventually([&] { return picture == with_layer; }));
    click("Command_remove_layer");
    EXPECT_TRUE(picture == plain);
}

} // namespace tarvo

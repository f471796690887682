#include "session/guide_pages.h"
#include "window_fixture.h"

#include <QDialog>
#include <QDockWidget>
#include <QLineEdit>
#include <QUrl>
#include <QVBoxLayout>

namespace tarvo {

TEST(GuidePages, AreThoseOfTheInnermostPlaceAndAllThere)
{
    struct Case {
        const char* label;
        std::vector<std::string> places;
        const char* page;
    };
    const Case cases[] = {
        {"nowhere", {}, "index"},
        {"of no name", {"", "qt_scrollarea_viewport"}, "index"},
        {"the innermost", {"", "Page_residual", "Form_processing_parameters", "Form_Tarvo"}, "residual"},
        {"beside it", {"Form_processing_parameters", "Form_Tarvo"}, "settings"},
        {"a dock", {"Table", "Dock_DisplayLive", "Form_Tarvo"}, "live"}};
    for (const Case& c : cases) EXPECT_EQ(guide_page_for(c.places), c.page) << c.label;
    for (const std::string_view page : guide_pages()) {
        const std::string file = TARVO_EXAMPLES "/../docs/guide/" + std::string(page) + ".md";
        EXPECT_TRUE(std::filesystem::exists(file)) << file;
    }
}

class GuideWindow : public WindowTest {};

TEST_F(GuideWindow, F1OpensThePageOfWhatHasTheKeyboard)
{
    std::string opened;
    window.guide().open = [&opened](const QUrl& page) {
        opened = page.fileName().toStdString();
        return true;
    };
    window.docks().show("DisplayLayers");
    window.activateWindow();
    auto& layers = control<QDockWidget>("Dock_DisplayLayers");
    layers.widget()->setFocusPolicy(Qt::StrongFocus);
    layers.widget()->setFocus();
    ASSERT_TRUE(eventually([&] { return layers.widget()->hasFocus(); }));
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_EQ(opened, "layers.html");

    QDialog dialog(&window);
    dialog.setObjectName("Form_base_station");
    QLineEdit edit(&dialog);
    dialog.open();
    dialog.activateWindow();
    edit.setFocus();
    ASSERT_TRUE(eventually([&] { return edit.hasFocus(); }));
    QTest::keyClick(&edit, Qt::Key_F1);
    EXPECT_EQ(opened, "residual.html");
    ASSERT_EQ(op.messages.size(), 2U) << "where the page is, each time";

    window.guide().open = [](const QUrl&) { return false; };
    QTest::keyClick(&edit, Qt::Key_F1);
    ASSERT_EQ(op.messages.size(), 3U);
    EXPECT_NE(op.messages[2].find("No program was found"), std::string::npos) << op.messages[2];
    for (const std::string& message : {op.messages[1], op.messages[2]}) {
        EXPECT_NE(message.find("/guide/residual.html"), std::string::npos) << message;
    }
}

} // namespace tarvo

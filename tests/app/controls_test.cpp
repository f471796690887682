#include "app/common/window_manners.h"
#include "app/dialogs/base_station_form.h"
#include "app/dialogs/definitions_form.h"
#include "app/dialogs/new_pick_form.h"
#include "app/dialogs/pick_list_form.h"
#include "app/dialogs/processing_form.h"
#include "app/dialogs/rejected_lines_form.h"
#include "app/window/system_report.h"
#include "window_fixture.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QToolTip>

namespace tarvo {

namespace {

bool is_control(const QWidget& widget)
{
    // The toolkit makes some of its own within others, and hides what a style does without.
    const QWidget* const parent = widget.parentWidget();
    const bool is_part =
        widget.objectName().startsWith(QLatin1String("qt_")) || qobject_cast<const QLineEdit*>(parent) != nullptr ||
        qobject_cast<const QComboBox*>(parent) != nullptr || qobject_cast<const QDockWidget*>(parent) != nullptr ||
        qobject_cast<const QAbstractItemView*>(parent) != nullptr;
    const auto* const tabs = qobject_cast<const QTabBar*>(&widget);
    const bool has_no_tabs = tabs != nullptr && (!tabs->isVisible() || tabs->currentIndex() < 0);
    if (is_part || has_no_tabs) return false;
    return (widget.focusPolicy() & Qt::TabFocus) != 0 || qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
           qobject_cast<const QLineEdit*>(&widget) != nullptr || qobject_cast<const QComboBox*>(&widget) != nullptr ||
           qobject_cast<const QAbstractItemView*>(&widget) != nullptr;
}

// The controls that assistive tools could not name, or that Tab does not reach.
std::string unusable_controls(QWidget& window)
{
    std::string found;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->window() != &window || !is_control(*widget)) continue;
        const QAccessibleInterface* const shown = QAccessible::queryAccessibleInterface(widget);
        const std::string name = widget->objectName().toStdString() + " (" + widget->metaObject()->className() + ") ";
        if (shown == nullptr || shown->text(QAccessible::Name).trimmed().isEmpty()) found += "no name: " + name;
        if ((widget->focusPolicy() & Qt::TabFocus) == 0) found += "no Tab: " + name;
    }
    return found;
}

} // namespace

class ControlsTest : public WindowTest {};

TEST_F(ControlsTest, AllHaveNamesAndAreReachedByTab)
{
    window.open_file(write_survey(folder, "a", 300));
    click("Command_start_logging_1");
    EXPECT_EQ(unusable_controls(window), "");
    SurveyState& survey = window.survey();
    append_pick(survey.picks, {"Wreck 1"});
    ProcessingForm processing(survey, op);
    DefinitionsForm definitions(survey, op);
    PickListForm list(window.session(), op, &control<QAction>("menu_undo_pick"));
    NewPickForm pick(window.session().pick_work, survey, op);
    RejectedLinesForm rejected(survey);
    BaseStationForm base(survey, op);
    for (QWidget* const form :
         std::initializer_list<QWidget*>{&processing, &definitions, &list, &pick, &rejected, &base}) {
        form->show();
        EXPECT_EQ(unusable_controls(*form), "") << form->objectName().toStdString();
        form->hide();
    }
}

TEST_F(ControlsTest, TooltipsWrapAndAreNoMarkup)
{
    QAbstractButton& button = control<QAbstractButton>("Command_start_logging_1");
    button.setToolTip(QStringLiteral("a < b, ").repeated(60));
    QHelpEvent event(QEvent::ToolTip, {5, 5}, button.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&button, &event);
    EXPECT_TRUE(QToolTip::text().startsWith(QLatin1String("<p style='white-space:pre-wrap'>a &lt; b")));
    QToolTip::hideText();
}

TEST_F(ControlsTest, EmptyTrackLeadsToASurveyWithFittedColours)
{
    auto& step = control<QAbstractButton>("Command_track_note");
    EXPECT_EQ(step.text(), QStringLiteral("Open a file"));
    op.chosen_file = write_survey(folder, "a", 3000);
    step.click();
    EXPECT_EQ(step.text(), QStringLiteral("Load, colours fitted"));
    window.survey().display_settings.gradient_max_range = 1000; // of another survey
    step.click();
    EXPECT_FALSE(control<QWidget>("Frame_track_note").isVisible());
    EXPECT_EQ(window.survey().processing.lines_read, 3000);
    EXPECT_LT(window.survey().display_settings.gradient_max_range, 100) << "and no further press";
}

TEST_F(ControlsTest, SystemReportNamesFilesWithoutTheirFolders)
{
    window.open_file(write_survey(folder, "a", 300));
    window.op().show_note("Nothing in " + folder.path("a.csv"));
    const QString report = system_report_text(window.survey(), window.log());
    EXPECT_TRUE(report.contains(QLatin1String("Nothing in a.csv")));
    EXPECT_FALSE(report.contains(QString::fromStdString(folder.path(""))));
    EXPECT_TRUE(report.contains(QLatin1String(qVersion())));
}

} // namespace tarvo

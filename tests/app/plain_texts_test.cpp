#include "app/dialogs/definitions_form.h"
#include "app/dialogs/new_pick_form.h"
#include "app/dialogs/pick_list_form.h"
#include "app/dialogs/processing_form.h"
#include "app/window/help_pages.h"
#include "definitions/definitions_file.h"
#include "window_fixture.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMenu>

#include <set>

namespace tarvo {

namespace {

// To markup an image without an end.
const std::string kName = "<img src='file:///dev/zero'>";

// Labels that may take a text for markup, and tooltips that hold some, by their widgets.
std::string takes_markup(const QWidget& root)
{
    std::string found;
    for (const QWidget* const widget : root.findChildren<QWidget*>()) {
        const auto* const label = qobject_cast<const QLabel*>(widget);
        const bool guesses = label != nullptr && label->textFormat() != Qt::PlainText;
        if (guesses || widget->toolTip().contains(QLatin1String("<img"))) {
            found +=
                widget->objectName().toStdString() + ": " + (label != nullptr ? label->text().toStdString() : "") + '|';
        }
    }
    for (const QAction* const action : root.findChildren<QAction*>()) {
        if (action->toolTip().contains(QLatin1String("<img"))) found += action->objectName().toStdString() + '|';
    }
    return found;
}

} // namespace

class PlainTexts : public WindowTest {};

TEST_F(PlainTexts, NoLabelAndNoTooltipTakesANameForMarkup)
{
    std::string file = write_survey(folder, "s", 40);
    SurveyDefinitions definitions;
    definitions.fields[kTime].name = "time";
    definitions.fields[kEast].name = "east";
    definitions.fields[kNorth].name = "north"; // a pick needs a position
    definitions.fields[kDepth].name = kName;
    definitions.fields[kHeading].name = "<b>gone";
    definitions.sensors[1].component_columns[1] = "<i>mag";
    folder.write("s.def", exact_definitions_text(definitions, 1));
    settings.values["RecentFiles"] = "/tmp/" + kName;
    folder.write("s.csv", "time,east,north," + kName + ",<i>mag\n1,2,3,4,5\n5,6,7,8,9\n9,8,7,6,5\n");
    window.open_file(file);
    window.press_start(StartButton::load_or_pause);
    append_pick(window.survey().picks, {kName + " 1"});
    window.session().pick_work.load_pick_list_on_form(indexed_track(window.survey()));
    emit control<QMenu>("menu_open_recent").aboutToShow();

    std::set<std::string> seen; // dialogs, as they open
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) return;
        seen.insert(dialog->objectName().toStdString());
        EXPECT_EQ(takes_markup(*dialog), "") << dialog->objectName().toStdString();
        static_cast<QDialog*>(dialog)->reject();
    });
    look.start(0);
    for (const char* const action : {"menu_definitions", "menu_processing_parameters", "menu_mark_anomaly",
                                     "menu_display_pick_list", "menu_shortcuts", "menu_about"}) {
        auto* const found = window.findChild<QAction*>(QLatin1String(action));
        if (found == nullptr)
            ADD_FAILURE() << action;
        else
            found->trigger();
        QApplication::processEvents();
    }
    EXPECT_EQ(seen.size(), 5U);
    EXPECT_EQ(takes_markup(window), ""); // the pick list among it
}

} // namespace tarvo

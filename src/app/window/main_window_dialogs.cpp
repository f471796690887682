// What the window does before and after its dialogs.

#include "app/dialogs/definitions_form.h"
#include "app/dialogs/header_box.h"
#include "app/dialogs/processing_form.h"
#include "app/window/main_window.h"
#include "intake/open_survey.h"

#include <QMenu>
#include <QMenuBar>

namespace tarvo {

void MainWindow::make_survey_menu()
{
    QMenu& menu = *menuBar()->addMenu(tr("&Survey"));
    menu.setObjectName(QStringLiteral("menu_survey"));
    idle_actions_.push_back(add_action(menu, "menu_definitions", tr("Survey &definitions..."), QStringLiteral("Ctrl+D"),
                                       [this] { when_idle([this] { edit_definitions(); }); }));
    idle_actions_.push_back(add_action(menu, "menu_processing_parameters", tr("&Processing parameters..."),
                                       QStringLiteral("Ctrl+T"),
                                       [this] { when_idle([this] { edit_processing_parameters(); }); }));
}

void MainWindow::edit_definitions()
{
    DefinitionsForm form(survey(), op_, this);
    form.exec();
    if (!form.has_changed_survey()) return;
    header_->show_survey(survey()); // the header line number may be another
    if (!survey().data_file_name.empty() && read_survey_header(survey(), op_) == 0) show_column_hint();
    show_survey();
    if (ask_to_load(survey(), op_)) press_start(StartButton::load_or_pause);
}

void MainWindow::edit_processing_parameters()
{
    ProcessingForm form(survey(), op_, this);
    form.exec();
    keep_settings(); // the scroll step is taken even when the dialog is cancelled afterwards
    if (carry_out_changes(form.changes(), survey(), op_)) {
        press_start(StartButton::load_or_pause);
    } else {
        show_survey();
    }
}

} // namespace tarvo

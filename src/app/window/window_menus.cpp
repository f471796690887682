// The menus, as tables of actions. What is added here is in the shortcuts page, too.

#include "app/common/survey_export.h"
#include "app/common/texts.h"
#include "app/dialogs/rejected_lines_form.h"
#include "app/panels/live_panel.h"
#include "app/panels/quantity_bar.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "app/window/help_pages.h"
#include "app/window/main_window.h"
#include "app/window/system_report.h"

#include <QAction>
#include <QActionGroup>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>

namespace tarvo {

namespace {

constexpr int kMostRecentFiles = 8;
constexpr QLatin1Char kBetweenFiles('\t'); // of one survey, in a recent entry

std::vector<std::string> names_of(const QStringList& texts)
{
    std::vector<std::string> names;
    for (const QString& text : texts) names.push_back(to_utf8(text));
    return names;
}

} // namespace

void MainWindow::make_menus()
{
    QMenu& file =
        actions_.add_menu("menu_file", tr("&File"),
                          {{"menu_open", tr("&Open..."), "Ctrl+O", Needs::idle, [this] { choose_file(); },
                            tr("Open a data file, or several as one survey")},
                           {"menu_open_folder", tr("Open &folder..."), "", Needs::idle, [this] { choose_folder(); },
                            tr("Open the data files of a folder as one survey")}});
    add_recent_files(file);
    file.addSeparator();
    panels_.live->add_actions(file);
    actions_.note_need(*panels_.live->record_action(), Needs::nothing);
    file.addSeparator();
    QMenu& exports = *file.addMenu(tr("&Export"));
    for (const ExportFormat& format : export_formats()) {
        if (format.subject != ExportSubject::picks) add_export(exports, format, Needs::idle_and_samples);
    }
    add_picture_exports(exports);
    file.addSeparator();
    actions_.add(file, {"menu_quit", tr("&Quit"), "Ctrl+Q", Needs::nothing, [this] { close(); }});

    QMenu& survey_menu =
        actions_.add_menu("menu_survey", tr("&Survey"),
                          {{"menu_definitions", tr("Survey &definitions..."), "Ctrl+D", Needs::idle,
                            [this] { session_.when_idle([this] { edit_definitions(); }); }},
                           {"menu_processing_parameters", tr("&Processing parameters..."), "Ctrl+T", Needs::idle,
                            [this] { session_.when_idle([this] { edit_processing_parameters(); }); }},
                           {"menu_use_all_corrections", tr("&Use all corrections"), "", Needs::idle,
                            [this] { session_.reload_after([this] { use_all_corrections(survey()); }); }}});
    survey_tools_.add_survey_actions(actions_, survey_menu);
    actions_.add_menu("menu_run", tr("&Run"),
                      {{"menu_start_load", tr("Start &load"), "F5", Needs::idle,
                        [this] { press_start(StartButton::load_or_pause); }, tr("Load the file")},
                       {"menu_start_replay", tr("Start &replay"), "F6", Needs::idle,
                        [this] { press_start(StartButton::replay_or_stop); }, tr("Replay the file")},
                       {},
                       {"menu_pause", tr("&Pause or resume"), "Space", Needs::file_run,
                        [this] { press_start(StartButton::load_or_pause); }, tr("Pause or resume the run")},
                       {"menu_stop", tr("&Stop"), "Esc", Needs::file_run,
                        [this] { press_start(StartButton::replay_or_stop); }, tr("Stop the run, halt the play")}});
    make_pick_menu();
    targets_.add_actions(actions_);
    make_view_menu();
    actions_.add_menu("menu_help", tr("&Help"),
                      {{"menu_guide", tr("&Guide"), "F1", Needs::nothing, [this] { guide_.show(); },
                        tr("The guide's page about what has the keyboard")},
                       {"menu_shortcuts", tr("&Keyboard and mouse"), "Shift+F1", Needs::nothing,
                        [this] { show_shortcuts_page(actions_.shortcuts(), this); }, tr("This page")},
                       {"menu_system_report", tr("&System report..."), "", Needs::nothing,
                        [this] { show_system_report(survey(), log_, op_, this); }},
                       {"menu_about", tr("&About Tarvo"), "", Needs::nothing, [this] { show_about_box(this); }}});
}

void MainWindow::add_export(QMenu& menu, const ExportFormat& format, Needs needs)
{
    const std::string name = std::string("menu_export_") + format.key;
    actions_.add(menu, {name.c_str(), tr(format.caption), "", needs,
                        [this, &format] { export_file(format, survey(), op_, this); }});
}

void MainWindow::add_picture_exports(QMenu& menu)
{
    menu.addSeparator();
    actions_.add(menu, {"menu_export_track", tr("Track &image as PNG..."), "", Needs::idle_and_samples,
                        [this] { export_track_file(survey(), panels_.track->track().picture(), op_); }});
    actions_.add(menu, {"menu_copy_track", tr("&Copy the track image"), "Ctrl+Shift+C", Needs::samples,
                        [this] { QGuiApplication::clipboard()->setImage(panels_.track->track().picture()); },
                        tr("Copy the track image to the clipboard")});
    bool& lettered = survey().display_settings.lettered_pictures;
    actions_.add_switch(menu,
                        {QStringLiteral("LetteredPictures"), tr("&Names and legend in pictures"),
                         tr("Pick names, scale bar, legend, north arrow and dates in exported and copied pictures"),
                         lettered, [this, &lettered](bool on) {
                             lettered = on;
                             keep_settings();
                         }});
}

void MainWindow::make_pick_menu()
{
    QMenu& menu = actions_.add_menu(
        "menu_picks", tr("&Picks"),
        {{"menu_mark_anomaly", tr("&Mark a pick"), "M", Needs::nothing, [this] { pick_view_.mark(); },
          tr("Mark a pick at the current point, or at the newest one while a run goes on")},
         {"menu_display_pick_list", tr("Pick &list..."), "Ctrl+L", Needs::nothing, [this] { pick_view_.show_list(); }},
         {"menu_read_pick_list", tr("&Read a pick list..."), "", Needs::nothing,
          [this] { session_.pick_work.menu_read_list(indexed_track(survey())); }},
         {"menu_save_picks_as", tr("&Save picks as..."), "", Needs::nothing,
          [this] { session_.pick_work.menu_write_list_as(); }},
         {},
         {"menu_undo_pick", tr("&Undo"), "Ctrl+Z", Needs::nothing, [this] { pick_view_.undo(); },
          tr("Undo the last move, edit or deletion of a pick")},
         {"menu_delete_pick", tr("&Delete the current pick"), "Del", Needs::nothing,
          [this] { pick_view_.delete_current(); }},
         {"menu_move_back", tr("Move &back"), "Left", Needs::nothing, [this] { pick_view_.move(-kSmallShiftStep); },
          tr("Move the current pick back by a sample")},
         {"menu_move_on", tr("Move &on"), "Right", Needs::nothing, [this] { pick_view_.move(kSmallShiftStep); },
          tr("Move the current pick on by a sample")},
         {"menu_move_far_back", tr("Move ten back"), "Shift+Left", Needs::nothing,
          [this] { pick_view_.move(-kLargeShiftStep); }, tr("Move the current pick back by ten samples")},
         {"menu_move_far_on", tr("Move ten on"), "Shift+Right", Needs::nothing,
          [this] { pick_view_.move(kLargeShiftStep); }, tr("Move the current pick on by ten samples")},
         {}});
    QMenu& exports = *menu.addMenu(tr("E&xport"));
    for (const ExportFormat& format : export_formats()) {
        if (format.subject == ExportSubject::picks) add_export(exports, format, Needs::nothing);
    }
    menu.addSeparator();
    const auto add_switch = [&](const char* name, const QString& text, const QString& tip, bool PickSettings::*value) {
        PickSettings& settings = survey().pick_settings;
        actions_.add_switch(menu, {name, text, tip, settings.*value, [this, &settings, value](bool on) {
                                       settings.*value = on;
                                       keep_settings();
                                   }});
    };
    add_switch("ShowNewPickDialog", tr("Ask for &name and type"), tr("Else a pick is saved at once, numbered on"),
               &PickSettings::ShowNewPickDialog);
    add_switch("DeferPickCombo", tr("&Keep the current pick when marking"), tr("A new pick does not become current"),
               &PickSettings::DeferPickCombo);
}

void MainWindow::make_view_menu()
{
    QMenu& menu =
        actions_.add_menu("menu_view", tr("&View"),
                          {{"menu_whole_track", tr("&Whole track"), "Ctrl+0", Needs::nothing,
                            [this] { panels_.track->show_whole(); }, tr("Show the whole track")},
                           {"menu_follow_track", tr("F&ollow the newest sample"), "Ctrl+1", Needs::samples,
                            [this] { view_.follow(); }, tr("Follow the newest sample, true to scale")},
                           {"menu_scroll_track", tr("S&croll under the newest sample"), "Ctrl+2", Needs::samples,
                            [this] { view_.scroll(); }, tr("Scroll under the newest sample, a pixel to the metre")},
                           {"menu_play", tr("&Play along the track"), "Ctrl+P", Needs::nothing,
                            [this] { panels_.track->toggle_playing(); }, tr("Play along the track, halt")},
                           {"menu_fit_range", tr("&Fit the colour range"), "Ctrl+F", Needs::nothing,
                            [this] { view_.fit_range(); }, tr("Fit the colour range to the view")},
                           {"menu_rejected_lines", tr("&Rejected lines..."), "", Needs::nothing,
                            [this] { show_rejected_lines(); }, tr("List the lines that were rejected, and why")},
                           {}});
    add_point_menu(menu);
    fill_quantity_menu(*menu.addMenu(tr("Displayed &quantity")), view_);
    fill_colour_menu(*menu.addMenu(tr("Colour &map")), view_);
    survey_tools_.add_view_actions(actions_, menu);
    menu.addSeparator();
    docks_.add_actions(actions_, menu);
    menu.addSeparator();
    add_layout_menu(menu);
    add_colour_menu(menu);
    actions_.add(menu, {"menu_full_screen", tr("F&ull screen"), "F11", Needs::nothing,
                        [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); }});
}

void MainWindow::add_point_menu(QMenu& menu)
{
    constexpr int kFar = 10; // samples
    QMenu& point = *menu.addMenu(tr("Current &point"));
    const auto add_step = [&](const char* name, const QString& text, const char* shortcut, int samples) {
        actions_.add(point, {name, text, shortcut, Needs::samples, [this, samples] { view_.step_point(samples); },
                             tr("Current point: %1").arg(QString(text).remove(QLatin1Char('&')).toLower())});
    };
    add_step("menu_step_back", tr("A sample &back"), ",", -1);
    add_step("menu_step_on", tr("A sample &on"), ".", 1);
    add_step("menu_step_far_back", tr("Ten samples back"), "Ctrl+,", -kFar);
    add_step("menu_step_far_on", tr("Ten samples on"), "Ctrl+.", kFar);
    actions_.add(menu, {"menu_whole_line", tr("Profile of the whole &line"), "L", Needs::samples,
                        [this] { view_.show_whole_line(!view_.is_whole_line()); },
                        tr("Graphs and bars over the whole survey line, and back")});
}

void MainWindow::add_colour_menu(QMenu& menu)
{
    QMenu& colours = *menu.addMenu(tr("&Colours"));
    auto* const group = new QActionGroup(&colours);
    const ColourScheme kept = colour_scheme_of(stored("Colours"));
    for (const ColourSchemeEntry& entry : kColourSchemes) {
        QAction* const action = colours.addAction(tr(entry.caption));
        action->setObjectName(QLatin1String("menu_colours_") + QLatin1String(entry.key));
        action->setCheckable(true);
        action->setChecked(entry.scheme == kept);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, scheme = entry.scheme] { choose_colours(scheme); });
    }
    colours.addSeparator();
    actions_.add(colours, {"menu_toggle_night", tr("&Toggle night"), "F8", Needs::nothing, [this] { toggle_night(); },
                           tr("Night colours, and back")});
    colours_.apply(kept);
}

void MainWindow::choose_colours(ColourScheme scheme)
{
    if (colours_.current() != ColourScheme::night) day_colours_ = colours_.current();
    colours_.apply(scheme);
    for (const ColourSchemeEntry& entry : kColourSchemes) {
        if (entry.scheme == scheme) store("Colours", QLatin1String(entry.key));
    }
}

void MainWindow::toggle_night()
{
    const ColourScheme scheme = colours_.current() == ColourScheme::night ? day_colours_ : ColourScheme::night;
    for (const ColourSchemeEntry& entry : kColourSchemes) {
        if (entry.scheme != scheme) continue;
        if (auto* const action = findChild<QAction*>(QLatin1String("menu_colours_") + QLatin1String(entry.key))) {
            action->trigger();
        }
    }
}

void MainWindow::choose_file()
{
    const std::vector<std::string> files = op_.choose_files_to_open(
        {"Open survey data files", "Survey data files|*.csv;*.dat;*.txt;*.xyz|All files (*.*)|*.*",
         to_utf8(stored("CWD")), ""});
    if (!files.empty()) open_files(files);
}

void MainWindow::choose_folder()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Open the data files of a folder as one survey"), stored("CWD"));
    if (!folder.isEmpty()) open_files({to_utf8(folder)});
}

void MainWindow::show_rejected_lines()
{
    auto* const form = new RejectedLinesForm(survey(), this);
    form->setAttribute(Qt::WA_DeleteOnClose);
    connect(form, &RejectedLinesForm::definitions_wanted, this,
            [this] { session_.when_idle([this] { edit_definitions(); }); });
    form->show();
}

void MainWindow::add_recent_files(QMenu& menu)
{
    QMenu& recent = *menu.addMenu(tr("Open &recent"));
    recent.setObjectName(QStringLiteral("menu_open_recent"));
    recent.setToolTipsVisible(true);
    actions_.note_need(*recent.menuAction(), Needs::idle);
    connect(&recent, &QMenu::aboutToShow, this, [this, &recent] {
        recent.clear();
        const QStringList files = stored("RecentFiles").split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& file : files) {
            const QStringList names = file.split(kBetweenFiles);
            const QString more = names.size() > 1 ? tr(" and %1 more").arg(names.size() - 1) : QString();
            QAction* const action = recent.addAction(QFileInfo(names.constFirst()).fileName() + more);
            action->setToolTip(plain_tip(names.join(QLatin1Char('\n'))));
            connect(action, &QAction::triggered, this, [this, names] { open_files(names_of(names)); });
        }
        if (files.isEmpty()) recent.addAction(tr("None yet"))->setEnabled(false);
    });
}

void MainWindow::note_opened_files(const std::vector<std::string>& chosen)
{
    targets_.forget_survey();
    QStringList paths;
    for (const std::string& name : chosen) paths.append(QFileInfo(to_qt(name)).absoluteFilePath());
    const QString path = paths.join(kBetweenFiles);
    QStringList files = stored("RecentFiles").split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    files.removeAll(path);
    files.prepend(path);
    if (files.size() > kMostRecentFiles) files.resize(kMostRecentFiles);
    store("RecentFiles", files.join(QLatin1Char('\n')));
    store("CWD", QFileInfo(paths.constFirst()).absolutePath());
}

} // namespace tarvo

// The menus, as tables of actions. What is added here is in the shortcuts page, too.

#include "app/common/survey_export.h"
#include "app/common/texts.h"
#include "app/panels/live_panel.h"
#include "app/panels/track_panel.h"
#include "app/window/help_pages.h"
#include "app/window/main_window.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>

namespace tarvo {

namespace {

constexpr int kMostRecentFiles = 8;

} // namespace

void MainWindow::make_menus()
{
    QMenu& file = actions_.add_menu(
        "menu_file", tr("&File"),
        {{"menu_open", tr("&Open..."), "Ctrl+O", Needs::idle, [this] { choose_file(); }, tr("Open a data file")}});
    add_recent_files(file);
    file.addSeparator();
    panels_.live->add_actions(file);
    file.addSeparator();
    QMenu& exports = *file.addMenu(tr("&Export"));
    const ActionEntry kExports[] = {{"menu_export_samples", tr("&Samples as CSV..."), "", Needs::idle_and_samples,
                                     [this] { export_samples_file(survey(), op_, this); }},
                                    {"menu_export_lines", tr("Survey &lines as CSV..."), "", Needs::idle_and_samples,
                                     [this] { export_lines_file(survey(), op_); }},
                                    {"menu_export_track", tr("&Track image as PNG..."), "", Needs::idle_and_samples,
                                     [this] { export_track_file(survey(), op_); }}};
    for (const ActionEntry& entry : kExports) actions_.add(exports, entry);
    file.addSeparator();
    actions_.add(file, {"menu_quit", tr("&Quit"), "Ctrl+Q", Needs::nothing, [this] { close(); }});

    actions_.add_menu("menu_survey", tr("&Survey"),
                      {{"menu_definitions", tr("Survey &definitions..."), "Ctrl+D", Needs::idle,
                        [this] { session_.when_idle([this] { edit_definitions(); }); }},
                       {"menu_processing_parameters", tr("&Processing parameters..."), "Ctrl+T", Needs::idle,
                        [this] { session_.when_idle([this] { edit_processing_parameters(); }); }}});
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
    make_view_menu();
    actions_.add_menu("menu_help", tr("&Help"),
                      {{"menu_shortcuts", tr("&Keyboard and mouse"), "F1", Needs::nothing,
                        [this] { show_shortcuts_page(actions_.shortcuts(), this); }, tr("This page")},
                       {"menu_about", tr("&About Tarvo"), "", Needs::nothing, [this] { show_about_box(this); }}});
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
         {},
         {"menu_export_picks", tr("E&xport as CSV..."), "", Needs::nothing,
          [this] { export_picks_csv(survey(), op_); }},
         {"menu_export_picks_map", tr("Export as &GeoJSON..."), "", Needs::nothing,
          [this] { export_picks_geojson(survey(), op_); }},
         {}});
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
                            [this] { view_.choose_zoom(QStringLiteral("100%"), 0); }, tr("Show the whole track")},
                           {"menu_play", tr("&Play along the track"), "Ctrl+P", Needs::nothing,
                            [this] { panels_.track->toggle_playing(); }, tr("Play along the track, halt")},
                           {"menu_fit_range", tr("&Fit the colour range"), "Ctrl+F", Needs::nothing,
                            [this] { view_.fit_range(); }, tr("Fit the colour range to the view")},
                           {}});
    add_panel_actions(menu);
    menu.addSeparator();
    actions_.add(menu, {"menu_full_screen", tr("F&ull screen"), "F11", Needs::nothing,
                        [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); }});
}

void MainWindow::choose_file()
{
    const std::optional<std::string> file_name = op_.choose_file_to_open(
        {"Open a survey data file", "Survey data files|*.csv;*.dat;*.txt;*.xyz|All files (*.*)|*.*",
         to_utf8(stored("CWD")), ""});
    if (file_name) open_file(*file_name);
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
            QAction* const action = recent.addAction(QFileInfo(file).fileName());
            action->setToolTip(file);
            connect(action, &QAction::triggered, this, [this, file] { open_file(to_utf8(file)); });
        }
        if (files.isEmpty()) recent.addAction(tr("None yet"))->setEnabled(false);
    });
}

void MainWindow::note_opened_file(const std::string& file_name)
{
    const QString path = QFileInfo(to_qt(file_name)).absoluteFilePath();
    QStringList files = stored("RecentFiles").split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    files.removeAll(path);
    files.prepend(path);
    if (files.size() > kMostRecentFiles) files.resize(kMostRecentFiles);
    store("RecentFiles", files.join(QLatin1Char('\n')));
    store("CWD", QFileInfo(path).absolutePath());
}

} // namespace tarvo

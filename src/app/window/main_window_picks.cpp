// The window as the display of the pick work, and the controls that drive it.

#include "app/common/survey_export.h"
#include "app/common/texts.h"
#include "app/dialogs/new_pick_form.h"
#include "app/dialogs/pick_list_form.h"
#include "app/panels/colour_bar_panel.h"
#include "app/panels/hint_bar.h"
#include "app/panels/pick_panel.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "app/window/main_window.h"

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>

namespace tarvo {

void MainWindow::make_pick_panel()
{
    picks_ = new PickPanel;
    PickWorkflow& work = monitor_.pick_work;
    connect(picks_, &PickPanel::mark_pressed, this, [this] { mark_anomaly_->trigger(); });
    connect(picks_, &PickPanel::delete_pressed, this,
            [this] { monitor_.pick_work.Command_delete_selected_anomaly(indexed_track(survey())); });
    connect(picks_, &PickPanel::pick_chosen, this, [&work](std::int32_t pick) { work.choose_pick(pick); });
    connect(picks_, &PickPanel::shifted, this, &MainWindow::move_pick);
    TrackWidget& track = track_->track();
    const auto choose_pick = [&work](std::int32_t pick) { work.choose_pick(pick); };
    connect(&track, &TrackWidget::pick_clicked, this, choose_pick);
    connect(bars_, &ColourBarPanel::pick_clicked, this, choose_pick);
    connect(graphs_, &ProfileGraphs::pick_clicked, this, choose_pick);
    connect(&track, &TrackWidget::double_clicked, this,
            [this](std::int32_t record) { monitor_.pick_work.mnuAddAnomaly(indexed_track(survey()).track, record); });
    connect(&track, &TrackWidget::menu_wanted, this, [this](std::int32_t record, const QPoint& screen_position) {
        menu_record_ = record;
        add_anomaly_->setEnabled(record > 0);
        track_menu_->popup(screen_position);
    });
}

void MainWindow::make_pick_menu()
{
    QMenu& menu = *menuBar()->addMenu(tr("&Picks"));
    menu.setObjectName(QStringLiteral("menu_picks"));
    mark_anomaly_ = add_action(menu, "menu_mark_anomaly", tr("&Mark a pick"), QStringLiteral("M"), [this] {
        monitor_.pick_work.Command_mark_anomaly_location(indexed_track(survey()).track, monitor_.sample_to_mark());
    });
    const auto show_marking = [this] {
        const bool has_samples = survey().processing.store.RecordCount > 0;
        mark_anomaly_->setEnabled(has_samples);
        picks_->set_marking_enabled(has_samples);
    };
    connect(&view_, &SurveyView::values_changed, this, show_marking);
    show_marking();
    display_pick_list_ = add_action(menu, "menu_display_pick_list", tr("Pick &list..."), QStringLiteral("Ctrl+L"),
                                    [this] { show_pick_list(); });
    add_action(menu, "menu_read_pick_list", tr("&Read a pick list..."), {},
               [this] { monitor_.pick_work.menu_read_list(indexed_track(survey())); });
    menu.addSeparator();
    undo_pick_ = add_action(menu, "menu_undo_pick", tr("&Undo"), QStringLiteral("Ctrl+Z"),
                            [this] { monitor_.pick_work.undo(indexed_track(survey())); });
    delete_pick_ = add_action(menu, "menu_delete_pick", tr("&Delete the current pick"), QStringLiteral("Del"),
                              [this] { monitor_.pick_work.Command_delete_selected_anomaly(indexed_track(survey())); });
    move_actions_ = {
        add_move_action(menu, "menu_move_back", tr("Move &back"), QStringLiteral("Left"), -kSmallShiftStep),
        add_move_action(menu, "menu_move_on", tr("Move &on"), QStringLiteral("Right"), kSmallShiftStep),
        add_move_action(menu, "menu_move_far_back", tr("Move ten back"), QStringLiteral("Shift+Left"),
                        -kLargeShiftStep),
        add_move_action(menu, "menu_move_far_on", tr("Move ten on"), QStringLiteral("Shift+Right"), kLargeShiftStep)};
    // Where these keys have no use of their own.
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{&track_->track(), bars_, graphs_, &picks_->pick_choice()}) {
        widget->addAction(delete_pick_);
        widget->addActions({move_actions_.begin(), move_actions_.end()});
    }
    delete_pick_->setShortcutContext(Qt::WidgetShortcut);
    menu.addSeparator();
    add_action(menu, "menu_export_picks", tr("E&xport as CSV..."), {}, [this] { export_picks_csv(survey(), op_); });
    add_action(menu, "menu_export_picks_map", tr("Export as &GeoJSON..."), {},
               [this] { export_picks_geojson(survey(), op_); });
    menu.addSeparator();
    const auto add_switch = [&](const char* name, const QString& text, const QString& tip, bool PickSettings::*value) {
        QAction* const action = menu.addAction(text);
        action->setObjectName(QLatin1String(name));
        action->setToolTip(tip);
        action->setCheckable(true);
        action->setChecked(survey().pick_settings.*value);
        connect(action, &QAction::toggled, this, [this, value](bool on) {
            survey().pick_settings.*value = on;
            keep_settings();
        });
    };
    add_switch("ShowNewPickDialog", tr("Ask for &name and type"), tr("Else a pick is saved at once, numbered on"),
               &PickSettings::ShowNewPickDialog);
    add_switch("DeferPickCombo", tr("&Keep the current pick when marking"), tr("A new pick does not become current"),
               &PickSettings::DeferPickCombo);
    menu.setToolTipsVisible(true);
}

QAction* MainWindow::add_move_action(QMenu& menu, const char* name, const QString& text, const QString& shortcut,
                                     int samples)
{
    QAction* const action = add_action(menu, name, text, shortcut, [this, samples] { move_pick(samples); });
    action->setShortcutContext(Qt::WidgetShortcut);
    return action;
}

// Graphs and bars stay where they are, so that the pick is seen to move over them, until it would leave them.
void MainWindow::move_pick(int samples)
{
    const TrackTable track = indexed_track(survey()).track;
    monitor_.pick_work.HScroll_shift_anomaly(track, samples);
    if (!is_pick(survey().picks, survey().current_pick)) return;
    const std::int32_t record = survey().picks.pick_sample_index[static_cast<std::size_t>(survey().current_pick)];
    const DistanceRange shown =
        distance_range_about(track, view_.middle_record(), survey().display_settings.track_axis_length);
    const bool is_in_view = record > 0 && track.distance[record] >= shown.from && track.distance[record] <= shown.to;
    if (record > 0 && !is_in_view) view_.make_current(record, Recentre::yes);
}

void MainWindow::make_track_menu()
{
    track_menu_ = new QMenu(this);
    track_menu_->setObjectName(QStringLiteral("menu_track"));
    add_anomaly_ = add_action(*track_menu_, "mnuAddAnomaly", tr("Mark a pick here"), {}, [this] {
        monitor_.pick_work.mnuAddAnomaly(indexed_track(survey()).track, menu_record_);
    });
    track_menu_->addAction(undo_pick_);
    track_menu_->addAction(display_pick_list_);
}

void MainWindow::show_pick_list()
{
    if (pick_list_ == nullptr) {
        pick_list_ = new PickListForm(monitor_, op_, undo_pick_, this);
        pick_list_->setAttribute(Qt::WA_DeleteOnClose);
        connect(pick_list_, &QObject::destroyed, this, [this] { pick_list_ = nullptr; });
    }
    pick_list_->show();
    pick_list_->raise();
    pick_list_->activateWindow();
}

void MainWindow::show_pick_controls(const PickControls& controls)
{
    // A button that goes dead would hand the keyboard to the next text box, which takes M and Ctrl+Z for itself.
    if (!controls.actions_enabled && picks_->isAncestorOf(focusWidget())) track_->track().setFocus();
    picks_->show_controls(controls);
    const PickList& list = survey().picks;
    picks_->set_file_name(to_qt(list.pick_file_name));
    hints_->show_hint(QStringLiteral("unsaved_picks"),
                      list.is_unsaved ? tr("The last changes of the picks are on no disk yet") : QString(),
                      {tr("Write them"), [this] { monitor_.pick_work.menu_write_list(); }});
    undo_pick_->setText(to_qt(controls.undo_caption));
    undo_pick_->setEnabled(controls.undo_enabled);
    delete_pick_->setEnabled(controls.actions_enabled);
    display_pick_list_->setEnabled(has_pick_list(survey()) && !monitor_.driver.is_finishing());
    can_move_pick_ = controls.moving_enabled;
    for (QAction* const action : move_actions_) action->setEnabled(can_move_pick_ && !moving_locked_);
    if (pick_list_ != nullptr) pick_list_->show_current_pick();
}

void MainWindow::redraw_picks()
{
    view_.redraw_picks();
}

void MainWindow::show_sample(std::int32_t sample_index)
{
    view_.make_current(sample_index, Recentre::yes);
}

void MainWindow::open_new_pick_dialog()
{
    NewPickForm form(monitor_.pick_work, survey().picks, this);
    form.exec();
    activateWindow(); // the form went together with the message over it
}

void MainWindow::show_new_pick_marker(const PickLocation& location)
{
    view_.show_new_pick_marker({location.x, location.y}, location.sample_index);
}

void MainWindow::clear_new_pick_marker()
{
    view_.clear_new_pick_marker();
}

void MainWindow::display_pick_list()
{
    if (pick_list_ != nullptr) pick_list_->display_pick_list();
}

void MainWindow::display_pick_item(std::int32_t)
{
    if (pick_list_ != nullptr) pick_list_->display_pick_list(); // its row may have another place now
}

} // namespace tarvo

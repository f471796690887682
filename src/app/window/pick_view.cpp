#include "app/window/pick_view.h"

#include "app/common/texts.h"
#include "app/dialogs/new_pick_form.h"
#include "app/dialogs/pick_list_form.h"
#include "app/panels/colour_bar_panel.h"
#include "app/panels/hint_bar.h"
#include "app/panels/pick_panel.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "picks/pick_file.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMainWindow>
#include <QMenu>

namespace tarvo {

namespace {

constexpr const char* kMoves[] = {"menu_move_back", "menu_move_on", "menu_move_far_back", "menu_move_far_on"};

} // namespace

PickView::PickView(Session& session, SurveyView& view, Operator& op, const WindowPanels& panels, QMainWindow& window)
    : session_(session), view_(view), op_(op), panels_(panels), window_(window)
{
}

PickView::~PickView()
{
    delete list_; // before what it shows
}

void PickView::connect_panels(WindowActions& actions)
{
    actions_ = &actions;
    PickPanel& picks = *panels_.picks;
    const auto choose_pick = [this](std::int32_t pick) { session_.pick_work.choose_pick(pick); };
    connect(&picks, &PickPanel::delete_pressed, this, &PickView::delete_current);
    connect(&picks, &PickPanel::pick_chosen, this, choose_pick);
    connect(&picks, &PickPanel::shifted, this, &PickView::move);
    connect(&panels_.track->track(), &TrackWidget::pick_clicked, this, choose_pick);
    connect(panels_.bars, &ColourBarPanel::pick_clicked, this, choose_pick);
    connect(panels_.graphs, &ProfileGraphs::pick_clicked, this, choose_pick);
    connect_track();

    // Where these keys have no use of their own.
    QAction& remove = actions.action("menu_delete_pick");
    remove.setShortcutContext(Qt::WidgetShortcut);
    for (const char* const name : kMoves) actions.action(name).setShortcutContext(Qt::WidgetShortcut);
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{&panels_.track->track(), panels_.bars, panels_.graphs, &picks.pick_choice()}) {
        widget->addAction(&remove);
        for (const char* const name : kMoves) widget->addAction(&actions.action(name));
    }
    connect(&view_, &SurveyView::values_changed, this, &PickView::show_marking);
    show_marking();
}

void PickView::connect_track()
{
    auto* const menu = new QMenu(&window_);
    menu->setObjectName(QStringLiteral("menu_track"));
    QAction* const add = menu->addAction(tr("Mark a pick here"));
    add->setObjectName(QStringLiteral("mnuAddAnomaly"));
    menu->addAction(&actions_->action("menu_undo_pick"));
    menu->addAction(&actions_->action("menu_display_pick_list"));
    auto* const copies = menu->addMenu(tr("&Copy position"));
    copies->setObjectName(QStringLiteral("menu_copy_position"));

    const auto mark_at = [this](std::int32_t record) { session_.pick_work.mnuAddAnomaly(ground().track, record); };
    connect(add, &QAction::triggered, this, [add, mark_at] { mark_at(add->data().toInt()); });
    connect(&panels_.track->track(), &TrackWidget::double_clicked, this, mark_at);
    connect(&panels_.track->track(), &TrackWidget::menu_wanted, this,
            [this, menu, add, copies](const TrackWidget::Pointed& at, const QPoint& screen_position) {
                add->setData(at.record);
                add->setEnabled(at.record > 0);
                fill_position_menu(*copies, at);
                menu->popup(screen_position);
            });
}

// Each entry is what it copies; of the record at the pointer where there is one.
void PickView::fill_position_menu(QMenu& menu, const TrackWidget::Pointed& at)
{
    menu.clear();
    const TrackTable track = ground().track;
    const GridPlace place = at.record > 0 ? GridPlace{track.easting[at.record], track.northing[at.record]} : at.place;
    const PositionTexts texts = view_.position_texts(place);
    for (const std::string& text : {texts.grid, texts.decimal_degrees, texts.degrees_and_minutes}) {
        if (text.empty()) continue;
        menu.addAction(to_qt(text), [text] { QGuiApplication::clipboard()->setText(to_qt(text)); });
    }
    if (menu.isEmpty()) menu.addAction(tr("No position"))->setEnabled(false);
    if (!texts.grid.empty() && texts.decimal_degrees.empty()) {
        menu.addAction(tr("Degrees: the definitions name no Survey Grid"))->setEnabled(false);
    }
}

void PickView::mark()
{
    session_.pick_work.Command_mark_anomaly_location(ground().track, session_.sample_to_mark());
}

void PickView::delete_current()
{
    session_.pick_work.Command_delete_selected_anomaly(ground());
}

void PickView::undo()
{
    session_.pick_work.undo(ground());
}

// Graphs and bars stay where they are, so that the pick is seen to move over them, until it would leave them.
void PickView::move(int samples)
{
    const SurveyState& survey = session_.survey;
    const TrackTable track = ground().track;
    session_.pick_work.HScroll_shift_anomaly(track, samples);
    if (!is_pick(survey.picks, survey.current_pick)) return;
    const std::int32_t record = survey.picks.pick_sample_index[static_cast<std::size_t>(survey.current_pick)];
    const DistanceRange shown =
        distance_range_about(track, view_.middle_record(), survey.display_settings.track_axis_length);
    const bool is_in_view = record > 0 && track.distance[record] >= shown.from && track.distance[record] <= shown.to;
    if (record > 0 && !is_in_view) view_.make_current(record, Recentre::yes);
}

void PickView::show_list()
{
    if (list_ == nullptr) {
        list_ = new PickListForm(session_, op_, &actions_->action("menu_undo_pick"), &window_);
        list_->set_fit_summary(fit_summary_);
        list_->setAttribute(Qt::WA_DeleteOnClose);
        connect(list_, &QObject::destroyed, this, [this] { list_ = nullptr; });
        connect(list_, &PickListForm::type_names_changed, &view_, &SurveyView::settings_changed);
    }
    list_->show();
    list_->raise();
    list_->activateWindow();
}

void PickView::show_marking()
{
    const bool has_samples = session_.survey.processing.store.RecordCount > 0;
    actions_->action("menu_mark_anomaly").setEnabled(has_samples);
}

void PickView::show_moving()
{
    for (const char* const name : kMoves) actions_->action(name).setEnabled(can_move_ && !moving_locked_);
}

void PickView::show_run_controls(const RunControls& controls)
{
    actions_->action("menu_display_pick_list").setEnabled(controls.pick_list_enabled);
    moving_locked_ = !controls.moving_anomalies_enabled;
    show_moving();
}

void PickView::show_pick_controls(const PickControls& controls)
{
    // A button that goes dead would hand the keyboard to the next text box, which takes M and Ctrl+Z for itself.
    if (!controls.actions_enabled && panels_.picks->isAncestorOf(window_.focusWidget())) {
        panels_.track->track().setFocus();
    }
    panels_.picks->show_controls(controls);
    const PickList& picks = session_.survey.picks;
    panels_.picks->set_file_name(to_qt(picks.pick_file_name));
    panels_.hints->show_hint(QStringLiteral("unsaved_picks"),
                             has_unsaved_changes(picks) ? tr("The last changes of the picks are on no disk yet")
                                                        : QString(),
                             {tr("Write them"), [this] { session_.pick_work.menu_write_list(); }});
    show_leftover_file();
    QAction& undo = actions_->action("menu_undo_pick");
    undo.setText(to_qt(controls.undo_caption));
    undo.setEnabled(controls.undo_enabled);
    actions_->action("menu_delete_pick").setEnabled(controls.actions_enabled);
    actions_->action("menu_display_pick_list")
        .setEnabled(has_pick_list(session_.survey) && !session_.driver.is_finishing());
    can_move_ = controls.moving_enabled;
    show_moving();
    if (list_ != nullptr) list_->show_current_pick();
    emit picks_shown();
}

void PickView::show_fits()
{
    if (list_ != nullptr) list_->show_current_pick();
}

// An empty list writes no file, and so the one on the disk keeps the picks that were deleted.
void PickView::show_leftover_file()
{
    const std::string path = leftover_pick_file(session_.survey.picks);
    panels_.hints->show_hint(QStringLiteral("leftover_picks"),
                             path.empty() ? QString()
                                          : tr("The last picks are deleted here, but %1 still holds them: they would "
                                               "come back with the next run")
                                                .arg(QFileInfo(to_qt(path)).fileName()),
                             {tr("Delete the file"), [this] {
                                  session_.pick_work.delete_leftover_file();
                                  show_leftover_file();
                              }});
}

void PickView::redraw_picks()
{
    view_.redraw_picks();
    emit picks_shown();
}

void PickView::show_sample(std::int32_t sample_index)
{
    view_.make_current(sample_index, Recentre::yes);
}

void PickView::open_new_pick_dialog()
{
    NewPickForm form(session_.pick_work, session_.survey, op_, &window_);
    form.exec();
    window_.activateWindow(); // the form went together with the message over it
}

void PickView::show_new_pick_marker(const PickLocation& location)
{
    view_.show_new_pick_marker({location.x, location.y}, location.sample_index);
}

void PickView::clear_new_pick_marker()
{
    view_.clear_new_pick_marker();
}

void PickView::display_pick_list()
{
    if (list_ != nullptr) list_->display_pick_list();
}

void PickView::display_pick_item(std::int32_t)
{
    if (list_ != nullptr) list_->display_pick_list(); // its row may have another place now
}

} // namespace tarvo

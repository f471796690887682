#include "app/window/main_window.h"

#include "app/common/texts.h"
#include "app/dialogs/definitions_form.h"
#include "app/dialogs/processing_form.h"
#include "app/panels/header_box.h"
#include "app/panels/hint_bar.h"
#include "app/panels/live_panel.h"
#include "app/panels/pick_panel.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "intake/column_report.h"
#include "session/settings_table.h"
#include "survey/displayed_quantity.h"
#include "survey/layer_files.h"
#include "survey/survey_readings.h"
#include "tools/process_options.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QSignalBlocker>
#include <QUrl>

#include <algorithm>

namespace tarvo {

MainWindow::MainWindow(SettingsStore& settings, Operator* op, const std::vector<std::string>& set)
    : settings_(settings), boxes_(this),
      op_(op != nullptr ? *op : boxes_, log_, [] { return QDateTime::currentSecsSinceEpoch(); }),
      run_view_(session_, view_, panels_), pick_view_(session_, view_, op_, panels_, *this),
      session_(op_, run_view_, pick_view_, *this), view_(session_.survey, op_), actions_(*this), docks_(*this),
      icons_(*this), survey_tools_(*this, session_, view_, op_), layers_(session_, view_, op_, *this), guide_(op_),
      targets_(*this, session_, view_, op_, panels_)
{
    setObjectName(QStringLiteral("Form_Tarvo"));
    setWindowTitle(QStringLiteral("Tarvo"));
    setAcceptDrops(true);
    survey().projections = &projections_;
    boxes_.before_box = [this] { panels_.picks->stop_moving(); };
    boxes_.take_message = [this](const std::string& text) { return take_message_in_live_run(text); };
    boxes_.take_note = [this](const std::string& text) { panels_.hints->show_note(to_qt(text)); };
    boxes_.take_warnings = [this](const Warnings& warnings) { take_warnings(warnings); };
    op_.is_told = [this](const std::string& text) { return is_in_live_run() && panels_.live->op().has_told(text); };
    settings_.on_fault = [this](const std::string& fault) { op_.show_note(fault); };
    read_settings(survey(), settings_);
    for (const std::string& text : set) take_setting(text, survey());

    qApp->installEventFilter(&manners_);
    make_panels();
    make_docks();
    make_menus();
    make_toolbar();
    make_strip();
    layers_.make(actions_.menu("menu_survey"), *panels_.hints);
    connect_panels();
    read_layout();

    settings_timer_.setSingleShot(true);
    settings_timer_.setInterval(500);
    connect(&settings_timer_, &QTimer::timeout, this, &MainWindow::keep_settings);
    connect(&view_, &SurveyView::ranges_changed, &settings_timer_, qOverload<>(&QTimer::start));
    panels_.track->track().setFocus(); // the keys for picks and runs, not a text box's
    run_view_.show_controls({});
    show_survey();
}

MainWindow::~MainWindow()
{
    log_.changed = {}; // the panels go after the log
    settings_.on_fault = {};
    // A text box that loses the keyboard while the window is taken apart would act on what is gone.
    if (QWidget* const box = focusWidget()) {
        const QSignalBlocker quiet(box);
        box->clearFocus();
    }
}

void MainWindow::press_start(StartButton index)
{
    session_.press_start(index, panels_.header->header_line_text());
}

void MainWindow::show_survey()
{
    panels_.header->show_survey(survey());
    const QString file_name = to_qt(survey().data_file_name);
    setWindowTitle(file_name.isEmpty() ? QStringLiteral("Tarvo")
                                       : QFileInfo(file_name).fileName() + QStringLiteral(" \u2013 Tarvo"));
    view_.refresh();
}

void MainWindow::show_missing_columns(const std::string& columns)
{
    panels_.hints->show_hint(
        QStringLiteral("columns"),
        columns.empty() ? QString()
                        : tr("The definitions name columns that the file does not have: %1").arg(to_qt(columns)));
}

void MainWindow::clear_hints()
{
    panels_.hints->clear_hints();
}

void MainWindow::show_layers()
{
    layers_.layers().show_list_anew();
}

void MainWindow::edit_definitions()
{
    DefinitionsForm form(survey(), op_, this);
    form.exec();
    if (form.asks_for_load()) {
        session_.take_edited_definitions(Session::AfterEditing::load);
    } else if (form.has_changed_survey()) {
        session_.take_edited_definitions();
    }
}

void MainWindow::edit_processing_parameters()
{
    ProcessingForm form(survey(), op_, this);
    form.exec();
    session_.take_processing_changes(form.changes());
}

void MainWindow::cut_wait_short()
{
    run_view_.cut_wait_short();
}

void MainWindow::end_listening()
{
    panels_.live->press();
}

// Not from within the event that asked: a close in a close is passed over.
void MainWindow::close_later()
{
    QTimer::singleShot(0, this, &QWidget::close);
}

void MainWindow::keep_settings()
{
    write_settings(survey(), settings_);
}

// No box opens by itself in a live run, and none while a sender waits for a reply: it would hold up what comes in.
bool MainWindow::take_message_in_live_run(const std::string& text)
{
    if (!is_in_live_run()) return false;
    panels_.live->op().tell(text);
    return true;
}

bool MainWindow::is_in_live_run()
{
    return session_.driver.is_pipe_open() || panels_.live->requests().is_handling();
}

// Those about columns are shown together, as a run tells them.
void MainWindow::take_warnings(const Warnings& warnings)
{
    for (const Warning& warning : warnings) {
        switch (warning.about) {
        case WarningAbout::data: panels_.hints->show_hint(QStringLiteral("data"), to_qt(warning.text)); break;
        case WarningAbout::picks: panels_.hints->show_hint(QStringLiteral("picks"), to_qt(warning.text)); break;
        case WarningAbout::columns:
            column_warnings_.push_back(warning);
            panels_.hints->show_hint(QStringLiteral("columns"), to_qt(column_warnings_text(column_warnings_)));
        }
    }
}

void MainWindow::show_finished_run_hints()
{
    const auto correction = [this](const QString& caption, bool ProcessingParameters::*is_on) {
        const bool can_be_cured = !(survey().parameters.*is_on) && !survey().data_file_name.empty();
        const auto turn_on = [this, is_on] {
            session_.reload_after([this, is_on] { survey().parameters.*is_on = true; });
        };
        return can_be_cured ? HintBar::Action{caption, turn_on} : HintBar::Action{};
    };
    panels_.hints->show_hint(QStringLiteral("averages"), to_qt(averaging_hint(survey().processing)),
                             correction(tr("Average every line"), &ProcessingParameters::CarryClosingSample));
    panels_.hints->show_hint(
        QStringLiteral("few_samples"), to_qt(few_samples_hint(survey().processing)),
        {tr("Store every line"), [this] { session_.reload_after([this] { store_every_line(survey()); }); }});
    panels_.hints->show_hint(QStringLiteral("spacing"), to_qt(spacing_hint(survey())),
                             correction(tr("Count over positions"), &ProcessingParameters::SpacingOverFixes));
    panels_.hints->show_hint(QStringLiteral("far_picks"), to_qt(far_picks_hint(survey())));
    panels_.hints->show_hint(QStringLiteral("world"), to_qt(out_of_world_hint(survey().processing.store)));
    show_range_hint();
}

void MainWindow::show_range_hint()
{
    if (view_.is_running()) return;
    const Quantity& shown = displayed_quantity(survey().display_settings);
    const std::string missing = missing_quantity_text(survey(), shown);
    panels_.hints->show_hint(QStringLiteral("range"), to_qt(missing.empty() ? range_hint(survey()) : missing),
                             missing.empty() ? HintBar::Action{tr("Fit"), [this] { view_.fit_range(); }}
                                             : HintBar::Action{});
}

// What leads on from an empty track.
void MainWindow::take_track_step(TrackStep step)
{
    switch (step) {
    case TrackStep::open_file: choose_file(); break;
    case TrackStep::define_columns: session_.when_idle([this] { edit_definitions(); }); break;
    case TrackStep::load:
        press_start(StartButton::load_or_pause);
        if (!range_hint(survey()).empty()) view_.fit_range();
        break;
    case TrackStep::list_rejected: show_rejected_lines(); break;
    case TrackStep::none: break;
    }
}

void MainWindow::show_run_controls(const RunControls& controls)
{
    actions_.show_state({controls.file_controls_enabled, survey().processing.store.RecordCount > 0,
                         session_.driver.state().file_run_active() || session_.driver.is_finishing()});
    pick_view_.show_run_controls(controls);
    layers_.show_state();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    panels_.track->track().setFocus(); // what was being typed is taken before it is kept
    if (session_.close() != Closing::now) return;
    if (!panels_.live->is_settled_or_wait()) return;
    if (settings_timer_.isActive()) keep_settings();
    keep_layout();
    event->accept();
}

void MainWindow::listen()
{
    if (!panels_.live->requests().is_listening()) panels_.live->press();
}

void MainWindow::come_back()
{
    panels_.live->come_back();
}

void MainWindow::leave(Operator& told)
{
    if (settings_timer_.isActive()) keep_settings();
    panels_.live->requests().leave(told);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    const bool are_files = std::all_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
    if (!urls.isEmpty() && are_files) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    QStringList layers;
    std::vector<std::string> surveys;
    for (const QUrl& url : event->mimeData()->urls()) {
        const QString file = url.toLocalFile();
        if (is_layer_file(to_utf8(file))) {
            layers.append(file);
        } else {
            surveys.push_back(to_utf8(file));
        }
    }
    // The program that the files were dragged from waits for this handler: what they give rise to comes after it.
    QTimer::singleShot(0, this, [this, layers, surveys] {
        if (!surveys.empty()) open_files(surveys);
        layers_.open_files(layers);
    });
}

} // namespace tarvo

#include "app/window/main_window.h"

#include "app/common/texts.h"
#include "app/dialogs/header_box.h"
#include "app/dialogs/pick_list_form.h"
#include "app/panels/dial_panel.h"
#include "app/panels/hint_bar.h"
#include "app/panels/live_panel.h"
#include "app/panels/pick_panel.h"
#include "app/panels/run_bar.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "intake/column_report.h"
#include "intake/open_survey.h"
#include "session/settings_table.h"
#include "survey/survey_readings.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QSignalBlocker>
#include <QUrl>

namespace tarvo {

MainWindow::MainWindow(SettingsStore& settings, Operator* op)
    : settings_(settings), boxes_(this), op_(op != nullptr ? *op : boxes_), monitor_(op_, *this, *this),
      view_(monitor_.survey, op_)
{
    setObjectName(QStringLiteral("Form_Tarvo"));
    setWindowTitle(QStringLiteral("Tarvo"));
    setAcceptDrops(true);
    boxes_.before_box = [this] { picks_->stop_moving(); };
    boxes_.take_message = [this](const std::string& text) {
        if (!live_->requests().is_handling()) return false;
        live_->op().show_message(text); // which waits for nobody, as a sender waits for the reply
        return true;
    };
    boxes_.take_warning = [this](WarningAbout about, const std::string& text) { take_warning(about, text); };
    read_settings(survey(), settings_);

    make_panels();
    make_file_menu();
    make_survey_menu();
    make_run_menu();
    make_pick_menu();
    make_track_menu();
    make_view_menu();
    make_help_menu();
    read_layout();

    settings_timer_.setSingleShot(true);
    settings_timer_.setInterval(500);
    connect(&settings_timer_, &QTimer::timeout, this, &MainWindow::keep_settings);
    connect(&view_, &SurveyView::ranges_changed, &settings_timer_, qOverload<>(&QTimer::start));
    connect(&view_, &SurveyView::current_record_changed, this, &MainWindow::show_point_readings);
    connect(&frame_timer_, &QTimer::timeout, this, &MainWindow::refresh_frame);
    track_->track().setFocus(); // the keys for picks and runs, not a text box's
    show_controls({});
    show_survey();
}

MainWindow::~MainWindow()
{
    delete pick_list_; // before what it shows
    // A text box that loses the keyboard while the window is taken apart would act on what is gone.
    if (QWidget* const box = focusWidget()) {
        const QSignalBlocker quiet(box);
        box->clearFocus();
    }
}

void MainWindow::open_file(const std::string& file_name, const std::optional<std::string>& header_line)
{
    if (monitor_.driver.is_pipe_open()) {
        op_.show_message("Close the UDP pipe before you open a file");
        return;
    }
    when_idle([this, file_name, header_line] { read_file(file_name, header_line); });
}

void MainWindow::read_file(const std::string& file_name, const std::optional<std::string>& header_line)
{
    if (!monitor_.pick_work.may_leave_list()) return;
    hints_->clear_hints();
    const SurveyOpening opening = open_survey(survey(), monitor_.pick_work, file_name, header_line, op_);
    if (survey().data_file_name == file_name) note_recent_file(to_qt(file_name));
    clear_monitor_form();
    show_counters({});
    show_survey();
    if (opening == SurveyOpening::opened) show_column_hint();
    if (opening == SurveyOpening::without_definitions) edit_definitions();
}

void MainWindow::reread_header()
{
    survey().header_line_text = header_->header_line_text();
    if (survey().data_file_name.empty()) return;
    const int status = read_survey_header(survey(), op_);
    header_->show_survey(survey());
    if (status == 0) show_column_hint();
}

void MainWindow::show_column_hint()
{
    const std::string missing =
        missing_columns_text(defined_columns(survey().survey_definitions, survey().header_columns));
    hints_->show_hint(QStringLiteral("columns"),
                      missing.empty()
                          ? QString()
                          : tr("The definitions name columns that the file does not have: %1").arg(to_qt(missing)));
}

// Those about columns come one by one and are shown together.
void MainWindow::take_warning(WarningAbout about, const std::string& text)
{
    if (about == WarningAbout::data) {
        hints_->show_hint(QStringLiteral("data"), to_qt(text));
        return;
    }
    if (about == WarningAbout::picks) {
        hints_->show_hint(QStringLiteral("picks"), to_qt(text));
        return;
    }
    column_warnings_.push_back(text);
    hints_->show_hint(QStringLiteral("columns"), to_qt(column_warnings_text(column_warnings_)));
}

void MainWindow::press_start(StartButton index)
{
    if (is_idle()) {
        hints_->clear_hints();
        survey().header_line_text = header_->header_line_text();
    }
    if (wait_loop_ != nullptr) wait_loop_->quit();
    monitor_.driver.Command_start_logging(index);
    perform_waiting_actions();
}

void MainWindow::average_every_line()
{
    if (monitor_.driver.is_pipe_open()) return;
    survey().parameters.CarryClosingSample = true;
    keep_settings();
    when_idle([this] { press_start(StartButton::load_or_pause); });
}

bool MainWindow::is_idle() const
{
    return !monitor_.driver.state().any_run_active() && !monitor_.driver.is_at_work();
}

void MainWindow::when_idle(std::function<void()> action)
{
    waiting_actions_.push_back(std::move(action));
    if (!is_idle()) {
        if (wait_loop_ != nullptr) wait_loop_->quit();
        monitor_.driver.request_stop();
    }
    perform_waiting_actions();
}

void MainWindow::perform_waiting_actions()
{
    while (is_idle() && !waiting_actions_.empty()) {
        const std::function<void()> action = std::move(waiting_actions_.front());
        waiting_actions_.erase(waiting_actions_.begin());
        action();
    }
}

void MainWindow::show_survey()
{
    header_->show_survey(survey());
    const QString file_name = to_qt(survey().data_file_name);
    setWindowTitle(file_name.isEmpty() ? QStringLiteral("Tarvo")
                                       : QFileInfo(file_name).fileName() + QStringLiteral(" \u2013 Tarvo"));
    view_.refresh();
}

void MainWindow::show_point_readings()
{
    if (view_.is_running()) return;
    const std::int32_t record = survey().track_image.current_record;
    dials_->show_readings(dial_readings_of_record(survey(), record));
    pointed_->setText(to_qt(record_text(survey(), record)));
}

void MainWindow::keep_settings()
{
    write_settings(survey(), settings_);
}

// A run is ended first; the window closes when it is over.
void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    track_->track().setFocus(); // what was being typed is taken before it is kept
    // Not from within this event: a close in a close is passed over.
    const auto close_later = [this] { QTimer::singleShot(0, this, &QWidget::close); };
    const bool is_live = live_->requests().is_listening();
    if (!is_live && !is_idle()) {
        when_idle(close_later);
        return;
    }
    if (!monitor_.pick_work.may_leave_list()) return;
    if (is_live) live_->press();
    if (!is_idle()) {
        when_idle(close_later);
        return;
    }
    if (!live_->is_settled_or_wait()) return;
    if (settings_timer_.isActive()) keep_settings();
    keep_layout();
    event->accept();
}

void MainWindow::listen()
{
    if (!live_->requests().is_listening()) live_->press();
}

void MainWindow::leave(Operator& told)
{
    if (settings_timer_.isActive()) keep_settings();
    live_->requests().leave(told);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.constFirst().isLocalFile()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty()) return;
    event->acceptProposedAction();
    // The program that the file was dragged from waits for this handler: what the file gives rise to comes after it.
    QTimer::singleShot(0, this, [this, file = urls.constFirst().toLocalFile()] { open_file(to_utf8(file)); });
}

} // namespace tarvo

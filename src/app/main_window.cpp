#include "app/main_window.h"

#include "app/texts.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QThread>

namespace tarvo {

MainWindow::MainWindow(SettingsStore& settings, Operator* op)
    : settings_(settings), boxes_(this), op_(op != nullptr ? *op : boxes_), monitor_(op_, *this)
{
    setObjectName(QStringLiteral("Form_Tarvo"));
    setWindowTitle(QStringLiteral("Tarvo"));
    read_processing_parameters(survey().parameters, settings_);
    survey().display_settings = read_display_settings(settings_);
}

MainWindow::~MainWindow() = default;

void MainWindow::open_file(const std::string& file_name)
{
    when_idle([this, file_name] { survey().data_file_name = file_name; });
}

void MainWindow::press_start(StartButton index)
{
    monitor_.driver.Command_start_logging(index);
    perform_waiting_actions();
}

bool MainWindow::is_idle() const
{
    return !monitor_.driver.state().any_run_active() && !monitor_.driver.is_at_work();
}

void MainWindow::when_idle(std::function<void()> action)
{
    waiting_actions_.push_back(std::move(action));
    if (!is_idle()) monitor_.driver.request_stop();
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

void MainWindow::show_survey() {}

void MainWindow::show_controls(const RunControls&) {}
void MainWindow::show_counters(const RunCounters&) {}
void MainWindow::reset_speed_control() {}
void MainWindow::clear_monitor_form() {}
void MainWindow::display_replay_data(std::int32_t, std::int32_t) {}
void MainWindow::show_dials(const CurrentSample&) {}

void MainWindow::process_events(const RunCounters&)
{
    QCoreApplication::processEvents();
}

void MainWindow::wait(int milliseconds)
{
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void MainWindow::show_finished_run() {}

// A run is ended first; the window closes when it is over.
void MainWindow::closeEvent(QCloseEvent* event)
{
    if (is_idle()) {
        event->accept();
        return;
    }
    event->ignore();
    when_idle([this] { close(); });
}

} // namespace tarvo

// The window as the display of a run. Every call here comes from within the logging driver.

#include "app/common/texts.h"
#include "app/dialogs/header_box.h"
#include "app/panels/colour_bar_panel.h"
#include "app/panels/dial_panel.h"
#include "app/panels/hint_bar.h"
#include "app/panels/live_panel.h"
#include "app/panels/pick_panel.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/run_bar.h"
#include "app/panels/track_panel.h"
#include "app/window/main_window.h"
#include "processing/record_memory.h"
#include "survey/survey_readings.h"

#include <QAction>
#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kLinesPerLook = 16;  // a look at the clock costs as much as some fields
constexpr int kPumpInterval = 8;   // milliseconds that an event waits at most while lines are read
constexpr int kFrameInterval = 40; // milliseconds from one picture of a replay to the next
constexpr int kLoadFrameInterval = 100;
constexpr int kLongestFrameInterval = 400;
constexpr int kFrameShare = 4; // a frame may take one part in so many of the time

} // namespace

void MainWindow::show_controls(const RunControls& controls)
{
    const LoggingDriver::State& state = monitor_.driver.state();
    run_bar_->show_controls(controls);
    header_->set_locked(!controls.file_controls_enabled);
    const bool has_samples = survey().processing.store.RecordCount > 0;
    for (QAction* const action : idle_actions_) action->setEnabled(controls.file_controls_enabled);
    for (QAction* const action : store_actions_) action->setEnabled(controls.file_controls_enabled && has_samples);
    for (QAction* const action : run_actions_) action->setEnabled(state.file_run_active());

    bars_->set_locked(!controls.profile_controls_enabled);
    graphs_->set_locked(!controls.profile_controls_enabled);
    display_pick_list_->setEnabled(controls.pick_list_enabled);
    moving_locked_ = !controls.moving_anomalies_enabled;
    picks_->set_moving_locked(moving_locked_);
    for (QAction* const action : move_actions_) action->setEnabled(can_move_pick_ && !moving_locked_);
    view_.set_running(state.any_run_active());
    if (!state.any_run_active()) {
        frame_timer_.stop();
        if (!waiting_actions_.empty()) QTimer::singleShot(0, this, &MainWindow::perform_waiting_actions);
        return;
    }
    is_load_ = state.load_running;
    is_file_run_ = state.file_run_active();
    if (frame_timer_.isActive()) return;
    frame_timer_.start(is_load_ ? kLoadFrameInterval : kFrameInterval);
    pumped_.invalidate(); // the first lines let the buttons' new captions show
}

void MainWindow::show_counters(const RunCounters& counters)
{
    run_bar_->show_counters(counters);
}

void MainWindow::reset_speed_control()
{
    run_bar_->reset_speed();
}

void MainWindow::clear_monitor_form()
{
    has_new_samples_ = false;
    has_new_readings_ = false;
    column_warnings_.clear();
    if (monitor_.driver.is_pipe_open()) {
        hints_->clear_hints(); // they are about a file, or an earlier live run
        live_->op().forget_messages();
    }
    show_survey();
    show_point_readings();
    release_spare_memory(); // of the survey before, which may have had many sensors
}

void MainWindow::display_replay_data(std::int32_t, std::int32_t)
{
    has_new_samples_ = true; // for the next frame
}

void MainWindow::show_dials(const CurrentSample& sample)
{
    readings_ = sample;
    has_new_readings_ = true;
}

void MainWindow::process_events(const RunCounters&)
{
    if (!is_file_run_) return; // live lines come from the event loop, which needs no help
    if (++lines_since_look_ < kLinesPerLook && monitor_.driver.state().load_running) return;
    lines_since_look_ = 0;
    if (!pumped_.isValid() || pumped_.elapsed() >= kPumpInterval) pump_events();
}

void MainWindow::pump_events()
{
    QElapsedTimer work;
    work.start();
    frame_shown_ = false;
    QCoreApplication::processEvents();
    if (frame_shown_ && !is_load_) {
        const int pause = kFrameShare * static_cast<int>(work.elapsed());
        frame_timer_.setInterval(std::clamp(pause, kFrameInterval, kLongestFrameInterval));
    }
    if (!waiting_actions_.empty()) monitor_.driver.request_stop();
    pumped_.start();
}

void MainWindow::wait(int milliseconds)
{
    QEventLoop loop;
    wait_loop_ = &loop; // a press of a button cuts it short
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    wait_loop_ = nullptr;
}

void MainWindow::refresh_frame()
{
    if (!monitor_.driver.state().any_run_active()) return;
    frame_shown_ = true;
    run_bar_->show_counters(monitor_.driver.counters());
    if (has_new_samples_) {
        has_new_samples_ = false;
        view_.show_newest();
    }
    if (has_new_readings_) {
        has_new_readings_ = false;
        dials_->show_readings(dial_readings_of_sample(survey(), readings_));
    }
}

void MainWindow::show_finished_run()
{
    const std::int32_t records = survey().processing.store.RecordCount;
    if (records > 0) view_.make_current(is_load_ ? (records + 1) / 2 : records, Recentre::no);
    header_->show_survey(survey());
    run_bar_->show_totals(survey().processing.lines_read, records);
    view_.announce(); // the core has drawn the track
    hints_->show_hint(QStringLiteral("world"), to_qt(out_of_world_hint(survey().processing.store)));
    const bool can_be_cured = !survey().parameters.CarryClosingSample && !survey().data_file_name.empty();
    hints_->show_hint(QStringLiteral("averages"), to_qt(averaging_hint(survey().processing)),
                      can_be_cured ? HintBar::Action{tr("Average every line"), [this] { average_every_line(); }}
                                   : HintBar::Action{});
}

} // namespace tarvo

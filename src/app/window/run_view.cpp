#include "app/window/run_view.h"

#include "app/common/texts.h"
#include "app/panels/colour_bar_panel.h"
#include "app/panels/dial_panel.h"
#include "app/panels/header_box.h"
#include "app/panels/pick_panel.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/run_bar.h"
#include "app/panels/run_strip.h"
#include "survey/survey_readings.h"

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

RunView::RunView(Session& session, SurveyView& view, const WindowPanels& panels)
    : session_(session), view_(view), panels_(panels)
{
    connect(&frame_timer_, &QTimer::timeout, this, &RunView::refresh_frame);
}

void RunView::cut_wait_short()
{
    if (wait_loop_ != nullptr) wait_loop_->quit();
}

// In a paused replay it is the clicked point, as without a run.
void RunView::show_point_readings()
{
    const std::int32_t record = session_.survey.track_image.current_record;
    if (view_.is_running() && (!session_.driver.state().run_paused || record == 0)) return;
    panels_.dials->show_readings(dial_readings_of_record(session_.survey, record));
    panels_.run_strip->show_line(line_number_of_record(session_.survey.processing, record));
    emit point_text_changed(view_.record_readout(record));
}

void RunView::show_controls(const RunControls& controls)
{
    const RunFlags state = session_.driver.state();
    panels_.run_bar->show_controls(controls, state);
    panels_.header->set_locked(!controls.file_controls_enabled);
    panels_.header->set_live(session_.driver.is_pipe_open());
    panels_.run_strip->set_live(session_.driver.is_pipe_open());
    panels_.bars->set_locked(!controls.profile_controls_enabled);
    panels_.graphs->set_locked(!controls.profile_controls_enabled);
    panels_.picks->set_moving_locked(!controls.moving_anomalies_enabled);
    view_.set_running(state.any_run_active(), state.run_paused);
    emit controls_changed(controls);
    if (state.run_paused) {
        refresh_frame(); // what the pause stands at
        show_point_readings();
    }
    if (session_.driver.is_finishing()) return; // the timer shows how far it has come
    if (!state.any_run_active()) {
        frame_timer_.stop();
        if (session_.has_waiting_actions()) QTimer::singleShot(0, this, [this] { session_.perform_waiting_actions(); });
        return;
    }
    is_load_ = state.load_running;
    is_file_run_ = state.file_run_active();
    if (frame_timer_.isActive()) return;
    frame_timer_.start(is_load_ ? kLoadFrameInterval : kFrameInterval);
    pumped_.invalidate(); // the first lines let the buttons' new captions show
}

void RunView::show_counters(const RunCounters& counters)
{
    panels_.run_strip->show_counters(counters);
}

void RunView::reset_speed_control()
{
    panels_.run_bar->reset_speed();
}

void RunView::clear_monitor_form()
{
    has_new_samples_ = false;
    has_new_readings_ = false;
    emit cleared();
    show_point_readings();
}

void RunView::display_replay_data(std::int32_t, std::int32_t)
{
    has_new_samples_ = true; // for the next frame
}

void RunView::show_dials(const CurrentSample& sample)
{
    readings_ = sample;
    has_new_readings_ = true;
}

void RunView::process_events(const RunCounters&)
{
    if (!is_file_run_) return; // live lines come from the event loop, which needs no help
    if (++lines_since_look_ < kLinesPerLook && session_.driver.state().load_running) return;
    lines_since_look_ = 0;
    if (!pumped_.isValid() || pumped_.elapsed() >= kPumpInterval) pump_events();
}

void RunView::pump_events()
{
    QElapsedTimer work;
    work.start();
    frame_shown_ = false;
    QCoreApplication::processEvents();
    if (frame_shown_ && !is_load_) {
        const int pause = kFrameShare * static_cast<int>(work.elapsed());
        frame_timer_.setInterval(std::clamp(pause, kFrameInterval, kLongestFrameInterval));
    }
    session_.end_run_for_waiting_actions();
    pumped_.start();
}

void RunView::wait(int milliseconds)
{
    QEventLoop loop;
    wait_loop_ = &loop; // a press of a button cuts it short
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    wait_loop_ = nullptr;
}

void RunView::refresh_frame()
{
    const bool is_finishing = session_.driver.is_finishing();
    if (!is_finishing && !session_.driver.state().any_run_active()) return;
    frame_shown_ = true;
    panels_.run_strip->show_counters(session_.driver.counters());
    if (is_finishing) return;
    if (has_new_samples_) {
        has_new_samples_ = false;
        view_.show_newest();
        if (!is_load_) emit point_text_changed(view_.record_readout(session_.survey.processing.store.RecordCount));
    }
    if (has_new_readings_) {
        has_new_readings_ = false;
        panels_.dials->show_readings(dial_readings_of_sample(session_.survey, readings_));
    }
}

void RunView::show_finished_run()
{
    const SurveyState& survey = session_.survey;
    const std::int32_t records = survey.processing.store.RecordCount;
    panels_.run_strip->show_totals(session_.driver.counters());
    if (records > 0) view_.make_current(is_load_ ? (records + 1) / 2 : records, Recentre::no);
    panels_.header->show_survey(survey);
    view_.announce(); // the core has drawn the track
    emit finished();
}

} // namespace tarvo

#pragma once

#include "app/panels/survey_view.h"
#include "app/window/window_panels.h"
#include "ports/run_display.h"
#include "session/session.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QEventLoop;

namespace tarvo {

// Shows a run in the window's panels. Every call of the run display comes from within the logging driver.
class RunView : public QObject, public RunDisplay {
    Q_OBJECT

public:
    // Everything must outlive the object; the panels are there when the first call comes.
    RunView(Session& session, SurveyView& view, const WindowPanels& panels);

    void cut_wait_short();      // of a replay's delay
    void show_point_readings(); // of the current point, while no run goes on

    void show_controls(const RunControls& controls) override;
    void show_counters(const RunCounters& counters) override;
    void reset_speed_control() override;
    void clear_monitor_form() override;
    void display_replay_data(std::int32_t record, std::int32_t completed) override;
    void show_dials(const CurrentSample& sample) override;
    void process_events(const RunCounters& counters) override;
    void wait(int milliseconds) override;
    void show_finished_run() override;

signals:
    void controls_changed(const tarvo::RunControls& controls);
    void cleared();                               // the displays are to be emptied
    void point_text_changed(const QString& text); // of the current point
    void finished();                              // a run has ended and is shown

private:
    void pump_events();
    void refresh_frame();

    Session& session_;
    SurveyView& view_;
    const WindowPanels& panels_;
    QTimer frame_timer_; // shows what a run has brought
    QElapsedTimer pumped_;
    QEventLoop* wait_loop_ = nullptr; // of a replay's delay
    int lines_since_look_ = 0;
    bool frame_shown_ = false; // since the events were last let through
    bool is_load_ = false;     // the run, or the last one
    bool is_file_run_ = false; // likewise
    bool has_new_samples_ = false;
    bool has_new_readings_ = false;
    CurrentSample readings_;
};

} // namespace tarvo

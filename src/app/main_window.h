#pragma once

#include "app/qt_operator.h"
#include "intake/run_display.h"
#include "monitor/monitor.h"
#include "processing/settings_store.h"

#include <QMainWindow>

#include <functional>
#include <vector>

namespace tarvo {

// Form_Tarvo: shows the survey that its monitor holds, and hands the operator's wishes to the core.
class MainWindow : public QMainWindow, private RunDisplay {
    Q_OBJECT

public:
    // settings must outlive the window. op: who is asked and told; null: message boxes over this window.
    explicit MainWindow(SettingsStore& settings, Operator* op = nullptr);
    ~MainWindow() override;

    Monitor& monitor() { return monitor_; }
    SurveyState& survey() { return monitor_.survey; }
    Operator& op() { return op_; }
    SettingsStore& settings() { return settings_; }

    // Chooses a data file: what is beside it is read at once, a run that goes on is stopped cleanly first.
    void open_file(const std::string& file_name);

    // The start button pair. The call returns when the run is paused or over.
    void press_start(StartButton index);

    // Does something that no run may be under way for: at once, or as soon as the run that is stopped for it is over.
    void when_idle(std::function<void()> action);

    // Shows the survey anew after its definitions, parameters, ranges, picks or values were changed.
    void show_survey();

private:
    void show_controls(const RunControls& controls) override;
    void show_counters(const RunCounters& counters) override;
    void reset_speed_control() override;
    void clear_monitor_form() override;
    void display_replay_data(std::int32_t record, std::int32_t completed) override;
    void show_dials(const CurrentSample& sample) override;
    void process_events(const RunCounters& counters) override;
    void wait(int milliseconds) override;
    void show_finished_run() override;

    void closeEvent(QCloseEvent* event) override;

    bool is_idle() const;
    void perform_waiting_actions();

    SettingsStore& settings_;
    QtOperator boxes_;
    Operator& op_;
    Monitor monitor_;
    std::vector<std::function<void()>> waiting_actions_;
};

} // namespace tarvo

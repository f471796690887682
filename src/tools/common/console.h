#pragma once

#include "picks/pick_display.h"
#include "ports/operator.h"
#include "ports/run_display.h"

#include <chrono>
#include <iosfwd>

namespace tarvo {

// The operator of a program without a window: reads its messages, answers every question with No and chooses no file.
class ConsoleOperator : public Operator {
public:
    void show_message(const std::string& text) override;
    bool ask_yes_no(const std::string& question) override;
    std::optional<std::string> choose_file_to_open(const FileQuestion& question) override;
    std::optional<std::string> choose_file_to_create(const FileQuestion& question) override;
};

// Shows a run as one progress line on standard error, or not at all.
class ConsoleRunDisplay : public RunDisplay {
public:
    enum class Progress { hidden, shown };
    explicit ConsoleRunDisplay(Progress progress) : progress_(progress) {}

    void show_controls(const RunControls&) override {}
    void show_counters(const RunCounters&) override {}
    void reset_speed_control() override {}
    void clear_monitor_form() override {}
    void display_replay_data(std::int32_t, std::int32_t) override {}
    void show_dials(const CurrentSample&) override {}
    void process_events(const RunCounters& counters) override;
    void wait(int) override {}
    void show_finished_run() override;

private:
    Progress progress_;
    bool line_shown_ = false;
    std::chrono::steady_clock::time_point last_shown_;
};

// Nobody works on the picks.
class ConsolePickDisplay : public PickDisplay {
public:
    void show_pick_controls(const PickControls&) override {}
    void redraw_picks() override {}
    void show_sample(std::int32_t) override {}
    void open_new_pick_dialog() override {}
    void show_new_pick_marker(const PickLocation&) override {}
    void clear_new_pick_marker() override {}
    void display_pick_list() override {}
    void display_pick_item(std::int32_t) override {}
};

} // namespace tarvo

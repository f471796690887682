#pragma once

#include "ports/run_display.h"
#include "processing/sample_processing.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tarvo {

// Remembers what a run shows, and presses what it was told to between two lines.
class FakeRunDisplay : public RunDisplay {
public:
    std::vector<RunControls> controls;
    std::vector<RunCounters> counters;
    std::vector<std::int32_t> replayed; // records
    std::vector<CurrentSample> dials;
    std::vector<int> waits; // milliseconds
    int finished_runs = 0;
    std::function<void(std::int64_t line)> at_line;     // after that many data lines
    std::function<void(std::string_view step)> at_step; // while a run is finished
    std::function<void()> at_finish;

    void show_controls(const RunControls& shown) override { controls.push_back(shown); }
    void show_counters(const RunCounters& shown) override { counters.push_back(shown); }
    void reset_speed_control() override {}
    void clear_monitor_form() override {}
    void display_replay_data(std::int32_t record, std::int32_t) override { replayed.push_back(record); }
    void show_dials(const CurrentSample& sample) override { dials.push_back(sample); }
    void process_events(const RunCounters& shown) override
    {
        const bool is_new_line = shown.lines_read != last_line_; // else the run is being finished
        last_line_ = shown.lines_read;
        if (at_line && is_new_line) at_line(shown.lines_read);
        if (at_step && !shown.finishing.empty()) at_step(shown.finishing);
    }
    void wait(int milliseconds) override { waits.push_back(milliseconds); }
    void show_finished_run() override
    {
        ++finished_runs;
        last_line_ = 0;
        if (at_finish) at_finish();
    }

private:
    std::int64_t last_line_ = 0; // that events were let through after
};

} // namespace tarvo

#pragma once

#include "text/numbers.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

struct CurrentSample; // of the processing

// The counters and the progress of a run as the operator sees them.
struct RunCounters {
    std::int64_t lines_read = 0;
    std::int64_t samples_stored = 0;
    std::int64_t lines_rejected = 0;
    std::int64_t lines_not_averaged = 0;
    double current_line_number = kNull;   // of the open survey line; kNull: none
    std::int32_t short_lines_dropped = 0; // survey lines
    std::int64_t characters_consumed = 0;
    std::int64_t file_length = 0; // bytes; 0: not known, as in a live run
    std::string_view finishing;   // what is worked out behind the last line; empty: lines are read, or nothing is done
    double finished = 0;          // share of that
    std::optional<double> stopped_at; // of a run that was ended before its file: the share of it that was read
};

// Captions and locks of the controls that a run concerns.
struct RunControls {
    std::string start_caption = "Start replay"; // Command_start_logging, index 0
    std::string pause_caption = "Start load";   // index 1
    bool start_enabled = true;                  // the pair can be pressed
    bool file_controls_enabled = true;          // opening files, definitions, header line
    bool moving_anomalies_enabled = true;
    bool profile_controls_enabled = true; // profile and component controls, locked while the pipe is open
    bool pick_list_enabled = false;       // the menu entry of the pick list

    bool operator==(const RunControls&) const = default;
};

// What a run shows while it goes on. Every call comes from the one thread of the program.
class RunDisplay {
public:
    virtual ~RunDisplay() = default;

    virtual void show_controls(const RunControls& controls) = 0;
    virtual void show_counters(const RunCounters& counters) = 0;
    virtual void reset_speed_control() = 0;
    virtual void clear_monitor_form() = 0; // empties track, graphs, bars and read-outs

    // A replay or live run has stored a record, and the display value of `completed` is now known (0: of none).
    virtual void display_replay_data(std::int32_t record, std::int32_t completed) = 0;
    virtual void show_dials(const CurrentSample& sample) = 0;

    // Called after every data line, at a load's full speed: lets the user interface work off its pending events and
    // shows the counters, when the clock says that it is time.
    virtual void process_events(const RunCounters& counters) = 0;
    virtual void wait(int milliseconds) = 0; // events are processed meanwhile

    virtual void show_finished_run() = 0; // refreshes track, graphs and colour bars
};

} // namespace tarvo

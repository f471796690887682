#pragma once

#include "intake/lines_ahead.h"
#include "intake/replay_pace.h"
#include "intake/run_phase.h"
#include "intake/survey_source.h"
#include "picks/pick_workflow.h"
#include "ports/operator.h"
#include "ports/run_display.h"
#include "survey/survey_state.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace tarvo {

// What process_input_data returns when the data has ended and the run is finished.
inline constexpr int kEndOfData = -9999;

enum class StartButton : int { replay_or_stop = 0, load_or_pause = 1 };

// Takes a survey's data lines from the file, or one by one from the pipe, through processing to the finished display.
// While a run goes on, the loop lets the user interface work between two lines, and so every operation here may be
// called from within another: a press during the loop only notes what is wanted, and the loop acts on it.
class LoggingDriver {
public:
    LoggingDriver(SurveyState& survey, PickWorkflow& pick_work, Operator& op, RunDisplay& display,
                  std::function<ReplayClock::time_point()> clock = ReplayClock::now);

    RunPhase phase() const { return phase_; }
    RunFlags state() const { return flags_of(phase_); }
    RunCounters counters() const;
    bool is_starting() const { return starting_; }
    bool is_finishing() const { return phase_ == RunPhase::finishing; }
    // One of the operations below is under way further up the call stack.
    bool is_at_work() const { return starting_ || looping_ || is_finishing(); }

    // The start button pair. When idle, index 0 starts a replay and index 1 a load, and the call returns when the run
    // is paused or over; else index 0 stops the run and index 1 pauses or resumes it. Returns what ended the run:
    // kEndOfData, 0 for a pause or a request noted, -1 for a refusal or a fault.
    int Command_start_logging(StartButton index);

    // HScroll_speed: 0 to 100, the fastest.
    void HScroll_speed_change(int position);

    // Checks the header line number, reads the definitions, opens the data file behind its header line and locates the
    // columns. 0 or -1; a refusal has been shown.
    int start_data_logging();
    // Sizes the stores for a new run over the located columns and clears the displays.
    void initialise_data_logging();
    int process_input_data(); // the file's lines, until data end, pause or stop
    // One line of a live run. 0, or -1 for a line that was refused and counted. Nothing yields to the user interface
    // here: between two lines the program is in its event loop anyway, and a dialog opened there holds up no line.
    int process_input_data(std::string_view line);
    // Also from an event of the loop: the file run then ends with nothing finalised.
    void stop_data_logging();
    // Works out and shows what the run's samples give. -1: something could not be, which has been told.
    int terminate_data_logging();

    // A live run: begins over the located columns; ends like a file run.
    void start_pipe_data_logging();
    // To be asked before one can begin: a live run drops the picks of a file, which the operator may want to save
    // first.
    bool may_begin_live_run() const;
    void finish_pipe_run();

    // An open pipe locks the controls of file runs and profiles.
    void lock_for_pipe();
    void unlock_from_pipe();
    bool is_pipe_open() const { return pipe_open_; }

    // Ends a file run as soon as the loop gets to it, or at once when it is paused. A run that is being finished leaves
    // out what is still to be computed: its samples are shown as they are.
    void request_stop();

private:
    int start_run(StartButton index);
    int stop_run();
    int go_on(RunPhase phase); // out of a pause
    int read_lines();
    int finish_run(int result);
    int compute_finished_values();
    void begin_step(std::string_view step, double finished);
    void let_events_happen();
    std::optional<double> share_read() const;
    SurveySource::Outcome take_next_line(SurveySource& source);
    SurveySource::Outcome read_next_line(SurveySource& source, LineReading& reading);
    void read_ahead();
    void begin_next_file(const NamedColumns& named);
    int process_reading(const LineReading& reading);
    void warn_of_overlap();
    void check_grid();
    void wait_in_replay();
    void warn_of_field_count(std::string_view line);
    void show_newest_sample(std::int32_t records_before);
    bool open_data_file();
    int begin_processing(std::string_view names_line);
    void show_controls();

    SurveyState& survey_;
    PickWorkflow& pick_work_;
    Operator& op_;
    RunDisplay& display_;
    RunPhase phase_ = RunPhase::idle;
    RunControls controls_;
    std::unique_ptr<FileSource> source_; // of a file run
    std::unique_ptr<LinesAhead> ahead_;  // of its file at hand; null: the run reads it itself
    LiveFeed feed_;
    std::shared_ptr<const Projection> grid_; // of positions in degrees
    bool grid_checked_ = false;              // against the first position
    std::size_t shown_overlaps_ = 0;
    int line_status_ = 0;  // of the line taken last: 0, or -1 when it was refused
    int replay_delay_ = 0; // milliseconds
    ReplayPace pace_;
    std::function<ReplayClock::time_point()> clock_;
    bool first_line_checked_ = false;
    bool starting_ = false; // start_run prepares a run further up the call stack, also while it clears the displays
    bool looping_ = false;  // so does read_lines its work, also when an event has ended the run under it
    bool pipe_open_ = false;
    std::string_view finishing_step_;  // empty: no run is being finished
    double finished_ = 0;              // share of what finishing has to do
    bool is_cut_short_ = false;        // no more is to be computed
    std::optional<double> stopped_at_; // share of the file, where the last run ended before it
    bool live_fault_shown_ = false;    // of this live run: a fault of every line is not to stack up boxes
};

} // namespace tarvo

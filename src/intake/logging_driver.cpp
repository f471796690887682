#include "intake/logging_driver.h"

#include "definitions/definitions_file.h"
#include "intake/header.h"
#include "picks/track_index.h"
#include "ports/busy_flag.h"
#include "ports/guarded_operation.h"
#include "processing/format_rules.h"
#include "processing/run_warnings.h"
#include "survey/displayed_quantity.h"
#include "survey/ground_grid.h"
#include "survey/survey_residual.h"
#include "text/file_names.h"
#include "text/tokens.h"

#include <algorithm>
#include <cmath>
#include <system_error>

namespace tarvo {

namespace {

constexpr int kDialRefreshSamples = 10;
constexpr int kFullSpeed = 100; // HScroll_speed without a delay

int delay_of_speed(int position)
{
    const double slowness = kFullSpeed - std::clamp(position, 0, kFullSpeed);
    return static_cast<int>(std::nearbyint(slowness * slowness / 10.0));
}

// One phase within another operation, however it ends.
class PhaseWithin {
public:
    PhaseWithin(RunPhase& phase, RunPhase within) : PhaseWithin(phase, within, phase) {}
    PhaseWithin(RunPhase& phase, RunPhase within, RunPhase behind) : phase_(phase), behind_(behind) { phase_ = within; }
    PhaseWithin(const PhaseWithin&) = delete;
    PhaseWithin& operator=(const PhaseWithin&) = delete;
    ~PhaseWithin() { phase_ = behind_; }

private:
    RunPhase& phase_;
    RunPhase behind_;
};

// The means of the bin stored last. A bin of one sample has no mean: the reading itself stands in.
CurrentSample dial_readings(const SampleProcessing& run)
{
    CurrentSample readings = run.sample;
    decimate_accumulated_data_values(run.bin, readings);
    for (std::size_t channel = 1; channel < readings.ChannelValues.size(); ++channel) {
        double& value = readings.ChannelValues[channel];
        if (!is_valid_channel(value)) value = run.sample.ChannelValues[channel];
    }
    for (std::size_t channel = 1; channel < readings.SensorValues.size(); ++channel) {
        double& value = readings.SensorValues[channel];
        if (!is_valid_sensor(value)) value = run.sample.SensorValues[channel];
    }
    double& heading = readings.ChannelValues[kHeading];
    if (run.plan.circular_heading) heading = within_circle(heading);
    return readings;
}

// Leaves what is being computed at the end of a run; no fault, so that nothing on the way takes it for one.
struct CutShort {};

} // namespace

LoggingDriver::LoggingDriver(SurveyState& survey, PickWorkflow& pick_work, Operator& op, RunDisplay& display,
                             std::function<ReplayClock::time_point()> clock)
    : survey_(survey), pick_work_(pick_work), op_(op), display_(display), clock_(std::move(clock))
{
}

RunCounters LoggingDriver::counters() const
{
    const SampleProcessing& run = survey_.processing;
    RunCounters counters;
    counters.lines_read = run.lines_read;
    counters.samples_stored = run.store.RecordCount;
    counters.lines_rejected = run.lines_rejected;
    counters.lines_not_averaged = run.lines_not_averaged;
    counters.short_lines_dropped = run.lines.ShortLinesDropped;
    counters.finishing = finishing_step_;
    counters.finished = finished_;
    counters.stopped_at = stopped_at_;
    if (run.lines.has_line()) counters.current_line_number = run.lines.CurrentLineNumber;
    if (source_) {
        counters.characters_consumed =
            ahead_ ? source_->characters_before_file() + ahead_->characters_consumed() : source_->characters_consumed();
        counters.file_length = source_->length();
    }
    return counters;
}

int LoggingDriver::Command_start_logging(StartButton index)
{
    if (is_finishing() && index == StartButton::replay_or_stop) request_stop();
    if (starting_ || is_finishing() || pipe_open_) return 0;
    if (!state().file_run_active()) return start_run(index);
    if (index == StartButton::replay_or_stop) return stop_run();
    switch (phase_) {
    case RunPhase::replay_paused: return go_on(RunPhase::replaying);
    case RunPhase::load_paused: return go_on(RunPhase::loading);
    case RunPhase::replaying: phase_ = RunPhase::replay_paused; break;
    case RunPhase::loading: phase_ = RunPhase::load_paused; break;
    default: return 0; // a run that is to stop does not pause
    }
    controls_.pause_caption = state().load_running ? "Resume Load" : "Resume Replay";
    show_controls();
    return 0;
}

int LoggingDriver::stop_run()
{
    const RunFlags before = state();
    const RunPhase stopping = before.load_running ? RunPhase::load_stopping : RunPhase::replay_stopping;
    if (before.run_paused) return go_on(stopping);
    phase_ = stopping;
    return 0;
}

int LoggingDriver::start_run(StartButton index)
{
    int status = -1;
    {
        const BusyFlag busy(starting_);
        run_guarded(op_, "An error occurred while starting the run: ", [this, &status] {
            stop_data_logging();
            phase_ = RunPhase::starting;
            status = start_data_logging();
        });
    }
    if (status < 0) {
        stop_data_logging();
        return -1;
    }
    const bool load = index == StartButton::load_or_pause;
    phase_ = load ? RunPhase::loading : RunPhase::replaying;
    controls_.start_caption = load ? "Stop Load" : "Stop Replay";
    controls_.pause_caption = load ? "Pause Load" : "Pause Replay";
    survey_.track_image.is_held = load;
    show_controls();
    if (!load) follow_track(survey_.track_image, track_scene(survey_), op_);
    if (load) read_ahead();
    return process_input_data();
}

int LoggingDriver::go_on(RunPhase phase)
{
    phase_ = phase;
    if (!state().stop_requested) controls_.pause_caption = state().load_running ? "Pause Load" : "Pause Replay";
    show_controls();
    // A press that came from within the loop lets the loop go on by itself.
    return looping_ ? 0 : process_input_data();
}

void LoggingDriver::request_stop()
{
    is_cut_short_ = is_finishing();
    if (state().file_run_active()) stop_run();
}

void LoggingDriver::HScroll_speed_change(int position)
{
    replay_delay_ = delay_of_speed(position);
}

int LoggingDriver::start_data_logging()
{
    std::optional<int> header_line;
    if (survey_.header_line_text) {
        header_line = header_line_number_of(*survey_.header_line_text);
        if (!header_line) {
            op_.show_message("The header line number is not valid");
            return -1;
        }
    }
    if (survey_.data_file_name.empty()) {
        op_.show_message("The MAG data file has not been specified");
        return -1;
    }
    if (!is_there(survey_.data_file_name)) {
        op_.show_message("The MAG data file could not be located");
        return -1;
    }
    const std::string definitions_file = survey_.definitions_file_name.empty()
                                             ? definitions_file_name_for(survey_.data_file_name)
                                             : survey_.definitions_file_name;
    if (!is_there(definitions_file)) {
        op_.show_message("No definition file was found");
        return -1;
    }
    if (read_definitions(definitions_file, survey_.survey_definitions, survey_.header_line_number, op_).status < 0) {
        return -1;
    }
    if (header_line) survey_.header_line_number = *header_line;
    initialise_data_logging();
    return open_data_file() ? 0 : -1;
}

bool LoggingDriver::open_data_file()
{
    auto files = std::make_unique<FileSource>(data_files_of(survey_), survey_.header_line_number);
    std::optional<SourceColumns> columns = open_source(*files, survey_.survey_definitions, op_);
    if (!columns) return false;
    op_.show_warnings(columns->warnings);
    survey_.files_read = files->file_names();
    survey_.header_columns = std::move(columns->named.header);
    survey_.locations = std::move(columns->locations);
    source_ = std::move(files);
    return begin_processing(columns->named.names_line) == 0;
}

// The run's lines are read as the definitions in force say. -1: they cannot be obeyed, the operator has been told.
int LoggingDriver::begin_processing(std::string_view names_line)
{
    first_line_checked_ = false;
    shown_overlaps_ = 0;
    grid_checked_ = false;
    return run_guarded(op_, "The data format cannot be obeyed: ", [&] {
        SampleProcessing& run = survey_.processing;
        start_processing(run, survey_.survey_definitions, survey_.locations, survey_.parameters);
        grid_ = grid_of_positions(survey_.survey_definitions, survey_.projections);
        obey_data_format(run, survey_.survey_definitions, survey_.locations, names_line, grid_);
    });
}

// Another file of the survey names its columns anew.
void LoggingDriver::begin_next_file(const NamedColumns& named)
{
    survey_.header_columns = named.header;
    locate_header_fields(named.header, survey_.survey_definitions, survey_.locations); // warnings were seen before
    tarvo::begin_next_file(survey_.processing, survey_.survey_definitions, survey_.locations, named.names_line, grid_);
    if (state().load_running) read_ahead();
}

void LoggingDriver::initialise_data_logging()
{
    const PhaseWithin clearing(phase_, RunPhase::clearing);
    stopped_at_.reset();
    survey_.track_index.DeleteQuadtree();
    pick_work_.take_picks_off_track();
    start_processing(survey_.processing, survey_.survey_definitions, survey_.locations, survey_.parameters);
    survey_.filters = make_gradient_filters(survey_.parameters);
    clear_residual(survey_.residual);
    survey_.ground = {};
    clear_track_image(survey_.track_image, op_);
    display_.clear_monitor_form();
    display_.show_counters(counters());
}

int LoggingDriver::process_input_data()
{
    int result = read_lines();
    if (!source_) return 0; // stopped by an event
    if (state().stop_requested && result == 0) result = kEndOfData;
    return result == 0 ? 0 : finish_run(result);
}

// kEndOfData, 0 when paused or to be stopped, or -1 after a fault.
int LoggingDriver::read_lines()
{
    const BusyFlag busy(looping_);
    pace_.restart();
    try {
        while (source_ && !state().run_paused && !state().stop_requested) {
            if (take_next_line(*source_) == SurveySource::Outcome::end) return kEndOfData;
            if (state().replay_running) wait_in_replay();
            display_.process_events(counters());
        }
    } catch (const std::exception& fault) {
        op_.show_message(std::string("An error occurred while processing the input line: ") + fault.what());
        return -1;
    }
    return 0;
}

void LoggingDriver::wait_in_replay()
{
    pace_.choose(pace_of_text(survey_.run_settings.ReplayPace));
    const int pause =
        pace_.keeps_time() ? pace_.wait_behind(survey_.processing.sample.SampleTime, clock_()) : replay_delay_;
    if (pause >= 1) display_.wait(pause);
}

int LoggingDriver::process_input_data(std::string_view line)
{
    try {
        feed_.offer(line);
        take_next_line(feed_);
        return line_status_;
    } catch (const std::exception& fault) { // the sample is stored, showing it failed
        if (!live_fault_shown_) {
            live_fault_shown_ = true;
            op_.show_message(std::string("An error occurred while processing the input line: ") + fault.what());
        }
        return 0;
    }
}

SurveySource::Outcome LoggingDriver::take_next_line(SurveySource& source)
{
    LineReading reading;
    const SurveySource::Outcome outcome = read_next_line(source, reading);
    if (outcome == SurveySource::Outcome::next_file) begin_next_file(source.columns_of_file());
    if (outcome == SurveySource::Outcome::line) line_status_ = process_reading(reading);
    return outcome;
}

// A line that is too long is one, too.
SurveySource::Outcome LoggingDriver::read_next_line(SurveySource& source, LineReading& reading)
{
    if (ahead_) {
        const LinesAhead::Outcome outcome = ahead_->next(reading);
        if (outcome == LinesAhead::Outcome::line) return SurveySource::Outcome::line;
        if (outcome == LinesAhead::Outcome::waiting) return SurveySource::Outcome::waiting;
        ahead_.reset();
    }
    std::string_view line;
    const SurveySource::Outcome outcome = source.next_line(line);
    if (outcome == SurveySource::Outcome::line) {
        reading = survey_.processing.converter.read(line);
    } else if (outcome == SurveySource::Outcome::too_long) {
        reading.fault = LineFault::too_long;
    } else {
        return outcome;
    }
    reading.number = source.line_number();
    return SurveySource::Outcome::line;
}

// Has threads read the file at hand, where it is worth it and they are to be had.
void LoggingDriver::read_ahead()
{
    const int workers = workers_for(source_->length_of_file(), survey_.load_workers);
    if (workers == 0) return;
    const auto make_converter = [definitions = survey_.survey_definitions, locations = survey_.locations,
                                 wanted = survey_.processing.plan.wanted_fields,
                                 names_line = source_->columns_of_file().names_line,
                                 projections = survey_.projections] {
        return line_converter(definitions, locations, wanted, names_line,
                              grid_of_positions(definitions, projections)); // a grid of the thread's own
    };
    try {
        ahead_ = std::make_unique<LinesAhead>(source_->lines(), workers, make_converter);
    } catch (const std::system_error&) {
        ahead_.reset();
    }
}

int LoggingDriver::process_reading(const LineReading& reading)
{
    if (!first_line_checked_) warn_of_field_count(reading.text);
    const std::int32_t records_before = survey_.processing.store.RecordCount;
    const int status = process_line_reading(reading, survey_.processing);
    if (survey_.processing.overlaps.size() > shown_overlaps_) warn_of_overlap();
    if (grid_ && !grid_checked_ && status == 0) check_grid();
    if (!state().load_running && survey_.processing.store.RecordCount != records_before) {
        show_newest_sample(records_before);
    }
    return status;
}

void LoggingDriver::warn_of_field_count(std::string_view line)
{
    if (trimmed(line).empty()) return;
    first_line_checked_ = true;
    op_.show_warnings(field_count_warnings(survey_.header_columns, line, survey_.survey_definitions));
}

void LoggingDriver::warn_of_overlap()
{
    op_.show_warnings(overlap_warnings(survey_.processing, survey_.files_read, shown_overlaps_));
    shown_overlaps_ = survey_.processing.overlaps.size();
}

// By the first position of the run.
void LoggingDriver::check_grid()
{
    const ChannelArray& values = survey_.processing.sample.ChannelValues;
    const GridCoordinates position{values[kEast], values[kNorth]};
    if (!position.is_known()) return;
    grid_checked_ = true;
    op_.show_warnings(grid_warnings(*grid_, position));
}

// A dropped line takes its records back; what stays of it on the picture goes with the redraw at the end of the run.
void LoggingDriver::show_newest_sample(std::int32_t records_before)
{
    SampleStore& store = survey_.processing.store;
    const std::int32_t record = store.RecordCount;
    if (record < records_before) return;
    if (record % kDialRefreshSamples == 0) display_.show_dials(dial_readings(survey_.processing));
    const std::int32_t gradient =
        calculate_newest_gradient_values(store, survey_.processing.lines, survey_.filters, op_);
    const std::int32_t residual = follow_residual(survey_);
    const bool shows_residual = displayed_quantity(survey_.display_settings).id == QuantityId::residual;
    const std::int32_t completed = shows_residual ? residual : gradient;
    const bool is_range_new = follow_automatic_range(survey_);
    const TrackTable track = track_table(store);
    const TrackScene scene = track_scene(survey_);
    if (is_range_new) redraw_colours(survey_.track_image, scene, op_);
    const std::int32_t placed = survey_.processing.first_placed_record;
    for (std::int32_t point = placed > 0 ? placed : record; point <= record; ++point) {
        plot_track_point(survey_.track_image, scene, point, track.easting[point], track.northing[point]);
    }
    if (completed > 0) recolour_track_points(survey_.track_image, scene, completed);
    display_.display_replay_data(record, std::max(completed, 0));
}

// Of a file run; none when its end was reached, too.
std::optional<double> LoggingDriver::share_read() const
{
    const RunCounters now = counters();
    if (now.file_length <= 0 || now.characters_consumed >= now.file_length) return std::nullopt;
    return static_cast<double>(now.characters_consumed) / static_cast<double>(now.file_length);
}

int LoggingDriver::finish_run(int result)
{
    stopped_at_ = share_read();
    {
        const PhaseWithin finishing(phase_, RunPhase::finishing, RunPhase::idle);
        const auto perform = [&](auto step) {
            if (run_guarded(op_, "An error occurred while finishing the run: ", step) < 0) result = -1;
        };
        // Each by itself: where memory has run out for the last bin, the samples before it are shown all the same.
        perform([this] { close_open_bin(survey_.processing); });
        perform([this] { stop_data_logging(); });
        perform([this] { op_.show_warnings(misfit_warnings(survey_.processing, survey_.files_read)); });
        perform([this, &result] {
            if (terminate_data_logging() < 0) result = -1;
        });
        finishing_step_ = {};
    }
    show_controls();
    return result;
}

void LoggingDriver::stop_data_logging()
{
    ahead_.reset();
    source_.reset();
    grid_.reset();
    if (!is_finishing()) {
        survey_.track_image.is_held = false; // else until the whole track can be drawn
        phase_ = RunPhase::idle;
    }
    replay_delay_ = delay_of_speed(kFullSpeed);
    display_.reset_speed_control();
    RunCounters shown;
    shown.lines_rejected = survey_.processing.lines_rejected;
    shown.lines_not_averaged = survey_.processing.lines_not_averaged;
    shown.current_line_number = counters().current_line_number;
    display_.show_counters(shown);
    controls_.start_caption = "Start replay";
    controls_.pause_caption = "Start load"; // what a press then does
    show_controls();
}

// The steps over a long track take their time: in a file run the user interface works in between, and may cut short
// what can be done again.
int LoggingDriver::terminate_data_logging()
{
    SampleProcessing& run = survey_.processing;
    is_cut_short_ = false;
    int status = -1;
    try {
        status = compute_finished_values();
    } catch (const CutShort&) {
        clear_residual(survey_.residual);
        survey_.ground = {};
        stopped_at_ = stopped_at_.value_or(1);
        op_.show_warnings({{WarningAbout::data, std::string(finishing_step_),
                            "Gradients, residual and grid are incomplete, for the run was stopped while they were "
                            "computed: load the file again for them"}});
        status = 0;
    }
    begin_step("Building the index", 0.8);
    survey_.pan_range = calculate_track_skip(run.store.RecordCount, survey_.pan_range.position);
    build_track_index(track_table(run.store), survey_.track_index, [this] { let_events_happen(); });
    begin_step("Drawing", 0.9);
    pick_work_.load_pick_list_on_form(indexed_track(survey_));
    renew_automatic_range(survey_);
    show_finished_track(survey_.track_image, track_scene(survey_), op_);
    let_events_happen();
    display_.show_finished_run();
    return status;
}

int LoggingDriver::compute_finished_values()
{
    SampleProcessing& run = survey_.processing;
    const auto pause = [this] {
        let_events_happen();
        if (is_cut_short_) throw CutShort();
    };
    begin_step("Gradients", 0);
    const int status =
        recalculate_gradient_values(run.store, run.lines, survey_.parameters, survey_.filters, op_, pause);
    begin_step("Residual", 0.5);
    for (const std::string& note : finish_residual(survey_, pause)) {
        op_.show_warnings({{WarningAbout::data, "base station", note}});
    }
    begin_step("Grid", 0.7);
    update_ground_grid(survey_, pause);
    return status;
}

void LoggingDriver::begin_step(std::string_view step, double finished)
{
    finishing_step_ = step;
    finished_ = finished;
    let_events_happen();
}

void LoggingDriver::let_events_happen()
{
    display_.process_events(counters());
}

bool LoggingDriver::may_begin_live_run() const
{
    return survey_.data_file_name.empty() || pick_work_.may_leave_list();
}

void LoggingDriver::start_pipe_data_logging()
{
    // The picks of a file are not those of a live survey, and must not be written over by them.
    if (!survey_.data_file_name.empty()) {
        survey_.data_file_name.clear();
        survey_.further_data_files.clear();
        pick_work_.open_picks_of({}, indexed_track(survey_));
    }
    initialise_data_logging();
    feed_ = LiveFeed(survey_.header_columns);
    survey_.files_read.clear();
    begin_processing({});
    phase_ = RunPhase::live;
    live_fault_shown_ = false;
    follow_track(survey_.track_image, track_scene(survey_), op_);
    show_controls();
}

void LoggingDriver::finish_pipe_run()
{
    if (phase_ == RunPhase::live) finish_run(kEndOfData);
}

void LoggingDriver::lock_for_pipe()
{
    pipe_open_ = true;
    show_controls();
}

void LoggingDriver::unlock_from_pipe()
{
    pipe_open_ = false;
    show_controls();
}

// Until a run is finished, nothing that needs the track or begins another run can be pressed.
void LoggingDriver::show_controls()
{
    controls_.start_enabled = !pipe_open_;
    controls_.profile_controls_enabled = !pipe_open_;
    controls_.file_controls_enabled = !pipe_open_ && !state().any_run_active();
    controls_.pick_list_enabled = has_pick_list(survey_);
    controls_.moving_anomalies_enabled = !state().any_run_active();
    RunControls shown = controls_;
    if (is_finishing()) {
        shown.start_enabled = false;
        shown.file_controls_enabled = false;
        shown.moving_anomalies_enabled = false;
        shown.pick_list_enabled = false;
    }
    display_.show_controls(shown);
}

} // namespace tarvo

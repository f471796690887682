#include "live/live_requests.h"

#include "intake/column_report.h"
#include "live/format_requests.h"
#include "picks/pick_file.h"
#include "ports/busy_flag.h"
#include "ports/guarded_operation.h"
#include "processing/format_rules.h"
#include "text/numbers.h"

#include <cassert>
#include <cmath>
#include <exception>
#include <utility>

namespace tarvo {

namespace {

constexpr double kOverdueAge = 5; // seconds without a line
constexpr auto kPipeLookInterval = std::chrono::seconds(2);
constexpr std::string_view kDataLineStart = "$GDP0001";

constexpr const char* kOk = "OK";
constexpr const char* kInvalidRequest = "Invalid Request";
constexpr const char* kInvalidRequestCode = "Invalid Request Code";
constexpr const char* kBadHeader = "Bad Header";

bool is_definition(int code)
{
    return (code >= kHeaderColumns && code <= kDataFormat) || (code >= kFirstSensor && code <= kLastSensor) ||
           code == kEndOfDefinitions;
}

// What stands in the code's place as a code; -1 for a number that can be none.
int whole_code(double number)
{
    const bool possible = number >= 0 && number <= 9999 && number == std::floor(number);
    return possible ? static_cast<int>(number) : -1;
}

} // namespace

bool LiveStatus::is_overdue() const
{
    return state == State::live && last_line_age.value_or(run_age) >= kOverdueAge;
}

std::string live_status_text(const LiveStatus& status)
{
    if (status.state == LiveStatus::State::idle) return "Not listening";
    const std::string clients = status.clients == 0   ? "no client connected"
                                : status.clients == 1 ? "1 client"
                                                      : std::to_string(status.clients) + " clients";
    if (status.state == LiveStatus::State::listening) return "Listening, " + clients;
    std::string text = "Live: " + format_fixed(status.lines_per_second, 0) + " lines/s, ";
    text += status.last_line_age ? "last line " + format_fixed(*status.last_line_age, 1) + " s ago" : "no line yet";
    return text + ", " + std::to_string(status.lines_rejected) + " rejected, " + clients;
}

std::string ByteArrayToString(std::span<const std::byte> bytes)
{
    std::string text(bytes.size(), '\0');
    for (std::size_t at = 0; at < bytes.size(); ++at) text[at] = static_cast<char>(bytes[at]);
    return text;
}

LiveRequests::LiveRequests(SurveyState& survey, LoggingDriver& driver, Operator& op, PipeEndpoint& endpoint,
                           LiveDisplay& display, std::function<LiveClock::time_point()> clock)
    : survey_(survey), driver_(driver), op_(op), endpoint_(endpoint), display_(display), clock_(std::move(clock))
{
}

bool LiveRequests::Command_UDP_receive()
{
    if (handling_) {
        button_pressed_ = true;
        return true;
    }
    if (driver_.is_starting() || driver_.is_finishing()) return false;
    listening_ ? close_pipe() : open_pipe();
    return true;
}

void LiveRequests::open_pipe()
{
    if (!driver_.may_begin_live_run()) return;
    if (const std::optional<PipeFault> fault = endpoint_.listen(kPipeName)) { // a file run goes on
        op_.show_message("There was an error setting up the pipe: " + std::to_string(fault->number) + ": " +
                         fault->text);
        return;
    }
    if (driver_.state().file_run_active()) driver_.stop_data_logging();
    listening_ = true;
    pipe_fault_told_ = false;
    display_.show_pipe_caption("Close UDP Pipe");
    display_.empty_echo_box();
    driver_.lock_for_pipe();
    driver_.initialise_data_logging();
}

void LiveRequests::close_pipe()
{
    stop_pipe_data_logging(PipeAfterRun::closes);
    if (survey_.processing.store.RecordCount == 0) display_.empty_echo_box();
}

std::string LiveRequests::handle_request(std::span<const std::byte> request)
{
    assert(!handling_);
    std::string reply = kInvalidRequest;
    {
        const BusyFlag busy(handling_);
        run_guarded(
            op_, "An error occurred while handling a request: ", [&] { reply = reply_to(ByteArrayToString(request)); });
    }
    if (std::exchange(button_pressed_, false)) Command_UDP_receive();
    return reply;
}

std::string LiveRequests::reply_to(std::string_view text)
{
    if (!text.starts_with(kDataLineStart)) display_.append_echo(std::string(text));
    if (!text.starts_with(kRequestTag)) return kInvalidRequest;
    const std::optional<double> number = numeric_value(text.substr(kRequestTag.size(), 4));
    if (!number) return kInvalidRequestCode;
    return obey(whole_code(*number), text.size() > kPayloadStart ? text.substr(kPayloadStart) : std::string_view());
}

std::string LiveRequests::obey(int code, std::string_view payload)
{
    if (is_definition(code)) {
        stop_pipe_data_logging(PipeAfterRun::stays_open);
        if (code == kEndOfDefinitions) return end_definitions();
        apply_definition(code, payload);
    } else if (!is_live()) {
        return kOk;
    } else if (code == kDataLine) {
        process_data_line(payload);
    } else if (code == kEndOfLiveData) {
        stop_pipe_data_logging(PipeAfterRun::stays_open);
    } else if (code == kStatusText) {
        display_.show_status_text(std::string(payload));
    }
    return kOk;
}

void LiveRequests::process_data_line(std::string_view line)
{
    const LiveClock::time_point now = clock_();
    rate_.note_line(now);
    last_line_ = now;
    const int status = driver_.process_input_data(line);
    // Where lines carry no time their count is the clock, so that a refused one has its place in the file too.
    if (status == 0 || !survey_.processing.plan.has_time) recording_.append(line);
}

void LiveRequests::apply_definition(int code, std::string_view payload)
{
    SurveyDefinitions& definitions = survey_.survey_definitions;
    try {
        if (code == kDataFormat) take_format_line(payload);
        if (code == kHeaderColumns) survey_.header_columns = columns_of_payload(payload, coming_format_);
        if (code == kScales) apply_scales(payload, definitions);
        if (code == kFieldNames) apply_field_names(payload, definitions);
        if (code == kSensorCounts) apply_sensor_counts(payload, definitions);
        if (code >= kFirstSensor) apply_sensor(payload, code - kFirstSensor + 1, definitions);
    } catch (const std::exception& fault) {
        const char* const names = code >= kSensorCounts ? "sensor" : "fish";
        op_.show_message(std::string("An error occurred while decoding the ") + names +
                         " field names: " + fault.what());
    }
}

void LiveRequests::take_format_line(std::string_view payload)
{
    const std::string ignored = take_format_request(payload, coming_format_);
    if (!ignored.empty()) display_.append_echo(ignored);
}

// A header that holds none of the columns that the definitions name is another survey's.
std::string LiveRequests::end_definitions()
{
    survey_.survey_definitions.data_format = std::exchange(coming_format_, std::nullopt);
    if (survey_.survey_definitions.data_format)
        give_clock_its_day(*survey_.survey_definitions.data_format, utc_today());
    const std::string refusal = data_format_refusal(survey_.survey_definitions, survey_.projections);
    if (!refusal.empty()) {
        op_.show_message("The data definitions are invalid\n" + refusal);
        return kBadHeader;
    }
    LiveFeed feed(survey_.header_columns);
    const std::optional<SourceColumns> columns = open_source(feed, survey_.survey_definitions, op_);
    const bool nothing_located =
        !columns || (columns->locations.located_field_count == 0 && columns->locations.sensor_channel_count() == 0);
    survey_.locations = columns ? columns->locations : FieldLocations();
    if (nothing_located) {
        op_.show_message("The data definitions are invalid\n" +
                         column_warnings_text(columns ? columns->warnings : Warnings()));
        return kBadHeader;
    }
    // Before empty names get their defaults, which the header may have as well: what is recorded is what was located.
    described_ = portable_survey(survey_.header_columns, survey_.survey_definitions);
    set_default_field_names(survey_.survey_definitions);
    start_pipe_data_logging();
    op_.show_warnings(columns->warnings);
    return kOk;
}

void LiveRequests::start_pipe_data_logging()
{
    rate_ = LineRate();
    run_begin_ = clock_();
    last_line_.reset();
    display_.show_status_text("");
    driver_.start_pipe_data_logging();
    start_recording();
}

// The pipe is closed first, so that no request comes in between while the run is finished.
void LiveRequests::stop_pipe_data_logging(PipeAfterRun pipe)
{
    if (pipe == PipeAfterRun::closes) endpoint_.close();
    driver_.finish_pipe_run();
    recording_.finish();
    report_recording();
    if (pipe == PipeAfterRun::stays_open) return;
    listening_ = false;
    driver_.unlock_from_pipe();
    display_.show_pipe_caption("Listen for UDP");
    display_.show_status_text("");
}

void LiveRequests::set_recording_folder(const std::string& folder)
{
    const bool goes_on = folder == recording_folder_ || (!folder.empty() && status().recording_lost);
    recording_folder_ = folder;
    if (!folder.empty()) recording_.try_again(folder);
    if (goes_on) return;
    recording_.finish();
    report_recording();
    if (is_live()) start_recording();
}

void LiveRequests::start_recording()
{
    if (recording_folder_.empty()) return;
    recording_.start(recording_folder_, described_);
    report_recording();
}

// A recording has its file when the disk has taken it, and another one when that has vanished.
void LiveRequests::follow_recorded_file()
{
    const std::string file = recording_.data_file_name();
    if (file.empty() || file == recorded_file_) return;
    recorded_file_ = file;
    move_picks_to(pick_file_name_for(file));
}

// The picks of the recording before stay on the track and in that recording's file; from the next change on they are
// the new one's, too.
void LiveRequests::move_picks_to(const std::string& pick_file_name)
{
    PickList& picks = survey_.picks;
    if (picks.pick_file_name == picks.offered_file_name) picks.pick_file_name = pick_file_name;
    picks.offered_file_name = pick_file_name;
}

LiveStatus LiveRequests::status()
{
    const LiveClock::time_point now = clock_();
    LiveStatus status;
    status.clients = endpoint_.client_count();
    if (listening_) status.state = LiveStatus::State::listening;
    if (!is_live()) return status;
    status.state = LiveStatus::State::live;
    status.lines_per_second = rate_.lines_per_second(now);
    status.run_age = std::chrono::duration<double>(now - run_begin_).count();
    if (last_line_) status.last_line_age = std::chrono::duration<double>(now - *last_line_).count();
    status.lines_rejected = survey_.processing.lines_rejected;
    status.recording_lost = !recording_folder_.empty() && !recording_.is_active();
    return status;
}

void LiveRequests::look_after()
{
    report_recording();
    look_after_pipe();
}

void LiveRequests::report_recording()
{
    follow_recorded_file();
    if (const std::optional<std::string> warning = recording_.take_warning()) op_.show_message(*warning);
}

void LiveRequests::look_after_pipe()
{
    if (!listening_ || handling_ || clock_() - pipe_looked_after_ < kPipeLookInterval) return;
    pipe_looked_after_ = clock_();
    if (endpoint_.is_in_place()) return;
    const std::optional<PipeFault> fault = endpoint_.listen(kPipeName);
    if (fault && std::exchange(pipe_fault_told_, true)) return;
    pipe_fault_told_ = fault.has_value();
    op_.show_message(fault ? "The pipe's socket is gone, and nobody new can connect: " + fault->text
                           : "The pipe's socket was removed. Tarvo listens on a new one");
}

void LiveRequests::leave(Operator& told)
{
    endpoint_.close();
    follow_recorded_file();
    recording_.finish();
    write_unsaved_picks(survey_.picks, told);
    recording_.wait_until_settled();
    if (const std::optional<std::string> warning = recording_.take_warning()) told.show_message(*warning);
}

} // namespace tarvo

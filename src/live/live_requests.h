#pragma once

#include "intake/logging_driver.h"
#include "live/definition_requests.h"
#include "live/line_rate.h"
#include "live/live_recording.h"
#include "ports/operator.h"
#include "survey/survey_state.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarvo {

inline constexpr const char* kPipeName = "Tarvo_Server";

struct PipeFault {
    int number = 0; // the system's
    std::string text;
};

// The listening end of the pipe. It hands every request to the handler, one at a time and in turn, and sends the reply.
class PipeEndpoint {
public:
    virtual ~PipeEndpoint() = default;
    virtual std::optional<PipeFault> listen(const std::string& name) = 0; // nullopt: listening
    virtual void close() = 0;                                             // hangs up on every client
    virtual bool is_in_place() const = 0; // clients that come now find it; true while it is closed
    virtual int client_count() const = 0;
};

// What a live connection shows besides its run.
class LiveDisplay {
public:
    virtual ~LiveDisplay() = default;
    virtual void show_pipe_caption(const std::string& caption) = 0; // of Command_UDP_receive
    virtual void append_echo(const std::string& text) = 0;          // to RichTextBox_pipe; any bytes
    virtual void empty_echo_box() = 0;
    virtual void show_status_text(const std::string& text) = 0; // the sender's own words; any bytes
};

struct LiveStatus {
    enum class State { idle, listening, live };

    State state = State::idle;
    int clients = 0;
    double lines_per_second = 0;
    std::optional<double> last_line_age; // seconds; none before the first line of a run
    double run_age = 0;                  // seconds
    std::int64_t lines_rejected = 0;
    bool recording_lost = false; // the run is to be recorded, and its lines are in memory only

    bool is_overdue() const; // the sender has fallen silent
};

// One line such as "Live: 200 lines/s, last line 0.1 s ago, 0 rejected, 1 client".
std::string live_status_text(const LiveStatus& status);

// One character per byte, in order.
std::string ByteArrayToString(std::span<const std::byte> bytes);

// The live side of the monitor: the listen/close button, and the answer to every request.
class LiveRequests {
public:
    // op must not wait for the operator: a sender hangs on the reply. Everything passed must outlive the object.
    LiveRequests(SurveyState& survey, LoggingDriver& driver, Operator& op, PipeEndpoint& endpoint, LiveDisplay& display,
                 std::function<LiveClock::time_point()> clock = LiveClock::now);

    // Starts or ends listening. A press while a request is handled waits until that is done. False: a run is just being
    // started or finished, the press is to come again when that is over.
    bool Command_UDP_receive();

    // The reply to one request. Never to be called while another is handled.
    std::string handle_request(std::span<const std::byte> request);

    // To be asked before the replies to requests that were handled are sent. False: their lines are not with the
    // system yet, ask again.
    bool lines_are_kept() { return recording_.hand_over(); }

    // Where live runs are recorded; empty: nowhere. A run that is on is recorded from here on, or no longer; what a
    // disk refuses goes there.
    void set_recording_folder(const std::string& folder);

    // The end of the program without an operator: hangs up, writes the picks, and waits until the disk has the
    // recordings or refuses them. The run is not finalised.
    void leave(Operator& told);

    LiveStatus status();
    bool is_listening() const { return listening_; }
    bool is_handling() const { return handling_; } // a request, further up the call stack
    LiveRecording& recording() { return recording_; }

    // To be called some times a second: tells what the recording cannot wait to tell, and listens anew where the pipe
    // has been taken away.
    void look_after();

private:
    enum class PipeAfterRun { stays_open, closes };

    std::string reply_to(std::string_view text);
    std::string obey(int code, std::string_view payload);
    void process_data_line(std::string_view line);
    void apply_definition(int code, std::string_view payload);
    void take_format_line(std::string_view payload);
    std::string end_definitions();
    void start_pipe_data_logging();
    void stop_pipe_data_logging(PipeAfterRun pipe);
    void open_pipe();
    void close_pipe();
    void start_recording();
    void report_recording();
    void follow_recorded_file();
    void move_picks_to(const std::string& pick_file_name);
    void look_after_pipe();
    bool is_live() const { return driver_.state().pipe_logging_active; }

    SurveyState& survey_;
    LoggingDriver& driver_;
    Operator& op_;
    PipeEndpoint& endpoint_;
    LiveDisplay& display_;
    std::function<LiveClock::time_point()> clock_;

    std::optional<DataFormat> coming_format_; // of the lines since the last end of definitions
    PortableSurvey described_;                // of the run at hand or the last one, with what was located
    LiveRecording recording_;
    std::string recording_folder_;
    std::string recorded_file_; // that picks are beside
    LiveClock::time_point pipe_looked_after_;
    bool pipe_fault_told_ = false;
    LineRate rate_;
    LiveClock::time_point run_begin_;
    std::optional<LiveClock::time_point> last_line_; // when it came
    bool listening_ = false;
    bool handling_ = false;
    bool button_pressed_ = false; // while a request was handled
};

} // namespace tarvo

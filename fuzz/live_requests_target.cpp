#include "targets.h"

#include "live/live_requests.h"
#include "live/request_buffer.h"
#include "survey_run.h"

namespace tarvo {

namespace {

class NoPipe : public PipeEndpoint {
public:
    std::optional<PipeFault> listen(const std::string&) override { return std::nullopt; }
    void close() override {}
    bool is_in_place() const override { return true; }
    int client_count() const override { return 1; }
};

class NoLiveDisplay : public LiveDisplay {
public:
    void show_pipe_caption(const std::string&) override {}
    void append_echo(const std::string&) override {}
    void empty_echo_box() override {}
    void show_status_text(const std::string&) override {}
};

} // namespace

// The bytes of one sender to a monitor that listens and records nothing.
void take_live_requests(std::string_view input)
{
    SurveyRun run("");
    NoPipe pipe;
    NoLiveDisplay shown;
    LiveClock::time_point now = LiveClock::time_point(std::chrono::hours(1));
    LiveRequests live(run.survey(), run.session.driver, run.op, pipe, shown, [&now] { return now; });
    live.Command_UDP_receive();
    RequestBuffer buffer;
    buffer.append(input);
    buffer.end();
    while (!buffer.is_too_long()) {
        const auto request = buffer.next();
        if (!request) break;
        live.handle_request(std::as_bytes(std::span(request->text)));
        now += std::chrono::milliseconds(100);
        live.look_after();
    }
    live_status_text(live.status());
    run.make_products();
}

} // namespace tarvo

#pragma once

#include "core_load.h"
#include "live/live_requests.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

namespace tarvo {

class FakePipe : public PipeEndpoint {
public:
    std::optional<PipeFault> fault;
    std::string name; // empty: closed
    bool in_place = true;

    std::optional<PipeFault> listen(const std::string& wanted) override
    {
        if (!fault) name = wanted;
        return fault;
    }
    void close() override { name.clear(); }
    bool is_in_place() const override { return in_place; }
    int client_count() const override { return name.empty() ? 0 : 1; }
};

class FakeLiveDisplay : public LiveDisplay {
public:
    std::string caption = "Listen for UDP";
    std::vector<std::string> echo;
    std::string status_text;

    void show_pipe_caption(const std::string& shown) override { caption = shown; }
    void append_echo(const std::string& text) override { echo.push_back(text); }
    void empty_echo_box() override { echo.clear(); }
    void show_status_text(const std::string& text) override { status_text = text; }
};

// A monitor without a window, its live side on a pipe that only keeps the name; `pipe` may stand in for it.
struct LiveMonitor {
    explicit LiveMonitor(PipeEndpoint* pipe = nullptr)
        : live(session.survey, session.driver, op, pipe != nullptr ? *pipe : fake_pipe, shown, [this] { return now; })
    {
    }

    std::string send(const std::string& request) { return live.handle_request(std::as_bytes(std::span(request))); }

    // Describes a survey of five columns and begins its live run.
    void begin_run()
    {
        send("$GDP1001 time,east,north,depth,mag");
        send("$GDP1003 Time:time,East:east,North:north,Depth:depth");
        send("$GDP1004 1 1 0");
        send("$GDP2000 TMI:mag");
        EXPECT_EQ(send("$GDP3000"), "OK");
    }

    void send_line(int second)
    {
        send("$GDP0001 " + std::to_string(second) + ".0," + std::to_string(100 + second) + ",200,5,48000.5");
    }

    // Everything recorded so far is on the disk; the recording's name.
    std::string recorded()
    {
        EXPECT_TRUE(live.recording().wait_until_settled());
        return live.recording().data_file_name();
    }

    const SampleProcessing& run() const { return session.survey.processing; }

    FakeOperator op;
    FakeRunDisplay display;
    FakePickDisplay picks;
    Session session{op, display, picks};
    FakePipe fake_pipe;
    FakeLiveDisplay shown;
    const RunControls& controls() const { return display.controls.back(); }

    LiveClock::time_point now = LiveClock::time_point(std::chrono::hours(1));
    LiveRequests live;
};

} // namespace tarvo

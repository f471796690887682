#include "definitions/definitions_file.h"
#include "live_monitor.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(LiveReplies, EveryKindOfRequestHasItsAnswerAndItsEcho)
{
    struct Case {
        const char* label;
        std::string request;
        const char* reply;
        bool echoed;
    };
    const Case cases[] = {
        {"nothing", "", "Invalid Request", true},
        {"half a tag", "$GD", "Invalid Request", true},
        {"small letters", "$gdp0001 1", "Invalid Request", true},
        {"blank before the tag", " $GDP0999", "Invalid Request", true},
        {"tag alone", "$GDP", "Invalid Request Code", true},
        {"letters for the code", "$GDPabcd 1", "Invalid Request Code", true},
        {"a digit is a letter", "$GDP00O1 1", "Invalid Request Code", true},
        {"code of no meaning", "$GDP0999 x", "OK", true},
        {"code that is not whole", "$GDP0.51 x", "OK", true},
        {"code beyond every integer", "$GDP9e99 x", "OK", true},
        {"data line before a run", "$GDP0001 1,2,3", "OK", false},
        {"data line without payload", "$GDP0001", "OK", false},
        {"code 1 in short", "$GDP1", "OK", true},
        {"end without a run", "$GDP0000 ", "OK", true},
        {"text without a run", "$GDP0002 hello", "OK", true},
        {"noise", std::string("\0\xff\n\x80$GDP", 8), "Invalid Request", true},
        {"more sensors than can be described", "$GDP1004 101 1 0", "OK", true},
        {"sensor beyond the count", "$GDP2001 TMI:mag", "OK", true},
        {"nothing to locate", "$GDP3000", "Bad Header", true},
    };
    for (const Case& c : cases) {
        LiveMonitor monitor;
        const SurveyDefinitions before = monitor.session.survey.survey_definitions;
        EXPECT_EQ(monitor.send(c.request), c.reply) << c.label;
        EXPECT_EQ(monitor.shown.echo, c.echoed ? std::vector{c.request} : std::vector<std::string>()) << c.label;
        EXPECT_EQ(monitor.session.survey.survey_definitions, before) << c.label;
        EXPECT_EQ(monitor.run().lines_read, 0) << c.label;
        EXPECT_EQ(monitor.shown.status_text, "") << c.label;
    }
}

TEST(LiveDefinitions, RequestsDescribeTheSurvey)
{
    LiveMonitor monitor;
    monitor.send("$GDP1001 a ,B, ,Depth 1,x,y,z");
    EXPECT_EQ(monitor.session.survey.header_columns.names(),
              (std::vector<std::string>{"a", "B", "", "Depth 1", "x", "y", "z"}));
    monitor.send("$GDP1001 # a  B\tc;d");
    EXPECT_EQ(monitor.session.survey.header_columns.names(), (std::vector<std::string>{"a", "B", "c;d"}));

    monitor.send("$GDP1002 0.3048006096012192;2.5 1");
    monitor.send("$GDP1002 0 -2.5 none"); // nothing of it can be taken
    monitor.send("$GDP1003 time : t:1 ,EAST:e, nonsense:q,Depth");
    monitor.send("$GDP1004 2 3 1");
    monitor.send("$GDP2001 tx:-Bx, Ty:By ,TZ:- Bz,X:x1,z:z1,Offset:-1500.25,Length:1e3,rotation:ninety");
    const SurveyDefinitions& definitions = monitor.session.survey.survey_definitions;
    EXPECT_EQ(definitions.coordinate_scale, 0.3048006096012192);
    EXPECT_EQ(definitions.depth_scale, 2.5);
    EXPECT_EQ(definitions.flip_depth_sign, 1);
    monitor.send("$GDP1002 1 1.5 5"); // the sign that an old file's scale leads to
    EXPECT_EQ(definitions.depth_scale, 1.5);
    EXPECT_EQ(definitions.flip_depth_sign, 0);
    EXPECT_EQ(definitions.fields[kTime].name, "t:1");
    EXPECT_EQ(definitions.fields[kEast].name, "e");
    EXPECT_EQ(definitions.fields[kDepth].name, "N/A");
    const SensorDefinition& sensor = definitions.sensors.at(2);
    EXPECT_EQ(sensor.component_columns, (std::array<std::string, 4>{"N/A", "Bx", "By", "Bz"}));
    EXPECT_EQ(sensor.flip_sign, (std::array<std::int32_t, 4>{0, 1, 0, 1}));
    EXPECT_EQ(sensor.coordinate_columns, (std::array<std::string, 4>{"N/A", "x1", "N/A", "z1"}));
    EXPECT_EQ(sensor.lever_arm, (std::array<double, 6>{0, 0, -1500.25, 0, 1000, 0}));

    for (const char* refused : {"0 1 0", "1001 1 0", "1 2 0", "1 1 2", "1 1", "", "1e12 1 0"}) {
        monitor.send(std::string("$GDP1004 ") + refused);
        EXPECT_EQ(definitions.number_of_sensors, 2) << refused;
    }
    monitor.send("$GDP1004 100 1 0");
    EXPECT_EQ(definitions.sensors.size(), 101U);
}

TEST(LiveRun, RequestsBeginAndEndRuns)
{
    LiveMonitor monitor;
    monitor.live.Command_UDP_receive();
    const auto is_live = [&monitor] { return monitor.session.driver.state().pipe_logging_active; };
    const auto is_locked = [&monitor] {
        const RunControls& shown = monitor.controls();
        return !shown.start_enabled && !shown.file_controls_enabled && !shown.profile_controls_enabled;
    };
    EXPECT_TRUE(is_locked());
    EXPECT_TRUE(monitor.controls().moving_anomalies_enabled);

    monitor.begin_run();
    EXPECT_TRUE(is_live());
    EXPECT_FALSE(monitor.controls().moving_anomalies_enabled);
    for (int second = 0; second < 30; ++second) monitor.send_line(second);
    EXPECT_EQ(monitor.run().lines_read, 30);
    EXPECT_EQ(monitor.run().store.RecordCount, 15); // the line that closes a bin goes into none
    EXPECT_EQ(monitor.send("$GDP0002 tow fish aboard"), "OK");
    EXPECT_EQ(monitor.shown.status_text, "tow fish aboard");

    EXPECT_EQ(monitor.send("$GDP0000 "), "OK");
    EXPECT_FALSE(is_live());
    EXPECT_EQ(monitor.display.finished_runs, 1);
    EXPECT_EQ(monitor.run().store.gradient_records, monitor.run().store.RecordCount);
    monitor.send_line(31);
    EXPECT_EQ(monitor.run().lines_read, 30);
    EXPECT_EQ(monitor.fake_pipe.name, "Tarvo_Server"); // it listens on, locked
    EXPECT_TRUE(is_locked());
    EXPECT_TRUE(monitor.controls().moving_anomalies_enabled);

    EXPECT_EQ(monitor.send("$GDP3000 "), "OK");
    EXPECT_EQ(monitor.run().store.RecordCount, 0);
    monitor.send_line(1);
    EXPECT_EQ(monitor.send("$GDP3000 "), "OK"); // the track so far is finished, a new run begins
    EXPECT_EQ(monitor.display.finished_runs, 2);
    EXPECT_EQ(monitor.run().lines_read, 0);
    monitor.send("$GDP0000");
    int runs = 3;
    for (const char* definition :
         {"1001 time,mag", "1002 1 1 0", "1003 Time:time", "1004 1 1 0", "2000 TMI:mag", "2099 TMI:mag"}) {
        monitor.send("$GDP3000");
        monitor.send(std::string("$GDP") + definition);
        EXPECT_FALSE(is_live()) << definition;
        EXPECT_EQ(monitor.display.finished_runs, ++runs) << definition;
    }
}

TEST(LiveRun, AHeaderOfAnotherSurveyIsRefused)
{
    LiveMonitor monitor;
    monitor.begin_run();
    EXPECT_TRUE(monitor.op.messages.empty());
    monitor.send("$GDP1001 x,y,z");
    EXPECT_EQ(monitor.send("$GDP3000"), "Bad Header");
    EXPECT_FALSE(monitor.session.driver.state().pipe_logging_active);
    ASSERT_EQ(monitor.op.messages.size(), 1U); // all in one box
    const std::string start = "The data definitions are invalid\nThe Time column was not found; ";
    EXPECT_TRUE(monitor.op.messages[0].starts_with(start)) << monitor.op.messages[0];
    monitor.send("$GDP1001 x,mag");
    EXPECT_EQ(monitor.send("$GDP3000"), "OK"); // one column is enough
    monitor.op.messages.clear();
    for (const char* const line : {"", "1,2,3", "4"}) monitor.send(std::string("$GDP0001 ") + line);
    EXPECT_EQ(monitor.op.messages,
              std::vector<std::string>{"The header names 2 columns, the first data line holds 3 fields"});
}

TEST(ListenButton, OpensAndClosesThePipe)
{
    LiveMonitor monitor;
    monitor.fake_pipe.fault = PipeFault{98, "Address already in use"};
    monitor.live.Command_UDP_receive();
    EXPECT_EQ(monitor.op.messages,
              std::vector<std::string>{"There was an error setting up the pipe: 98: Address already in use"});
    EXPECT_EQ(monitor.shown.caption, "Listen for UDP");
    EXPECT_FALSE(monitor.live.is_listening());

    monitor.fake_pipe.fault.reset();
    monitor.session.survey.data_file_name = "bay.csv";
    append_pick(monitor.session.survey.picks, {"Wreck 1"});
    monitor.session.survey.picks.is_unsaved = true;
    monitor.op.answer = false;
    monitor.live.Command_UDP_receive();
    EXPECT_FALSE(monitor.live.is_listening()) << "the operator keeps the picks";
    monitor.op.answer = true;

    monitor.shown.echo = {"of earlier"};
    monitor.live.Command_UDP_receive();
    EXPECT_EQ(monitor.fake_pipe.name, "Tarvo_Server");
    EXPECT_EQ(monitor.shown.caption, "Close UDP Pipe");
    EXPECT_TRUE(monitor.shown.echo.empty());
    monitor.begin_run();
    monitor.live.Command_UDP_receive(); // nothing was stored: the box is emptied
    EXPECT_TRUE(monitor.shown.echo.empty());
    EXPECT_EQ(monitor.display.finished_runs, 1);

    monitor.live.Command_UDP_receive();
    monitor.begin_run();
    for (int second = 0; second < 9; ++second) monitor.send_line(second);
    monitor.live.Command_UDP_receive();
    EXPECT_EQ(monitor.shown.echo.size(), 5U);
    EXPECT_EQ(monitor.fake_pipe.name, "");
    EXPECT_EQ(monitor.shown.caption, "Listen for UDP");
    EXPECT_EQ(monitor.display.finished_runs, 2);
    EXPECT_TRUE(monitor.controls().start_enabled && monitor.controls().profile_controls_enabled &&
                monitor.controls().file_controls_enabled);
}

TEST(ListenButton, ASocketThatIsRemovedIsMadeAnewAndToldOnce)
{
    LiveMonitor monitor;
    monitor.live.Command_UDP_receive();
    const auto look = [&monitor] {
        monitor.op.messages.clear();
        monitor.now += std::chrono::seconds(5);
        monitor.live.look_after();
        return monitor.op.messages.empty() ? "" : monitor.op.messages[0];
    };
    EXPECT_EQ(look(), "");
    monitor.fake_pipe.in_place = false;
    monitor.fake_pipe.fault = PipeFault{13, "no folder"};
    EXPECT_EQ(look(), "The pipe's socket is gone, and nobody new can connect: no folder");
    EXPECT_EQ(look(), "");
    monitor.fake_pipe.fault.reset();
    EXPECT_EQ(look(), "The pipe's socket was removed. Tarvo listens on a new one");
    monitor.fake_pipe.in_place = true;
    EXPECT_EQ(look(), "");
}

TEST(LeavingWithoutAnOperator, KeepsLinesAndPicksAndHangsUp)
{
    const TestFolder folder;
    LiveMonitor monitor;
    monitor.live.set_recording_folder(folder.path("r"));
    monitor.live.Command_UDP_receive();
    monitor.begin_run();
    monitor.send_line(1);
    append_pick(monitor.session.survey.picks, {"Wreck 1"});
    monitor.session.survey.picks.is_unsaved = true;
    monitor.live.leave(monitor.op);
    EXPECT_EQ(monitor.fake_pipe.name, "");
    const std::string file = monitor.live.recording().data_file_name();
    EXPECT_EQ(std::filesystem::file_size(file),
              std::string("time,east,north,depth,mag\r\n1.0,101,200,5,48000.5\r\n").size());
    EXPECT_TRUE(std::filesystem::exists(pick_file_name_for(file)));
    EXPECT_TRUE(monitor.op.questions.empty());
}

TEST(ListenButton, EndsTheFileRunThatItIsPressedInUnlessItCannotListen)
{
    const TestFolder folder;
    std::string data = "time,east,north,depth,mag\n";
    for (int second = 0; second < 100; ++second) data += std::to_string(second) + ",1,2,3,48000\n";
    LiveMonitor monitor;
    monitor.begin_run();
    folder.write("a.def", exact_definitions_text(monitor.session.survey.survey_definitions, 1));
    monitor.send("$GDP0000");
    monitor.session.survey.data_file_name = folder.write("a.csv", data);
    std::int64_t lines = 0;
    monitor.display.at_line = [&](std::int64_t read) {
        lines = read;
        if (read == 50) monitor.live.Command_UDP_receive();
    };
    monitor.fake_pipe.fault = PipeFault{98, "in use"};
    EXPECT_EQ(monitor.session.driver.Command_start_logging(StartButton::load_or_pause), kEndOfData);
    EXPECT_EQ(monitor.run().lines_read, 100) << "the file run goes on";
    monitor.fake_pipe.fault.reset();
    const int finished_runs = monitor.display.finished_runs;
    monitor.session.driver.Command_start_logging(StartButton::load_or_pause);
    EXPECT_EQ(lines, 50);
    EXPECT_EQ(monitor.display.finished_runs, finished_runs);
    EXPECT_EQ(monitor.run().lines_read, 0);
    EXPECT_EQ(monitor.session.driver.Command_start_logging(StartButton::load_or_pause), 0); // locked
    monitor.begin_run();
    monitor.send_line(1);
    EXPECT_EQ(monitor.run().lines_read, 1);
}

TEST(LiveStatus, TellsRateAndSilence)
{
    LiveMonitor monitor;
    EXPECT_EQ(live_status_text(monitor.live.status()), "Not listening");
    monitor.live.Command_UDP_receive();
    EXPECT_EQ(live_status_text(monitor.live.status()), "Listening, 1 client");
    monitor.begin_run();
    EXPECT_EQ(live_status_text(monitor.live.status()), "Live: 0 lines/s, no line yet, 0 rejected, 1 client");
    monitor.now += std::chrono::seconds(5);
    EXPECT_TRUE(monitor.live.status().is_overdue()) << "the sender never began";
    for (int line = 0; line < 600; ++line) {
        monitor.now += std::chrono::milliseconds(5);
        monitor.send_line(line / 200);
    }
    monitor.send("$GDP0001 no time");
    EXPECT_EQ(live_status_text(monitor.live.status()), "Live: 200 lines/s, last line 0.0 s ago, 1 rejected, 1 client");
    monitor.now += std::chrono::milliseconds(4999);
    EXPECT_FALSE(monitor.live.status().is_overdue());
    EXPECT_EQ(monitor.live.status().lines_per_second, 0);
    monitor.now += std::chrono::milliseconds(1);
    EXPECT_TRUE(monitor.live.status().is_overdue());
    monitor.send("$GDP0000");
    EXPECT_FALSE(monitor.live.status().is_overdue());
}

} // namespace tarvo

#include "tools/forwarder.h"

#include "live/pipe_server.h"
#include "live_monitor.h"
#include "test_folder.h"
#include "tools/forward_survey.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <thread>

namespace tarvo {

namespace {

using namespace std::chrono_literals;

// A monitor behind a pipe.
struct PipeMonitor {
    explicit PipeMonitor(const std::string& path)
    {
        EXPECT_FALSE(server.listen(path));
        monitor.live.Command_UDP_receive();
    }

    template <class Condition>
    void serve_until(Condition done)
    {
        const auto deadline = LiveClock::now() + 60s;
        while (!done() && LiveClock::now() < deadline) {
            pollfd waited = {server.descriptor(), POLLIN, 0};
            poll(&waited, 1, 10);
            server.serve(5ms);
        }
        EXPECT_TRUE(done());
    }

    bool is_live() const { return monitor.session.driver.state().pipe_logging_active; }

    LiveMonitor monitor;
    PipeServer server{[this](std::span<const std::byte> request) { return monitor.live.handle_request(request); }};
};

// tarvo-forward in a thread of its own.
class RunningForwarder {
public:
    explicit RunningForwarder(const ForwardOptions& options)
        : thread_([this, options] {
              status = forward_survey(options, stop_);
              ended = true;
          })
    {
    }
    ~RunningForwarder()
    {
        stop();
        thread_.join();
        close(stop_);
    }

    void stop() const
    {
        const std::uint64_t one = 1;
        EXPECT_EQ(write(stop_, &one, sizeof one), 8);
    }

    std::atomic<int> status = -1;
    std::atomic<bool> ended = false;

private:
    int stop_ = eventfd(0, 0);
    std::thread thread_;
};

constexpr const char* kDefinitions = "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1.0\n"
                                     "Depth Data Scale : 1.0 0\n\nNumber of Fish Data Fields : 3 2\n\n1: t\n\n2: e\n\n"
                                     "3: n\n\nNumber of Sensors : 1\nNumber of Components per Sensor : 1\n"
                                     "Read Sensor Location: No\n\nSensor Number 1\nOffset: 100\nArm: 200\n"
                                     "Rotation: 30\nSensor Component 1: m\n";

// A survey of so many lines, one of them longer than a request, and how to forward it.
ForwardOptions written_survey(const TestFolder& folder, int lines)
{
    std::string data = "made for a test\n/ t e n m\n";
    for (int line = 0; line < lines; ++line) {
        data += std::to_string(line / 5) + " 1" + std::to_string(line % 97) + " 2 4" + std::to_string(line % 89) + "\n";
        if (line == 7) data += std::string(kLongestRequest, ' ') + "x\n";
    }
    folder.write("s.def", kDefinitions);
    ForwardOptions options;
    options.data_file = folder.write("s.csv", data);
    options.pipe_name = folder.path("pipe");
    return options;
}

// Of this computer alone, and free a moment ago.
sockaddr_in free_port()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const Descriptor probe(socket(AF_INET, SOCK_DGRAM, 0));
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(probe.number(), reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(getsockname(probe.number(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    return address;
}

void send_datagram(const Descriptor& sender, const std::string& datagram, const sockaddr_in& address)
{
    sendto(sender.number(), datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address),
           sizeof address);
}

} // namespace

TEST(ForwardedFile, StoresTheSameSamplesAsALoad)
{
    const TestFolder folder;
    const ForwardOptions options = written_survey(folder, 3000);
    const RunningForwarder forwarder(options); // waits for the monitor
    PipeMonitor monitor(options.pipe_name);
    monitor.serve_until([&] { return forwarder.ended.load(); });
    EXPECT_EQ(forwarder.status, 0);
    EXPECT_FALSE(monitor.is_live());
    EXPECT_EQ(stored_samples(monitor.monitor.run()), loaded_samples(options.data_file));
    EXPECT_GT(monitor.monitor.run().store.RecordCount, 100);
}

TEST(ForwardedFile, GoesOnWithAMonitorThatIsStartedAgain)
{
    const TestFolder folder;
    ForwardOptions options = written_survey(folder, 2000);
    options.rate = 20'000;
    const RunningForwarder forwarder(options);
    std::int64_t lines_read = 0;
    {
        PipeMonitor killed(options.pipe_name);
        killed.serve_until([&] { return killed.monitor.run().lines_read >= 500; });
        lines_read = killed.monitor.run().lines_read;
    }
    PipeMonitor started_again(options.pipe_name);
    started_again.serve_until([&] { return forwarder.ended.load(); });
    EXPECT_EQ(forwarder.status, 0);
    EXPECT_EQ(lines_read + started_again.monitor.run().lines_read, 2001);
    EXPECT_GT(started_again.monitor.run().store.RecordCount, 50);
}

TEST(ForwardedFile, AStopEndsTheLiveRun)
{
    const TestFolder folder;
    ForwardOptions options = written_survey(folder, 1000);
    options.rate = 10;
    PipeMonitor monitor(options.pipe_name);
    const RunningForwarder forwarder(options);
    monitor.serve_until([&] { return monitor.monitor.run().lines_read >= 1; });
    EXPECT_TRUE(monitor.is_live());
    forwarder.stop();
    monitor.serve_until([&] { return forwarder.ended.load(); });
    EXPECT_FALSE(monitor.is_live());
    EXPECT_EQ(forwarder.status, 0);
}

TEST(ForwardedFile, DefinitionsThatTheMonitorRefusesEndIt)
{
    const TestFolder folder;
    ForwardOptions options = written_survey(folder, 10);
    options.header_line = 3; // a line of data
    PipeMonitor monitor(options.pipe_name);
    const RunningForwarder forwarder(options);
    monitor.serve_until([&] { return forwarder.ended.load(); });
    EXPECT_EQ(forwarder.status, 1);
}

TEST(ForwardedDatagrams, BecomeLines)
{
    const TestFolder folder;
    ForwardOptions options = written_survey(folder, 0);
    options.definitions_file = folder.path("s.def");
    options.data_file.clear();
    options.columns = "t; e;n ;m"; // as a header line may be
    const sockaddr_in address = free_port();
    options.udp_port = ntohs(address.sin_port);
    const Descriptor sender(socket(AF_INET, SOCK_DGRAM, 0));
    PipeMonitor monitor(options.pipe_name);
    const RunningForwarder forwarder(options);
    monitor.serve_until([&] { return monitor.is_live(); });
    for (const std::string datagram : {"1,1,2,48000", "2,1,2,48001\r\n", "3,1,2,4\n4,1,2,5\n", "no time"}) {
        send_datagram(sender, datagram, address);
    }
    monitor.serve_until([&] { return monitor.monitor.run().lines_read == 5; });
    EXPECT_EQ(monitor.monitor.run().lines_rejected, 1);
    forwarder.stop();
    monitor.serve_until([&] { return forwarder.ended.load(); });
}

TEST(ForwardedDatagrams, LinesOfOneSenderAreJoinedOnceItEndsThem)
{
    struct Step {
        int sender;
        int milliseconds; // before it
        const char* datagram;
    };
    struct Case {
        const char* label;
        std::vector<Step> steps;
        std::string lines; // "|" behind each
        int unfinished;
    };
    const Case cases[] = {
        {"no line feeds at all", {{0, 0, "a"}, {0, 0, "b"}}, "a|b|", 0},
        {"a line in two", {{0, 0, "a\n"}, {0, 0, "b,"}, {0, 999, "c\r\n"}}, "a|b,c|", 0},
        {"in three, with more", {{0, 0, "a\n"}, {0, 0, "b\nc"}, {0, 600, "d"}, {0, 300, "e\nf\n"}}, "a|b|cde|f|", 0},
        {"a second is over", {{0, 0, "a\n"}, {0, 0, "b"}, {0, 1000, "c\n"}}, "a|b|c|", 0},
        {"of two senders", {{0, 0, "a\n"}, {1, 0, "x"}, {0, 0, "b"}, {1, 0, "y"}, {0, 0, "c\n"}}, "a|x|y|bc|", 0},
        {"nothing follows yet", {{0, 0, "a\n"}, {0, 0, "b"}, {1, 999, "x"}}, "a|x|", 1},
        {"nothing follows", {{0, 0, "a\n"}, {0, 0, "b"}, {1, 1000, "x"}}, "a|x|b|", 0},
    };
    for (const Case& c : cases) {
        const sockaddr_in address = free_port();
        LiveClock::time_point now = LiveClock::time_point(1h);
        UdpLines lines("127.0.0.1", ntohs(address.sin_port), [&now] { return now; });
        const std::array senders = {Descriptor(socket(AF_INET, SOCK_DGRAM, 0)),
                                    Descriptor(socket(AF_INET, SOCK_DGRAM, 0))};
        std::string found;
        for (const Step& step : c.steps) {
            now += std::chrono::milliseconds(step.milliseconds);
            send_datagram(senders.at(static_cast<std::size_t>(step.sender)), step.datagram, address);
            lines.collect();
            for (; lines.line(); lines.drop_line()) found += std::string(*lines.line()) + '|';
        }
        EXPECT_EQ(found, c.lines) << c.label;
        EXPECT_EQ(lines.lines_waiting(), c.unfinished) << c.label;
        EXPECT_EQ(lines.deadline().has_value(), c.unfinished > 0) << c.label;
    }
}

TEST(ForwardedDatagrams, ThoseThatTheSystemDroppedAreLost)
{
    const sockaddr_in address = free_port();
    UdpLines lines("127.0.0.1", ntohs(address.sin_port));
    const Descriptor sender(socket(AF_INET, SOCK_DGRAM, 0));
    constexpr std::int64_t kSent = 1000; // 60 MB
    for (std::int64_t line = 0; line < kSent; ++line) send_datagram(sender, std::string(60'000, 'x'), address);
    lines.collect();
    EXPECT_EQ(lines.lines_waiting() + lines.lines_lost(), kSent);
    EXPECT_GT(lines.lines_lost(), 0);
}

TEST(ForwardedDatagrams, WaitingLinesAreBoundedAndTheNewestAreKept)
{
    const sockaddr_in address = free_port();
    UdpLines lines("127.0.0.1", ntohs(address.sin_port));
    const Descriptor sender(socket(AF_INET, SOCK_DGRAM, 0));
    constexpr std::int64_t kSent = 1500; // 90 MB
    for (std::int64_t line = 1; line <= kSent; ++line) {
        send_datagram(sender, std::to_string(line) + std::string(60'000, ' '), address);
        lines.collect();
    }
    EXPECT_EQ(lines.lines_waiting() + lines.lines_lost(), kSent);
    EXPECT_GT(lines.lines_lost(), 300);
    EXPECT_GT(lines.lines_waiting(), 1000);
    EXPECT_EQ(std::stoll(std::string(*lines.line())), lines.lines_lost() + 1);
}

} // namespace tarvo

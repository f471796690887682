#include "live/pipe_server.h"

#include "live/pipe_client.h"
#include "test_folder.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tarvo {

namespace {

using namespace std::chrono_literals;

// A variable of the environment with another value, for one test.
class Setting {
public:
    Setting(const char* name, const std::string& value) : name_(name)
    {
        if (const char* const before = std::getenv(name)) before_ = before;
        setenv(name, value.c_str(), 1);
    }
    ~Setting() { before_ ? setenv(name_, before_->c_str(), 1) : unsetenv(name_); }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

// A server that answers "<request>", and clients of it, all in one thread.
class PipeServerTest : public testing::Test {
protected:
    PipeServerTest() { EXPECT_FALSE(server.listen(path)); }

    Descriptor client()
    {
        Descriptor socket = connect_to(path);
        serve();
        return socket;
    }

    // Serves until nothing is left to do.
    void serve()
    {
        pollfd waited = {server.descriptor(), POLLIN, 0};
        while (server.serve(100ms) || poll(&waited, 1, 0) > 0) {}
    }

    void send_bytes(const Descriptor& socket, std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t sent = send(socket.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
            if (sent < 0 && errno != EAGAIN) return; // the server has hung up
            serve();
        }
    }

    // What has come; "|" stands for the hanging up.
    std::string received(const Descriptor& socket)
    {
        serve();
        std::string text;
        char bytes[4096];
        ssize_t count = 0;
        while ((count = recv(socket.number(), bytes, sizeof bytes, 0)) > 0) {
            text.append(bytes, static_cast<std::size_t>(count));
            serve();
        }
        return errno == EAGAIN && count < 0 ? text : text + '|';
    }

    void end_sending(const Descriptor& socket) { shutdown(socket.number(), SHUT_WR); }

    TestFolder folder;
    std::string path = folder.path("pipe");
    std::vector<std::string> requests;
    std::function<void()> while_handling;
    PipeServer server{[this](std::span<const std::byte> bytes) {
        requests.push_back(ByteArrayToString(bytes));
        if (while_handling) while_handling();
        return '<' + requests.back() + '>';
    }};
};

} // namespace

TEST_F(PipeServerTest, RepliesEndAsTheirRequestsDo)
{
    struct Case {
        const char* label;
        std::string bytes;
        bool ends;
        std::string replies;
    };
    const std::string most(kLongestRequest, 'x');
    const Case cases[] = {
        {"a line", "a\n", false, "<a>\n"},
        {"lines at once", "a\r\nb\n\nc", false, "<a>\n<b>\n<>\n"},
        {"closing ends the request", "a", true, "<a>|"},
        {"lines, then closing", "a\nb", true, "<a>\n<b>|"},
        {"lines, then nothing", "a\n", true, "<a>\n|"},
        {"nothing", "", true, "|"},
        {"the longest", most + "\n", false, '<' + most + ">\n"},
        {"too long", "a\n" + most + "xx\nb\n", false, "<a>\nInvalid Request\n|"},
        {"too long, then closing", most + "x\n", true, "Invalid Request\n|"},
        {"noise", std::string("\xff\0\r\x01\n", 5), false, std::string("<\xff\0\r\x01>\n", 7)},
    };
    for (const Case& c : cases) {
        const Descriptor sender = client();
        send_bytes(sender, c.bytes);
        if (c.ends) end_sending(sender);
        EXPECT_EQ(received(sender), c.replies) << c.label;
        EXPECT_EQ(server.client_count(), c.replies.ends_with('|') ? 0 : 1) << c.label;
        if (c.ends) continue;
        end_sending(sender);
        received(sender);
    }
}

TEST_F(PipeServerTest, TenMillionBytesWithoutLineEndAreHungUpOnAndNotKept)
{
    const Descriptor sender = client();
    const std::string bytes(10'000'000, 'x');
    send_bytes(sender, bytes); // returns: the server stops reading, and says so
    EXPECT_EQ(received(sender), "Invalid Request\n|");
    EXPECT_TRUE(requests.empty());
}

TEST_F(PipeServerTest, SlowSilentAndVanishedClientsHoldNobodyUp)
{
    const Descriptor half = client();
    send_bytes(half, "half a req");
    const Descriptor deaf = client(); // never takes a reply
    const std::string line(1000, 'd');
    for (int sent = 0; sent < 2000; ++sent) {
        if (send(deaf.number(), (line + '\n').data(), line.size() + 1, MSG_NOSIGNAL) < 0) break;
        serve();
    }
    {
        const Descriptor vanished = client();
        send_bytes(vanished, "");
        send(vanished.number(), "counts\nthis too", 15, MSG_NOSIGNAL);
    }
    serve();
    EXPECT_EQ(requests.back(), "this too");
    const Descriptor other = client();
    send_bytes(other, "me\n");
    EXPECT_EQ(received(other), "<me>\n");
    EXPECT_LT(requests.size(), 2000U); // the deaf one is not heard further
    EXPECT_EQ(server.client_count(), 3);
    send_bytes(half, "uest\n");
    EXPECT_EQ(received(half), "<half a request>\n");
    const std::size_t served = requests.size();
    EXPECT_FALSE(received(deaf).empty()); // once it listens, it is heard again
    EXPECT_GT(requests.size(), served);
}

TEST_F(PipeServerTest, ClientsAreTurnedAwayWhileNoDescriptorIsLeft)
{
    const Descriptor early = connect_to(path);
    rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few = {256, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    std::vector<Descriptor> others;
    do {
        others.emplace_back(dup(early.number()));
    } while (others.back().is_open());
    EXPECT_EQ(received(early), "|");
    others.clear();
    setrlimit(RLIMIT_NOFILE, &before);
    const Descriptor late = client();
    send_bytes(late, "a\n");
    EXPECT_EQ(received(late), "<a>\n");
}

TEST_F(PipeServerTest, TwoHundredClientsAreServedInTurn)
{
    std::vector<Descriptor> clients;
    for (int number = 0; number < 200; ++number) clients.push_back(connect_to(path));
    for (const Descriptor& socket : clients) {
        const std::string name = std::to_string(socket.number());
        const std::string both = name + "\n" + name + "\n";
        ASSERT_EQ(send(socket.number(), both.data(), both.size(), 0), static_cast<ssize_t>(both.size()));
    }
    serve();
    ASSERT_EQ(requests.size(), 400U);
    for (std::size_t client_number = 0; client_number < 200; ++client_number) {
        const std::string name = std::to_string(clients[client_number].number());
        EXPECT_EQ(received(clients[client_number]), '<' + name + ">\n<" + name + ">\n");
    }
    // nobody's second request came before anybody's first
    std::sort(requests.begin(), requests.begin() + 200);
    EXPECT_EQ(std::unique(requests.begin(), requests.begin() + 200), requests.begin() + 200);
}

TEST_F(PipeServerTest, RequestsThatArriveWhileOneIsHandledWaitInOrder)
{
    const Descriptor first = client();
    const Descriptor second = client();
    bool nested = false;
    while_handling = [&] {
        if (nested) return;
        nested = true;
        ASSERT_EQ(send(second.number(), "b\nc\n", 4, 0), 4);
        ASSERT_EQ(send(first.number(), "d\n", 2, 0), 2);
        EXPECT_TRUE(server.serve(1ms));
        EXPECT_EQ(requests, std::vector<std::string>{"a"});
    };
    send_bytes(first, "a\n");
    EXPECT_EQ(received(second), "<b>\n<c>\n");
    EXPECT_EQ(received(first), "<a>\n<d>\n");
}

TEST_F(PipeServerTest, TheHandlerMayCloseThePipe)
{
    const Descriptor sender = client();
    while_handling = [this] { server.close(); };
    send_bytes(sender, "a\nb\n");
    EXPECT_EQ(received(sender), "|");
    EXPECT_EQ(requests, std::vector<std::string>{"a"});
    EXPECT_EQ(access(path.c_str(), F_OK), -1);
    while_handling = nullptr;
    EXPECT_FALSE(server.listen(path));
    const Descriptor next = client();
    send_bytes(next, "c\n");
    EXPECT_EQ(received(next), "<c>\n");
}

TEST_F(PipeServerTest, RepliesWaitForConsentWhichIsAskedOncePerPass)
{
    server.close();
    int asked = 0;
    bool consent = false;
    PipeServer asking([](std::span<const std::byte>) { return "done"; },
                      [&] {
                          ++asked;
                          return consent;
                      });
    EXPECT_FALSE(asking.listen(path));
    const Descriptor one = connect_to(path);
    const Descriptor other = connect_to(path);
    send_bytes(one, "a\nb\nc\n");
    send_bytes(other, "d\n");
    EXPECT_FALSE(asking.serve(1000ms)) << "they connect";
    EXPECT_TRUE(asking.serve(1000ms)) << "replies are left";
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(received(one) + received(other), "");
    consent = true;
    EXPECT_FALSE(asking.serve(1000ms));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(received(one), "done\ndone\ndone\n");
    EXPECT_EQ(received(other), "done\n");
}

TEST_F(PipeServerTest, KnowsWhenItsSocketIsGoneAndListensAnew)
{
    const Descriptor early = client();
    EXPECT_TRUE(server.is_in_place());
    std::filesystem::remove(path);
    EXPECT_FALSE(server.is_in_place());
    EXPECT_FALSE(server.listen(path));
    EXPECT_TRUE(server.is_in_place());
    const Descriptor late = client();
    for (const Descriptor* const sender : {&early, &late}) {
        send_bytes(*sender, "a\n");
        EXPECT_EQ(received(*sender), "<a>\n");
    }
    std::filesystem::remove(path);
    folder.write("pipe", "another's");
    server.close();
    EXPECT_EQ(folder.read("pipe"), "another's");
}

TEST_F(PipeServerTest, AFolderOfOthersIsRefused)
{
    namespace fs = std::filesystem;
    constexpr uid_t kStranger = 12345;
    const std::string own = folder.path("tarvo-" + std::to_string(geteuid())); // where a session has no folder for it
    const Setting runtime_folder("XDG_RUNTIME_DIR", "");
    const Setting temporary_folder("TMPDIR", folder.path(""));
    struct Case {
        const char* label;
        std::function<void()> spoil;
        std::string reason;
        bool for_root_alone;
    };
    const Case cases[] = {
        {"open to others", [&] { fs::permissions(own, fs::perms(0730)); }, "others can write to the folder ", false},
        {"a link",
         [&] {
             fs::rename(own, own + "_elsewhere");
             fs::create_directory_symlink(own + "_elsewhere", own);
         },
         "a link leads to the folder ", false},
        {"another user's", [&] { EXPECT_EQ(lchown(own.c_str(), kStranger, kStranger), 0); },
         "another user owns the folder ", true}};
    for (const Case& c : cases) {
        if (c.for_root_alone && geteuid() != 0) continue;
        fs::remove_all(own);
        fs::remove_all(own + "_elsewhere");
        const std::string pipe = pipe_path("pipe");
        EXPECT_EQ(pipe, own + "/pipe") << c.label;
        server.close();
        ASSERT_FALSE(server.listen(pipe)) << c.label;
        c.spoil();
        const auto begins = [&](const std::string& text) {
            return text.starts_with(c.reason + own) ? "" : c.label + (": " + text);
        };
        PipeServer second([](std::span<const std::byte>) { return ""; });
        const std::optional<PipeFault> fault = second.listen(own + "/other");
        EXPECT_EQ(begins(fault ? fault->text : "listens"), "");
        PipeClient forwarding(pipe);
        EXPECT_EQ(begins(forwarding.connect() ? "connected" : forwarding.fault()), "");
        EXPECT_THROW(pipe_path("pipe"), std::system_error) << c.label;
    }
    fs::remove_all(own);
    pipe_path("pipe");
    fs::permissions(own, fs::perms(0750)); // others could only look
    EXPECT_THROW(pipe_path("pipe"), std::system_error);
}

TEST_F(PipeServerTest, OneListensAtATime)
{
    PipeServer second([](std::span<const std::byte>) { return std::string("second"); });
    const std::optional<PipeFault> fault = second.listen(path);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->number, EADDRINUSE);
    EXPECT_EQ(fault->text, path + ": Address already in use");
    const Descriptor sender = client();
    send_bytes(sender, "a\n");
    EXPECT_EQ(received(sender), "<a>\n"); // the first is not disturbed
    server.close();
    EXPECT_FALSE(second.listen(path));
    second.close();

    const ListeningSocket other = listen_at(path + "2"); // that of another program, which knows of no lock
    unlink((path + "2.lock").c_str());
    EXPECT_EQ(server.listen(path + "2")->number, EADDRINUSE);
    EXPECT_EQ(server.listen("/nowhere/pipe")->number, ENOENT);
    EXPECT_EQ(server.listen(folder.path(std::string(200, 'p')))->number, ENAMETOOLONG);
}

TEST_F(PipeServerTest, ASocketLeftByACrashIsReplaced)
{
    server.close();
    {
        const ListeningSocket crashed = listen_at(path); // its end removes nothing
    }
    struct stat left = {};
    ASSERT_EQ(stat(path.c_str(), &left), 0);
    EXPECT_EQ(left.st_mode & 0777, 0600U); // this user's alone
    EXPECT_THROW(connect_to(path), std::system_error);
    EXPECT_FALSE(server.listen(path));
    const Descriptor sender = client();
    send_bytes(sender, "a\n");
    EXPECT_EQ(received(sender), "<a>\n");
}

} // namespace tarvo

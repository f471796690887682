#include "live/definition_requests.h"
#include "live/pipe_client.h"
#include "test_folder.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace tarvo {

namespace {

namespace fs = std::filesystem;

// The program itself, listening, with its pipe, settings and recordings in the test's folder.
pid_t listening_program(const TestFolder& folder)
{
    for (const char* const name : {"run", "config", "r"}) fs::create_directory(folder.path(name));
    fs::permissions(folder.path("run"), fs::perms::owner_all);
    folder.write("config/Quorvane.ini", "[Tarvo]\nRecordFolder=" + folder.path("r") + "\n");
    const pid_t process = fork();
    if (process != 0) return process;
    setenv("XDG_RUNTIME_DIR", folder.path("run").c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder.path("config").c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    execl(TARVO_PROGRAM, TARVO_PROGRAM, "--listen", static_cast<char*>(nullptr));
    _exit(127);
}

std::string reply_to(PipeClient& pipe, const std::string& request)
{
    pipe.begin_request(request);
    while (pipe.is_connected()) {
        if (const auto reply = pipe.take_reply()) return *reply;
        pollfd watched = {pipe.descriptor(), pipe.wanted_events(), 0};
        poll(&watched, 1, -1);
        pipe.work();
    }
    return "hung up";
}

std::string recorded_lines(const TestFolder& folder)
{
    for (const auto& entry : fs::directory_iterator(folder.path("r"))) {
        if (entry.path().extension() == ".csv") return folder.read("r/" + entry.path().filename().string());
    }
    return "";
}

} // namespace

TEST(EndSignals, LeaveEveryAcknowledgedLineAndNoSocket)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGKILL}) {
        const TestFolder folder;
        const pid_t process = listening_program(folder);
        PipeClient pipe(folder.path("run/Tarvo_Server"));
        while (!pipe.connect() && waitpid(process, nullptr, WNOHANG) == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        for (const char* const request : {"1001 time,mag", "1003 Time:time", "1004 1 1 0", "2000 TMI:mag", "3000"}) {
            EXPECT_EQ(reply_to(pipe, std::string("$GDP") + request), "OK");
        }
        std::string sent = "time,mag\r\n";
        for (int line = 1; line <= 300; ++line) {
            ASSERT_EQ(reply_to(pipe, request_text(kDataLine, std::to_string(line) + ",1")), "OK");
            sent += std::to_string(line) + ",1\r\n";
        }
        kill(process, signal);
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        EXPECT_EQ(recorded_lines(folder), sent) << signal;
        if (signal == SIGKILL) continue;
        EXPECT_TRUE(WIFEXITED(status)) << signal;
        EXPECT_EQ(WEXITSTATUS(status), 128 + signal);
        EXPECT_FALSE(fs::exists(folder.path("run/Tarvo_Server"))) << signal;
    }
}

} // namespace tarvo

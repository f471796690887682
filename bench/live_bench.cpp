// Measures a live survey: a sender in a process of its own sends the lines of a data file through the real pipe into
// the real window, which shows and records them, at a rate that does not wait for the window. Prints what became of
// the lines, how long replies and the window's own events took, and how the window's memory grew.
//
//     live_bench FILE.csv LINES_PER_SECOND [KEY=VALUE...]

#include "app/common/texts.h"
#include "app/window/main_window.h"
#include "definitions/definitions_file.h"
#include "live/live_requests.h"
#include "live/pipe_client.h"
#include "settings_in_memory.h"
#include "tools/common/console.h"
#include "tools/line_source.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using namespace tarvo;
using Clock = std::chrono::steady_clock;

// How often each time occurred, in steps of ten microseconds: the memory of an hour is that of a second.
class Times {
public:
    void add(double seconds)
    {
        const auto step = static_cast<std::size_t>(std::max(seconds, 0.0) * 1e5);
        ++counts_[std::min(step, counts_.size() - 1)];
        ++count_;
        longest_ = std::max(longest_, seconds);
    }
    double milliseconds_of_share(double share) const
    {
        std::int64_t left = static_cast<std::int64_t>(share * static_cast<double>(count_));
        std::size_t step = 0;
        while (step + 1 < counts_.size() && left >= counts_[step]) left -= counts_[step++];
        return static_cast<double>(step + 1) / 100;
    }
    double longest_milliseconds() const { return 1e3 * longest_; }

private:
    std::vector<std::int64_t> counts_ = std::vector<std::int64_t>(1'000'000);
    std::int64_t count_ = 0;
    double longest_ = 0;
};

void print(const char* what, const Times& times)
{
    std::printf("%s: half within %.2f ms, 99 %% within %.2f ms, longest %.1f ms\n", what,
                times.milliseconds_of_share(0.5), times.milliseconds_of_share(0.99), times.longest_milliseconds());
}

std::string reply_to(PipeClient& pipe, std::string_view request)
{
    pipe.begin_request(request);
    for (;;) {
        if (std::optional<std::string> reply = pipe.take_reply()) return *reply;
        if (!pipe.is_connected()) throw std::runtime_error("the monitor has hung up");
        pollfd watched = {pipe.descriptor(), pipe.wanted_events(), 0};
        poll(&watched, 1, -1);
        pipe.work();
    }
}

// The sender's process.
int send_survey(const std::string& file, double rate)
{
    ConsoleOperator op;
    SurveyDefinitions definitions;
    int header_line = 1;
    if (read_definitions(definitions_file_name_for(file), definitions, header_line, op).status < 0) return 1;
    HeaderReading reading = read_header_line(1, file, header_line, op);
    if (reading.status < 0) return 1;
    const HeaderColumns columns = header_columns_of(reading.header);
    FileLines lines(std::move(reading.stream));
    PipeClient pipe(kPipeName);
    while (!pipe.connect()) std::this_thread::sleep_for(std::chrono::milliseconds(100));
    for (const std::string& request : definition_requests(portable_survey(columns, definitions))) {
        if (reply_to(pipe, request) != "OK") return 1;
    }
    Times replies;
    std::int64_t sent = 0;
    std::int64_t refused = 0;
    const Clock::time_point begin = Clock::now();
    for (; const std::optional<std::string_view> line = lines.line(); lines.drop_line()) {
        const auto turn = begin + std::chrono::duration_cast<Clock::duration>(
                                      std::chrono::duration<double>(static_cast<double>(sent) / rate));
        if (Clock::now() < turn) std::this_thread::sleep_until(turn);
        const Clock::time_point asked = Clock::now();
        if (reply_to(pipe, request_text(kDataLine, *line)) != "OK") ++refused;
        replies.add(std::chrono::duration<double>(Clock::now() - asked).count());
        ++sent;
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    std::printf("%lld lines sent in %.1f s (%.0f lines/s), %lld refused\n", static_cast<long long>(sent), seconds,
                static_cast<double>(sent) / seconds, static_cast<long long>(refused));
    print("reply", replies);
    reply_to(pipe, request_text(kEndOfLiveData, ""));
    return 0;
}

double resident_bytes()
{
    std::ifstream numbers("/proc/self/statm");
    double whole = 0;
    double resident = 0;
    numbers >> whole >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// The window's process: shows the survey until the sender has ended, and works its view all the while.
class ShownSurvey {
public:
    explicit ShownSurvey(MainWindow& window) : window_(window)
    {
        // An operator's press, some times a second: how late it comes, and how long the window is busy with it.
        QObject::connect(&press_, &QTimer::timeout, &window, [this] { press_something(); });
        press_.setTimerType(Qt::PreciseTimer);
        press_.start(kPressInterval);
        since_press_.start();
    }

    void report(double bytes_at_begin) const
    {
        const SurveyState& survey = window_.survey();
        std::printf("%lld lines read, %lld rejected, %d samples stored\n",
                    static_cast<long long>(survey.processing.lines_read),
                    static_cast<long long>(survey.processing.lines_rejected), survey.processing.store.RecordCount);
        print("press waits", waits_);
        print("press works", works_);
        constexpr double kMebibyte = 1024.0 * 1024.0;
        std::printf("memory grew by %.1f MiB to %.1f MiB; the store has %.1f MiB\n",
                    (resident_bytes() - bytes_at_begin) / kMebibyte, resident_bytes() / kMebibyte,
                    static_cast<double>(store_bytes(survey.processing.store)) / kMebibyte);
    }

private:
    static constexpr int kPressInterval = 250; // milliseconds

    void press_something()
    {
        waits_.add(static_cast<double>(since_press_.nsecsElapsed()) * 1e-9 - kPressInterval * 1e-3);
        QElapsedTimer work;
        work.start();
        switch (++presses_ % 8) {
        case 0: window_.findChild<QAbstractButton*>(QStringLiteral("Option_whole_track"))->click(); break;
        case 2: window_.view().zoom_about(300, 200, 1.5); break;
        case 4: window_.view().drag(40, -25); break;
        case 5: window_.findChild<QAbstractButton*>(QStringLiteral("Command_fit_range"))->click(); break;
        case 6: window_.findChild<QAbstractButton*>(QStringLiteral("Option_follow_track"))->click(); break;
        default: break;
        }
        works_.add(static_cast<double>(work.nsecsElapsed()) * 1e-9);
        since_press_.start();
    }

    MainWindow& window_;
    QTimer press_;
    QElapsedTimer since_press_;
    int presses_ = 0;
    Times waits_;
    Times works_;
};

int show_survey(int argc, char** argv, pid_t sender, const std::string& recordings)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    SettingsInMemory settings;
    settings.values["RecordFolder"] = recordings;
    ConsoleOperator op;
    MainWindow window(settings, &op, {argv + std::min(argc, 3), argv + argc});
    window.resize(1280, 720);
    window.show();
    QApplication::processEvents();
    const double bytes_at_begin = resident_bytes();
    ShownSurvey shown(window);
    window.findChild<QAbstractButton*>(QStringLiteral("Command_UDP_receive"))->click();
    int status = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &application, [&] {
        if (waitpid(sender, &status, WNOHANG) != 0) QApplication::quit();
    });
    look.start(100);
    QApplication::exec();
    shown.report(bytes_at_begin);
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || std::atof(argv[2]) <= 0) {
        std::fputs("usage: live_bench FILE.csv LINES_PER_SECOND [KEY=VALUE...]\n", stderr);
        return 2;
    }
    std::string folder = (std::filesystem::temp_directory_path() / "live_bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) return 1;
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1); // the pipe's place
    const pid_t sender = fork();
    if (sender == 0) {
        int status = 1;
        try {
            status = send_survey(argv[1], std::atof(argv[2]));
        } catch (const std::exception& fault) {
            std::fprintf(stderr, "sender: %s\n", fault.what());
        }
        std::fflush(stdout);
        _exit(status);
    }
    const int status = show_survey(argc, argv, sender, folder);
    std::filesystem::remove_all(folder);
    return status == 0 ? 0 : 1;
}

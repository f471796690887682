// Measures the window against the core alone on one data file: time of a load, the longest time that an event waits
// during it, and the speed of a replay without delay that follows the track, with the profile graphs shown and hidden,
// and that scrolls. Times are the program's own (processor time), so that other work on the machine counts little.
//
//     window_bench FILE.csv [REPLAY_LINES [KEY=VALUE...]]

#include "app/common/texts.h"
#include "app/window/main_window.h"
#include "longest_wait.h"
#include "settings_in_memory.h"
#include "tools/common/console.h"

#include <QAction>
#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace tarvo;

double core_load(const std::string& file, const ProcessingParameters& parameters)
{
    ConsoleOperator op;
    ConsoleRunDisplay display(ConsoleRunDisplay::Progress::hidden);
    ConsolePickDisplay pick_display;
    Session session(op, display, pick_display);
    session.survey.data_file_name = file;
    session.survey.parameters = parameters;
    const double begin = seconds_used();
    session.driver.Command_start_logging(StartButton::load_or_pause);
    return seconds_used() - begin;
}

void measure_load(MainWindow& window, const std::string& file, LongestWait& wait)
{
    const double alone = core_load(file, window.survey().parameters);
    window.open_file(file);
    QApplication::processEvents();
    wait.restart();
    const double begin = seconds_used();
    window.press_start(StartButton::load_or_pause);
    const double used = seconds_used() - begin;
    QApplication::processEvents();
    wait.note();
    std::printf("load: core %.3f s, window %.3f s (%.2f times), longest wait of an event %.1f ms (%.1f ms of work)\n",
                alone, used, used / alone, wait.milliseconds(), wait.milliseconds_used());
}

double replay_lines_per_second(MainWindow& window, const std::string& file, std::int64_t lines, TrackMode mode)
{
    window.open_file(file);
    QTimer stop;
    QObject::connect(&stop, &QTimer::timeout, &window, [&] {
        if (mode == TrackMode::scroll && window.survey().track_image.mode != mode) window.view().scroll();
        if (window.survey().processing.lines_read >= lines) window.press_start(StartButton::replay_or_stop);
    });
    stop.start(0);
    const double begin = seconds_used();
    window.press_start(StartButton::replay_or_stop);
    return static_cast<double>(window.survey().processing.lines_read) / (seconds_used() - begin);
}

void measure_replay(MainWindow& window, const std::string& file, std::int64_t lines, LongestWait& wait)
{
    wait.restart();
    const double shown = replay_lines_per_second(window, file, lines, TrackMode::follow);
    const double longest = wait.milliseconds();
    const double scrolling = replay_lines_per_second(window, file, lines, TrackMode::scroll);
    window.findChild<QAction*>(QStringLiteral("menu_show_DisplayGraphs"))->setChecked(false);
    const double hidden = replay_lines_per_second(window, file, lines, TrackMode::follow);
    std::printf("replay: graphs shown %.0f lines/s, hidden %.0f lines/s (%.2f), scrolling %.0f lines/s, "
                "longest wait of an event %.1f ms\n",
                shown, hidden, shown / hidden, scrolling, longest);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: window_bench FILE.csv [REPLAY_LINES [KEY=VALUE...]]\n", stderr);
        return 2;
    }
    SettingsInMemory settings;
    ConsoleOperator op;
    MainWindow window(settings, &op, {argv + std::min(argc, 3), argv + argc});
    window.resize(1280, 720);
    window.show();
    QApplication::processEvents();
    LongestWait wait(&window);
    for (int turn = 0; turn < 3; ++turn) measure_load(window, argv[1], wait);
    measure_replay(window, argv[1], argc > 2 ? std::atoll(argv[2]) : 500000, wait);
    return 0;
}

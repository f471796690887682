// Measures background layers in the window: how long each takes from being opened until nothing is being read, how long
// an event waits meanwhile, and the frames of a view that is dragged about and of a replay that is followed with all of
// them under the track.
//
//     layer_bench FILE.csv LAYER...

#include "app/common/texts.h"
#include "app/window/layer_show.h"
#include "app/window/main_window.h"
#include "longest_wait.h"
#include "settings_in_memory.h"
#include "tools/common/console.h"

#include <QApplication>
#include <QMouseEvent>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

using namespace tarvo;

double milliseconds(const QElapsedTimer& clock)
{
    return 1e-6 * static_cast<double>(clock.nsecsElapsed());
}

void open_layer(MainWindow& window, const QString& file, LongestWait& wait)
{
    QElapsedTimer clock;
    wait.restart();
    clock.start();
    window.layers().open_files({file});
    constexpr double kRest = 300; // milliseconds in which nothing more is asked for
    double shown = 0;
    while (milliseconds(clock) < shown + kRest) {
        QApplication::processEvents();
        if (window.layers().layers().is_reading()) shown = milliseconds(clock);
    }
    std::printf("%s: shown after %.0f ms, longest wait of an event %.1f ms\n", qUtf8Printable(file), shown,
                wait.milliseconds());
}

void send_mouse(QWidget& widget, QEvent::Type type, QPointF place)
{
    QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

// Frames of 20 drags of 30 moves each over the enlarged view.
void measure_dragging(QWidget& track, LongestWait& wait)
{
    const QPointF middle = track.rect().center();
    QWheelEvent enlarge(middle, track.mapToGlobal(middle), {}, {0, 720}, Qt::NoButton, Qt::NoModifier,
                        Qt::NoScrollPhase, false);
    QApplication::sendEvent(&track, &enlarge);
    std::vector<double> frames;
    wait.restart();
    for (int drag = 0; drag < 20; ++drag) {
        send_mouse(track, QEvent::MouseButtonPress, middle);
        for (int move = 1; move <= 30; ++move) {
            QElapsedTimer clock;
            clock.start();
            const int way = drag % 2 == 0 ? move : -move;
            send_mouse(track, QEvent::MouseMove, middle + QPointF(5 * way, 3 * way));
            QApplication::processEvents();
            frames.push_back(milliseconds(clock));
        }
        send_mouse(track, QEvent::MouseButtonRelease, middle);
    }
    std::sort(frames.begin(), frames.end());
    std::printf(
        "dragging: frame %.1f ms, 99 of 100 within %.1f ms, longest %.1f ms, longest wait of an event %.1f ms\n",
        frames[frames.size() / 2], frames[frames.size() * 99 / 100], frames.back(), wait.milliseconds());
}

void measure_following(MainWindow& window, LongestWait& wait)
{
    window.findChild<QToolButton*>(QStringLiteral("Option_follow_track"))->click();
    wait.restart();
    const double begin = seconds_used();
    window.press_start(StartButton::replay_or_stop);
    const double lines = static_cast<double>(window.survey().processing.lines_read);
    std::printf("replay by Follow: %.0f lines/s, longest wait of an event %.1f ms (%.1f ms of work)\n",
                lines / (seconds_used() - begin), wait.milliseconds(), wait.milliseconds_used());
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: layer_bench FILE.csv LAYER...\n", stderr);
        return 2;
    }
    SettingsInMemory settings;
    ConsoleOperator op;
    MainWindow window(settings, &op);
    window.resize(1280, 720);
    window.show();
    window.open_file(argv[1]);
    window.press_start(StartButton::load_or_pause);
    LongestWait wait(&window);
    for (int layer = 2; layer < argc; ++layer) open_layer(window, QString::fromLocal8Bit(argv[layer]), wait);
    auto* const track = window.findChild<QWidget*>(QStringLiteral("Picture_data_track"));
    measure_dragging(*track, wait);
    measure_following(window, wait);
    return 0;
}

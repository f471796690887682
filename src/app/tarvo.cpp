#include "app/common/qt_settings_store.h"
#include "app/common/texts.h"
#include "app/common/window_manners.h"
#include "app/end_signals.h"
#include "app/window/launch_options.h"
#include "app/window/main_window.h"
#include "definitions/definitions_file.h"
#include "picks/pick_file.h"
#include "text/file_names.h"
#include "text/replace_file.h"
#include "text/terminal_text.h"
#include "tools/common/console.h"
#include "tools/common/exit_status.h"
#include "tools/common/version.h"

#include <QApplication>
#include <QBuffer>
#include <QSessionManager>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string_view>

namespace {

using namespace tarvo;

void save_picture(MainWindow& window, const std::string& file_name)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    window.grab().save(&buffer, "PNG");
    try {
        replace_file(file_name, bytes.toStdString());
        QApplication::exit(kDone);
    } catch (const std::exception& fault) {
        std::cerr << "tarvo: " << terminal_text(fault.what()) << '\n';
        QApplication::exit(kFailed);
    }
}

void start(MainWindow& window, const LaunchOptions& options)
{
    const bool is_attended = options.screenshot.empty();
    if (!is_attended && !options.data_file.empty() && !is_there(definitions_file_name_for(options.data_file))) {
        std::cerr << "tarvo: " << terminal_text(options.data_file)
                  << " has no definitions file beside it, or is not there\n";
        return QApplication::exit(kFailed); // a dialog would wait for somebody
    }
    if (options.listen) window.listen();
    if (is_attended && options.data_file.empty()) window.come_back();
    if (!options.data_file.empty()) window.open_file(options.data_file, options.header_line);
    // The definitions dialog of a file without definitions may have begun the run already.
    const bool has_begun =
        window.session().driver.state().any_run_active() || window.survey().processing.store.RecordCount > 0;
    if (options.start && !has_begun && !window.survey().data_file_name.empty()) window.press_start(*options.start);
    if (is_attended) return;
    QApplication::processEvents(); // the finished run is painted
    save_picture(window, options.screenshot);
}

MainWindow* window_at_exit = nullptr; // of the exit handler, which is given nothing

// The window as long as it is there for a program that ends from within, as the toolkit does when its display is gone.
class ExitGuard {
public:
    explicit ExitGuard(MainWindow& window)
    {
        window_at_exit = &window;
        std::atexit([] {
            if (window_at_exit == nullptr) return;
            ConsoleOperator console;
            std::exchange(window_at_exit, nullptr)->leave(console);
            std::cerr << "tarvo: the display is gone, recording and picks are kept\n";
            std::_Exit(kDone);
        });
    }
    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;
    ~ExitGuard() { window_at_exit = nullptr; }
};

// Straight away, whatever dialog is open and whatever run goes on.
void end_by_signal(MainWindow& window, int signal)
{
    ConsoleOperator console;
    window.leave(console);
    std::_Exit(128 + signal);
}

int run(QApplication& application, const LaunchOptions& options)
{
    QApplication::setApplicationName(QStringLiteral("Tarvo"));
    QApplication::setApplicationVersion(to_qt(version_number()));
    QtSettingsStore settings;
    ConsoleOperator console; // for a picture that nobody waits for: no box may
    MainWindow window(settings, options.screenshot.empty() ? nullptr : &console, options.settings);
    if (options.screenshot.empty()) fit_on_screen(window);
    window.show();
    const ExitGuard guard(window);
    const EndSignals signals_that_end([&window](int signal) { end_by_signal(window, signal); });
    // A desktop session that ends waits for nobody's answer. It may go on after all.
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window, [&](QSessionManager&) {
        write_unsaved_picks(window.survey().picks, console);
        window.keep_settings();
    });
    QTimer::singleShot(0, &window, [&] { start(window, options); });
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    const auto arguments = [&] { return std::span<const char* const>(argv + 1, static_cast<std::size_t>(argc - 1)); };
    const auto is_for_the_toolkit = [](const std::string_view argument) {
        return argument.starts_with('-') && !argument.starts_with("--");
    };
    try {
        // As early as can be: without a display the toolkit ends the program before it can say anything.
        if (std::none_of(arguments().begin(), arguments().end(), is_for_the_toolkit)) {
            const LaunchOptions options = read_launch_options(arguments());
            if (options.help) std::cout << launch_usage();
            if (options.version) std::cout << "tarvo " << version_and_build() << '\n';
            if (options.help || options.version) return kDone;
        }
        QApplication application(argc, argv); // takes the toolkit's own options out
        return run(application, read_launch_options(arguments()));
    } catch (const UsageError& fault) {
        std::cerr << "tarvo: " << terminal_text(fault.what()) << "\nTry: tarvo --help\n";
        return kWrongUsage;
    } catch (const std::exception& fault) {
        std::cerr << "tarvo: " << terminal_text(fault.what()) << '\n';
        return kFailed;
    }
}

#include "app/launch_options.h"
#include "app/main_window.h"
#include "app/qt_settings_store.h"
#include "app/texts.h"
#include "tools/process_options.h"

#include <QApplication>
#include <QTimer>

#include <iostream>

namespace {

using namespace tarvo;

void start(MainWindow& window, const LaunchOptions& options)
{
    if (!options.data_file.empty()) window.open_file(options.data_file, options.header_line);
    if (options.start && !window.survey().data_file_name.empty()) window.press_start(*options.start);
    if (options.screenshot.empty()) return;
    QApplication::processEvents(); // the finished run is painted
    const bool saved = window.grab().save(to_qt(options.screenshot), "PNG");
    if (!saved) std::cerr << "tarvo: " << options.screenshot << " cannot be written\n";
    QApplication::exit(saved ? 0 : 1);
}

int run(QApplication& application, const LaunchOptions& options)
{
    QApplication::setApplicationName(QStringLiteral("Tarvo"));
    QApplication::setApplicationVersion(QStringLiteral(TARVO_VERSION));
    QtSettingsStore settings;
    MainWindow window(settings);
    for (const std::string& text : options.settings) {
        take_setting(text, window.survey().parameters, window.survey().display_settings);
    }
    window.show();
    QTimer::singleShot(0, &window, [&] { start(window, options); });
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    try {
        QApplication application(argc, argv); // takes the toolkit's own options out
        const LaunchOptions options = read_launch_options({argv + 1, static_cast<std::size_t>(argc - 1)});
        if (options.help) {
            std::cout << kLaunchUsage;
            return 0;
        }
        if (options.version) {
            std::cout << "tarvo " TARVO_VERSION "\n";
            return 0;
        }
        return run(application, options);
    } catch (const UsageError& fault) {
        std::cerr << "tarvo: " << fault.what() << "\nTry: tarvo --help\n";
        return 2;
    }
}

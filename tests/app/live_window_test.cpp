#include "app/common/texts.h"
#include "app/panels/dial_panel.h"
#include "app/panels/live_panel.h"
#include "still_disk.h"
#include "tools/forward_survey.h"
#include "window_fixture.h"

#include <QAction>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QMessageBox>

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

namespace tarvo {

namespace {

constexpr int kLines = 20'000;

// The real window with its pipe and its recordings in the test's folder, and tarvo-forward in a thread of its own.
class LiveWindow : public WindowTest {
protected:
    LiveWindow()
    {
        options.data_file = write_survey(folder, "s", kLines);
        options.pipe_name = folder.path("run/Tarvo_Server");
        std::filesystem::create_directory(folder.path("recorded"));
        settings.values["RecordFolder"] = folder.path("recorded");
        qputenv("XDG_RUNTIME_DIR", folder.path("run").c_str());
    }

    ~LiveWindow() override
    {
        disk_stands_still = false;
        const std::uint64_t one = 1;
        EXPECT_EQ(write(stop, &one, sizeof one), 8);
        if (forwarder.joinable()) forwarder.join();
        close(stop);
    }

    void make_runtime_folder()
    {
        std::filesystem::create_directory(folder.path("run"));
        std::filesystem::permissions(folder.path("run"), std::filesystem::perms::owner_all);
    }

    void forward()
    {
        forwarder = std::thread([this] {
            forward_survey(options, stop);
            forwarded = true;
        });
    }

    // As eventually(), without its sleep between two looks: a sender waits for each reply.
    static bool while_served(const std::function<bool()>& condition)
    {
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (condition()) loop.quit();
        });
        look.start(5);
        QTimer::singleShot(200'000, &loop, &QEventLoop::quit);
        loop.exec();
        return condition();
    }

    void press() { click("Command_UDP_receive"); }
    QString status() { return control<QLabel>("Label_live_status").text(); }
    bool shows_live() { return status().startsWith(QLatin1String("Live: ")); }

    ForwardOptions options;
    std::atomic<bool> forwarded = false;
    int stop = eventfd(0, 0);
    std::thread forwarder;
};

} // namespace

TEST_F(LiveWindow, ShowsAndRecordsWhatIsForwarded)
{
    make_runtime_folder();
    EXPECT_EQ(status(), QStringLiteral("Not listening"));
    press();
    EXPECT_EQ(caption("Command_UDP_receive"), QStringLiteral("Close UDP Pipe"));
    EXPECT_FALSE(control<QAction>("menu_open").isEnabled());
    forward();
    ASSERT_TRUE(while_served([this] { return forwarded.load(); }));
    const std::string loaded = loaded_samples(options.data_file);
    EXPECT_EQ(stored_samples(window.survey().processing), loaded);
    EXPECT_EQ(lines_read(), kLines);
    ASSERT_TRUE(while_served([this] { return status() == QLatin1String("Listening, no client connected"); }));
    press();
    EXPECT_EQ(status(), QStringLiteral("Not listening"));
    std::string recorded;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path("recorded"))) {
        if (entry.path().extension() != ".csv") continue;
        recorded += loaded_samples(entry.path().string());
    }
    EXPECT_EQ(recorded, loaded);
}

TEST_F(LiveWindow, RealSurveysAreTheSameLiveAsFromTheirFiles)
{
    namespace fs = std::filesystem;
    std::error_code missing;
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(TARVO_REAL_SURVEYS, missing)) {
        const std::string extension = entry.path().extension().string();
        if (extension == ".csv" || extension == ".dat") files.push_back(entry.path().string());
    }
    if (files.empty()) GTEST_SKIP() << "no real surveys here";
    make_runtime_folder();
    press();
    for (const std::string& file : files) {
        options.data_file = file;
        forwarded = false;
        forward();
        EXPECT_TRUE(while_served([this] { return forwarded.load(); })) << file;
        forwarder.join();
        const std::string loaded = loaded_samples(file);
        EXPECT_GT(loaded.size(), 10000U) << file;
        EXPECT_EQ(stored_samples(window.survey().processing), loaded) << file;
    }
}

TEST_F(LiveWindow, ListensAgainWhereTheProgramEndedInTheMidstOfIt)
{
    make_runtime_folder();
    window.come_back();
    EXPECT_EQ(status(), QStringLiteral("Not listening"));
    settings.values["Listening"] = "1"; // as a crash leaves it
    window.come_back();
    EXPECT_EQ(status(), QStringLiteral("Listening, no client connected"));
    MainWindow second(settings, &op);
    second.come_back();
    EXPECT_EQ(op.messages, std::vector<std::string>()) << "no quarrel about the pipe";
    press();
    EXPECT_EQ(settings.values["Listening"], "0");
}

TEST_F(LiveWindow, HintsOfAFileDoNotOutliveIt)
{
    make_runtime_folder();
    window.open_file(options.data_file);
    click("Command_start_logging_1");
    ASSERT_NE(window.findChild<QAbstractButton*>("Command_hint_averages"), nullptr);
    press();
    EXPECT_TRUE(control<QWidget>("Frame_hints").isHidden()) << "its button would end the live run";
    options.rate = 2000;
    forward();
    ASSERT_TRUE(while_served([this] { return lines_read() > 100; }));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tarvo"));
    window.session().when_idle([] {}); // waits, and ends nothing
    EXPECT_TRUE(run().pipe_logging_active);
}

TEST_F(LiveWindow, AnswersWhileTheDiskStandsStill)
{
    make_runtime_folder();
    press();
    const LiveRecording& recording = control<LivePanel>("Panel_live").requests().recording();
    disk_stands_still = true;
    forward();
    ASSERT_TRUE(while_served([this] { return forwarded.load(); })) << "every line is answered";
    press();
    EXPECT_EQ(status(), QStringLiteral("Not listening"));
    window.close();
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(control<QWidget>("Box_recording_wait").isVisible());
    window.close();
    EXPECT_EQ(window.findChildren<QMessageBox*>().size(), 1) << "one is enough";
    disk_stands_still = false;
    EXPECT_TRUE(while_served([this] { return !window.isVisible(); }));
    EXPECT_EQ(loaded_samples(recording.data_file_name()), loaded_samples(options.data_file));
}

TEST_F(LiveWindow, FaultsOfALiveRunAreHintsToldOnceAndWidenNothing)
{
    make_runtime_folder();
    MainWindow attended(settings);
    attended.show();
    attended.findChild<QAbstractButton*>(QStringLiteral("Command_UDP_receive"))->click();
    const int width = attended.minimumSizeHint().width();
    for (int time = 0; time < 50; ++time) attended.op().show_message("The picture <b>cannot</b> be drawn");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(attended.findChildren<QMessageBox*>().size(), 0);
    attended.findChild<LivePanel*>()->op().show_message("A line cannot be decoded");
    attended.findChild<LivePanel*>()->op().show_message("The picture <b>cannot</b> be drawn");
    std::vector<std::string> logged;
    for (const LoggedMessage& message : attended.log().messages) logged.push_back(message.text);
    const std::vector<std::string> told = {"The picture <b>cannot</b> be drawn", "A line cannot be decoded"};
    EXPECT_EQ(logged, told);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // of the hint before
    QStringList hints;
    for (const auto* label : attended.findChild<QWidget*>(QStringLiteral("Hint_message"))->findChildren<QLabel*>()) {
        if (!label->text().isEmpty()) hints += label->text();
    }
    EXPECT_EQ(hints, QStringList(to_qt(told[1] + '\n' + told[0])));
    attended.findChild<QAbstractButton*>(QStringLiteral("Command_hint_message"))->click();
    EXPECT_TRUE(attended.findChild<QWidget*>(QStringLiteral("Dock_DisplayMessages"))->isVisible());
    attended.findChild<DialPanel*>()->show_readings({1e308, -1e308, 1e308, 1e308, 1e308, 1e308, {kNull, 1e29}});
    EXPECT_EQ(attended.findChild<QLabel*>(QStringLiteral("Dial_depth"))->text(), QStringLiteral("1.0e+308 m"));
    EXPECT_LE(attended.minimumSizeHint().width(), std::max(width, 1024));
}

TEST_F(LiveWindow, LinesGoOnUnderADialogAndTheButtonEndsThem)
{
    make_runtime_folder();
    options.rate = 2000;
    press();
    forward();
    ASSERT_TRUE(while_served([this] { return lines_read() > 100; }));
    QDialog dialog(&window);
    const std::int64_t before = lines_read();
    at_turn([this, before] { return lines_read() > before + 500; }, [&dialog] { dialog.accept(); });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_TRUE(shows_live()) << status().toStdString();

    press();
    const SampleStore& store = window.survey().processing.store;
    EXPECT_EQ(store.gradient_records, store.RecordCount);
    EXPECT_LT(lines_read(), kLines);
    EXPECT_FALSE(run().pipe_logging_active);
    press(); // the forwarder comes back by itself, for a new run
    ASSERT_TRUE(while_served([this] { return shows_live(); }));
    EXPECT_FALSE(control<QWidget>("Check_sensor_1").isEnabled());
    window.close();
    EXPECT_FALSE(run().pipe_logging_active);
    EXPECT_EQ(status(), QStringLiteral("Not listening"));
}

} // namespace tarvo

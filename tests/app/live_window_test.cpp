#include "tools/forward_survey.h"
#include "window_fixture.h"

#include <QAction>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
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
        QTimer::singleShot(60'000, &loop, &QEventLoop::quit);
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

#include "app/common/qt_settings_store.h"
#include "app/common/texts.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

namespace tarvo {

TEST(SettingsStoreFile, TextsComeBackAsTheyWereWritten)
{
    const QTemporaryDir folder;
    const char* const texts[] = {"10.5",        "",      "a, b; c", "<no value>", "\xc3\xa9t\xc3\xa9 100%",
                                 "line\nbreak", "\"q\"", "@x"};
    for (const char* text : texts) {
        QtSettingsStore(folder.path()).write("Quorvane", "Tarvo", "CWD", text);
        EXPECT_EQ(QtSettingsStore(folder.path()).read("Quorvane", "Tarvo", "CWD", "none"), text);
    }
    EXPECT_EQ(QtSettingsStore(folder.path()).read("Quorvane", "Tarvo", "TimingTick", "<no value>"), "<no value>");
}

TEST(SettingsStoreFile, UnquotedCommasAreKept)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Quorvane.ini")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Tarvo]\nHeaderField=a,b\n");
    file.close();
    EXPECT_EQ(QtSettingsStore(folder.path()).read("Quorvane", "Tarvo", "HeaderField", ""), "a,b");
}

TEST(SettingsStoreFile, StayAsTheyWereOnAFullDiskWhichIsToldOnce)
{
    const QTemporaryDir folder;
    const std::string file = to_utf8(folder.filePath(QStringLiteral("Quorvane.ini")));
    QtSettingsStore(folder.path()).write("Quorvane", "Tarvo", "CWD", std::string(2000, 'a'));
    QtSettingsStore store(folder.path());
    std::vector<std::string> told;
    store.on_fault = [&told](const std::string& fault) { told.push_back(fault); };
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto old_handler = std::signal(SIGXFSZ, SIG_IGN); // the limit then shows as a failed write
    const rlimit full{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    for (const char* const key : {"TimingTick", "SmoothWindow"}) store.write("Quorvane", "Tarvo", key, "3");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, old_handler);
    EXPECT_EQ(std::filesystem::file_size(file), std::string("[Tarvo]\nCWD=\n").size() + 2000);
    EXPECT_EQ(told, std::vector{"The settings could not be kept: cannot write " + file + ": File too large"});
    store.write("Quorvane", "Tarvo", "TimingTick", "3");
    EXPECT_EQ(store.read("Quorvane", "Tarvo", "TimingTick", ""), "3");
}

} // namespace tarvo

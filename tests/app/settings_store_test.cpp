#include "app/common/qt_settings_store.h"
#include "app/common/texts.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

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

} // namespace tarvo

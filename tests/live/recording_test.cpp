#include "live/live_recording.h"

#include "still_disk.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <thread>

namespace tarvo {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::size_t kFew = 100'000; // bytes
constexpr const char* kStart = "a,b\r\n";

// A recording that looks at its disk without end, in the test's folder.
class RecordingTest : public testing::Test {
protected:
    ~RecordingTest() override { disk_stands_still = false; }

    void start(RecordingPace wanted = {})
    {
        wanted.flush_interval = wanted.retry_interval = 1ms;
        recording = std::make_unique<LiveRecording>(wanted);
        recording->start(folder.path("r"), {{"a", "b"}, {}});
        first = recording->data_file_name();
    }

    void append(int from, int to)
    {
        for (int line = from; line <= to; ++line) {
            recording->append(std::to_string(line));
            while ((line == to || line % 1000 == 0) && !recording->hand_over()) {}
        }
    }

    static std::string lines(int from, int to)
    {
        std::string text;
        for (int line = from; line <= to; ++line) text += std::to_string(line) + "\r\n";
        return text;
    }

    std::string bytes_of(const std::string& file) { return folder.read("r/" + fs::path(file).filename().string()); }

    // Every new try writes what fits, and cuts it off again.
    bool comes_to(const std::string& file, const std::string& text)
    {
        for (int wait = 0; wait < 5000; ++wait) {
            if (bytes_of(file) == text) return true;
            std::this_thread::sleep_for(1ms);
        }
        return false;
    }

    // What was told until the condition held.
    std::string told_until(const std::function<bool(const std::string&)>& condition)
    {
        std::string told;
        while (!condition(told)) {
            if (const auto warning = recording->take_warning()) told += *warning + '|';
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return told;
    }

    TestFolder folder;
    std::unique_ptr<LiveRecording> recording;
    std::string first;
};

// A disk on which files end at so many bytes, for this program.
class FullDisk {
public:
    explicit FullDisk(std::size_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit full{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

} // namespace

TEST_F(RecordingTest, LinesThatWereHandedOverAreInTheFileWhateverTheDiskDoes)
{
    disk_stands_still = true;
    start();
    for (int line = 1; line < 100; ++line) {
        append(line, line);
        ASSERT_EQ(bytes_of(first), kStart + lines(1, line));
    }
    recording->finish(); // returns
    EXPECT_FALSE(recording->is_settled());
    disk_stands_still = false;
    EXPECT_TRUE(recording->wait_until_settled());
    EXPECT_TRUE(fs::exists(fs::path(first).replace_extension("def")));
}

TEST_F(RecordingTest, AFileThatVanishesIsMadeAnewWithTheLinesInMemory)
{
    struct Case {
        const char* label;
        const char* removed;
        std::size_t most_kept;
        const char* told;
    };
    const Case cases[] = {{"the file", "file", 1 << 20, ", which has every line of this run|"},
                          {"its folder", "folder", 1 << 20, ", which has every line of this run|"},
                          {"more lines than memory", "file", kFew, ", without the first "}};
    for (const Case& c : cases) {
        RecordingPace pace;
        pace.most_kept = c.most_kept;
        start(pace);
        append(100'000, 120'000); // 8 bytes a line
        // At once, for the recording may make a file where a folder is being emptied.
        fs::rename(c.removed == std::string("file") ? first : folder.path("r"), folder.path("gone"));
        fs::remove_all(folder.path("gone"));
        const std::string told = told_until([](const std::string& text) { return !text.empty(); });
        const std::string second = recording->data_file_name();
        EXPECT_EQ(told.find(first + " is gone. The recording goes on in " + second + c.told), 0U) << told;
        append(120'001, 120'002);
        recording->finish();
        EXPECT_TRUE(recording->wait_until_settled()) << c.label;
        const std::string text = bytes_of(second);
        const int lost = c.most_kept == kFew ? std::stoi(told.substr(told.find("first ") + 6)) : 0;
        EXPECT_TRUE(text == kStart + lines(100'000 + lost, 120'002)) << c.label << ": " << text.size();
        EXPECT_EQ(lost > 5000, c.most_kept == kFew) << lost;
        EXPECT_NE(first, second);
        fs::remove_all(folder.path("r")); // so that nothing but the recording keeps its next from the name
    }
}

TEST_F(RecordingTest, GoesOnWhenTheDiskTakesLinesAgain)
{
    struct Case {
        const char* label;
        std::size_t most_kept;
        bool other_folder;
    };
    const Case cases[] = {
        {"the same file", 1 << 20, false}, {"another folder", 1 << 20, true}, {"more than memory holds", kFew, false}};
    for (const Case& c : cases) {
        RecordingPace pace;
        pace.most_kept = c.most_kept;
        start(pace);
        append(100'000, 100'001);
        std::string told;
        {
            const FullDisk full(std::string(kStart).size() + 2 * 8 + 3); // cuts a line
            append(100'002, 120'000);                                    // handed over: kept in memory
            told = told_until([](const std::string& text) { return !text.empty(); });
            EXPECT_EQ(told.find("Recording has stopped: cannot write " + first + ": "), 0U) << told;
            EXPECT_FALSE(recording->is_active());
            EXPECT_TRUE(comes_to(first, kStart + lines(100'000, 100'001))) << "no line is cut off";
            if (c.other_folder) recording->try_again(folder.path("other")); // before it goes on by itself
        }
        told = told_until([](const std::string& text) { return text.find("goes on in ") != std::string::npos; });
        append(120'001, 120'001);
        recording->finish();
        EXPECT_TRUE(recording->wait_until_settled()) << c.label;
        const std::string second = recording->data_file_name();
        if (c.most_kept == kFew) {
            const int lost = std::stoi(told.substr(told.find('\n') + 1));
            EXPECT_GT(lost, 5000) << told;
            EXPECT_TRUE(bytes_of(first) == kStart + lines(100'000, 100'001) + lines(100'002 + lost, 120'001));
        } else if (second == first) {
            EXPECT_TRUE(bytes_of(first) == kStart + lines(100'000, 120'001)) << c.label;
        } else {
            EXPECT_TRUE(folder.read("other/" + fs::path(second).filename().string()) ==
                        kStart + lines(100'002, 120'001));
        }
        EXPECT_EQ(second != first, c.other_folder) << c.label;
    }
}

TEST_F(RecordingTest, OneWithoutALineLeavesNoFile)
{
    start();
    EXPECT_TRUE(fs::exists(first));
    recording->finish();
    EXPECT_TRUE(recording->wait_until_settled());
    std::string left;
    for (const auto& entry : fs::directory_iterator(folder.path("r"))) left += entry.path().string() + '|';
    EXPECT_EQ(left, "");
}

} // namespace tarvo

#include "picks/pick_file.h"

#include "fake_operator.h"
#include "random_kills.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

namespace tarvo {
namespace {

const std::string kTwoPicks = "\\Tarvo Anomaly Picks V1.0\r\n"
                              "\\Number of picks : 2\r\n"
                              "       Time,          X,          Y,       Dist,       Type,       Name\r\n"
                              "1718022896.000,512345.7,6712345.2,1234.5,2,Anomaly 12\r\n"
                              "-1.000,0.0,-0.1,0.0,0,Anomaly 3, east\r\n";

PickList two_picks(const std::string& path)
{
    PickList picks;
    append_pick(picks, {.name = " Anomaly 12 ",
                        .type = 2,
                        .time = 45453 + 45296.97 / 86400, // 2024-06-10 12:34:56.97: parts of a second are cut
                        .location = {0, 512345.7, 6712345.2, 1234.5}});
    append_pick(picks, {.name = "Anomaly 3, east", .time = 25569 - 1 / 86400.0, .location = {0, -0.04, -0.06, 0}});
    picks.pick_file_name = path;
    return picks;
}

TEST(PickFileWriting, WritesEveryByteAsTheFormatSays)
{
    const TestFolder folder;
    PickList picks = two_picks(folder.path("a_pick.dat"));
    FakeOperator op;
    EXPECT_EQ(write_pick_file(picks, op), 0);
    EXPECT_EQ(folder.read("a_pick.dat"), kTwoPicks);

    PickList again;
    EXPECT_EQ(read_pick_file(picks.pick_file_name, again, op).status, 0);
    EXPECT_EQ(pick_file_text(again), kTwoPicks);
    EXPECT_TRUE(op.messages.empty());
}

TEST(PickFileWriting, KeepsEveryWholeSecondThroughReadingAndWriting)
{
    const TestFolder folder;
    FakeOperator op;
    std::string text;
    for (const std::int64_t day : {-25000, -1, 0, 1, 19884, 47000}) {
        text.clear();
        for (int second = 0; second < 86400; second += 7) {
            text += std::to_string(day * 86400 + second) + ".000,0.0,0.0,0.0,0,x\r\n";
        }
        const std::string file = "\\Tarvo Anomaly Picks V1.0\r\n\\Number of picks : 12343\r\n"
                                 "       Time,          X,          Y,       Dist,       Type,       Name\r\n" +
                                 text;
        PickList picks;
        EXPECT_EQ(read_pick_file(folder.write("a.dat", file), picks, op).status, 0);
        EXPECT_TRUE(pick_file_text(picks) == file) << "day " << day;
    }
}

TEST(PickFileWriting, WritesNothingWithoutAPickOrAName)
{
    const TestFolder folder;
    FakeOperator op;
    PickList emptied;
    emptied.pick_file_name = folder.write("a_pick.dat", "old");
    EXPECT_EQ(write_pick_file(emptied, op), -1);
    EXPECT_EQ(folder.read("a_pick.dat"), "old");
    PickList nameless = two_picks("");
    EXPECT_EQ(write_pick_file(nameless, op), -1);
    EXPECT_TRUE(op.messages.empty());
}

TEST(PickFileWriting, KeepsAsideWhatCouldNotBeReadOnce)
{
    const TestFolder folder;
    FakeOperator op;
    const std::string path = folder.write("a_pick.dat", "no pick file");
    folder.write("a_pick.dat.unreadable", "from an earlier time");
    PickList picks;
    read_pick_file(path, picks, op);
    const std::string unreadable = picks.unreadable_file;
    picks = two_picks(path);
    picks.unreadable_file = unreadable;
    EXPECT_EQ(write_pick_file(picks, op), 0);
    EXPECT_EQ(write_pick_file(picks, op), 0);
    EXPECT_EQ(folder.read("a_pick.dat"), kTwoPicks);
    EXPECT_EQ(folder.read("a_pick.dat.unreadable"), "from an earlier time");
    EXPECT_EQ(folder.read("a_pick.dat.unreadable2"), "no pick file");
    EXPECT_FALSE(std::filesystem::exists(folder.path("a_pick.dat.unreadable3")));
}

TEST(PickFileWriting, KeepsWhatAnotherProgramHasWrittenSince)
{
    const TestFolder folder;
    FakeOperator op;
    const std::string path = folder.path("a_pick.dat");
    PickList picks = two_picks(path);
    picks.known_file = {path, std::nullopt}; // when the survey was opened it had no picks
    folder.write("a_pick.dat", "the other's first");
    EXPECT_EQ(write_pick_file(picks, op), 0);
    EXPECT_EQ(folder.read("a_pick.dat.changed"), "the other's first");
    ASSERT_EQ(op.messages.size(), 1U);
    EXPECT_TRUE(op.messages[0].ends_with("; what it held is kept in " + path + ".changed")) << op.messages[0];
    EXPECT_EQ(write_pick_file(picks, op), 0);
    EXPECT_EQ(op.messages.size(), 1U) << "our own";

    read_pick_file(path, picks, op);
    folder.write("a_pick.dat", kTwoPicks + " ");
    picks.pick_file_name = path;
    EXPECT_EQ(write_pick_file(picks, op), 0);
    EXPECT_EQ(folder.read("a_pick.dat.changed2"), kTwoPicks + " ");
    EXPECT_EQ(folder.read("a_pick.dat"), kTwoPicks);

    folder.write("a_pick.dat", "the other's third");
    const std::string blocked = path + "." + std::to_string(getpid()) + ".tmp";
    std::filesystem::create_directories(blocked + "/in the way");
    for (int attempt = 1; attempt <= 3; ++attempt) EXPECT_EQ(write_pick_file(picks, op), -1);
    EXPECT_EQ(folder.read("a_pick.dat.changed3"), "the other's third");
    EXPECT_FALSE(std::filesystem::exists(path + ".changed4")) << "one copy, however often the write is tried";
}

TEST(PickFileWriting, LeavesFileAndListAsTheyWereWhenItFails)
{
    const TestFolder folder;
    folder.write("a_pick.dat", "old");
    struct Case {
        const char* label;
        std::string path;
        rlim_t disk;
    };
    const Case cases[] = {{"vanished folder", folder.path("gone/a_pick.dat"), RLIM_INFINITY},
                          {"folder that takes no files", folder.path("a_pick.dat/b_pick.dat"), RLIM_INFINITY},
                          {"full disk", folder.path("a_pick.dat"), 100}};
    const auto old_handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const Case& c : cases) {
        PickList picks = two_picks(c.path);
        FakeOperator op;
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full{c.disk, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        EXPECT_EQ(write_pick_file(picks, op), -1) << c.label;
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(pick_file_text(picks), kTwoPicks) << c.label;
        EXPECT_EQ(folder.read("a_pick.dat"), "old") << c.label;
        ASSERT_EQ(op.messages.size(), 1U) << c.label;
        const std::string start = "An error occurred while saving the aomaly file: cannot write " + c.path + ": ";
        EXPECT_TRUE(op.messages[0].starts_with(start)) << op.messages[0];
    }
    std::signal(SIGXFSZ, old_handler);
}

// A program that rewrites its picks without end is killed at random moments.
TEST(PickFileWriting, LeavesACompleteListWheneverTheProgramIsKilled)
{
    const TestFolder folder;
    FakeOperator op;
    PickList lists[2];
    std::string texts[2];
    for (int list = 0; list < 2; ++list) {
        for (int pick = 1; pick <= 2000 + 1000 * list; ++pick) {
            append_pick(lists[list], {.name = "Target " + std::to_string(pick), .type = list});
        }
        lists[list].pick_file_name = folder.path("a_pick.dat");
        texts[list] = pick_file_text(lists[list]);
    }
    ASSERT_EQ(write_pick_file(lists[0], op), 0);

    std::mt19937 random(20240610);
    for (int kill_number = number_of_kills(25); kill_number > 0; --kill_number) {
        const auto save = [&](int write) { return write_pick_file(lists[(write + 1) % 2], op) == 0; };
        ASSERT_TRUE(killed_while_saving(save, random)) << "a write failed";
        const std::string found = folder.read("a_pick.dat");
        ASSERT_TRUE(found == texts[0] || found == texts[1])
            << "kill " << kill_number << ": " << found.size() << " bytes";
    }
    EXPECT_EQ(op.messages, std::vector<std::string>{});
}

} // namespace
} // namespace tarvo

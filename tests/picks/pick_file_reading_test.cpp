#include "picks/pick_file.h"

#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>
#include <random>

namespace tarvo {
namespace {

const std::string kHeader = "\\Tarvo Anomaly Picks V1.0\r\n\\Number of picks : ";
const std::string kColumns = "\r\n       Time,          X,          Y,       Dist,       Type,       Name\r\n";

PickList list_with_one_pick()
{
    PickList picks;
    append_pick(picks, {.name = "Old 1"});
    return picks;
}

TEST(PickFileReading, TakesEveryFieldOfEveryPick)
{
    const TestFolder folder;
    const std::string path = folder.write("a.dat", "\xEF\xBB\xBF\\Tarvo Anomaly PicksV3.1\n"
                                                   "any words: 2.5 picks\n\n"
                                                   " 1718022896.4999 , 512345.7,-.5 ,1e3, 2.5 , Anomaly 3, east \t\r\n"
                                                   "-0.6,0,0,0,-3,\n"
                                                   "after the last pick");
    PickList picks = list_with_one_pick();
    FakeOperator op;
    const PickFileRead read = read_pick_file(path, picks, op);
    EXPECT_EQ(op.messages, std::vector<std::string>{});
    EXPECT_EQ(read.status, 0);
    EXPECT_EQ(read.version, 3);
    ASSERT_EQ(picks.number_of_picks, 2);
    EXPECT_EQ(picks.pick_names.size(), 35U);
    // 2024-06-10 is day 45453; 12:34:56 is 45296 of 86400 seconds
    const Pick first{.name = "Anomaly 3, east",
                     .type = 2,
                     .time = 25569 + 1718022896 / 86400.0,
                     .location = {0, 512345.7, -0.5, 1000}};
    EXPECT_EQ(pick_at(picks, 1), first);
    EXPECT_NEAR(first.time, 45453 + 45296 / 86400.0, 1e-11);
    EXPECT_EQ(pick_at(picks, 2), (Pick{.name = "", .type = -3, .time = 25569 - 1 / 86400.0}));
}

TEST(PickFileReading, TellsTheVersionsApart)
{
    const TestFolder folder;
    struct Case {
        const char* first_line;
        int version;
    };
    const Case cases[] = {{"\\Tarvo Anomaly Picks V1.0", 1},
                          {"\\Tarvo Anomaly Picks, V2.0 and more", 2},
                          {"\\Tarvo Anomaly Picks V3.1", 3},
                          {"\\Tarvo Anomaly Picks v1.0", 3}};
    for (const Case& c : cases) {
        PickList picks;
        FakeOperator op;
        const std::string rest = "\n:1\n\n0,0,0,0,0,x";
        EXPECT_EQ(read_pick_file(folder.write("a.dat", c.first_line + rest), picks, op).version, c.version);
        EXPECT_EQ(picks.number_of_picks, 1) << c.first_line;
    }
}

TEST(PickFileReading, RefusesWhatIsNotAPickFileAndEmptiesTheList)
{
    const std::string pick = "1718022896.000,512345.7,6712345.2,1234.5,2,Anomaly 12\r\n";
    const std::string format = "The specified file does not have the correct format";
    const std::string no_data = "The anomaly pick file does not contain any data";
    const std::string not_valid = "The anomaly pick file is not valid";
    struct Case {
        const char* label;
        std::string bytes;
        std::string message; // ends with "...": the beginning alone
    };
    const Case cases[] = {
        {"empty file", "", "An error occurred while reading the aomaly file: ..."},
        {"other letter case", "\\tarvo Anomaly Picks V1.0\r\n:1\r\n\r\n" + pick, format},
        {"blank before the mark", " \\Tarvo Anomaly Picks V1.0\r\n:1\r\n\r\n" + pick, format},
        {"cut first line", "\\Tarvo Anomaly Pick", format},
        {"one very long line", std::string(3'000'000, 'x'), format},
        {"no second line", "\\Tarvo Anomaly Picks V1.0\r\n", "An error occurred while reading the aomaly file: ..."},
        {"no colon", "\\Tarvo Anomaly Picks V1.0\r\n3\r\n\r\n" + pick, no_data},
        {"no number", kHeader + "many" + kColumns + pick, no_data},
        {"none", kHeader + "0" + kColumns, no_data},
        {"half a pick", kHeader + "0.5" + kColumns + pick, no_data},
        {"negative", kHeader + "-1" + kColumns + pick, no_data},
        {"beyond whole numbers", kHeader + "3e9" + kColumns, "An error occurred while reading the aomaly file: ..."},
        {"two billion picks", kHeader + "2000000000" + kColumns + pick,
         "An error occurred while reading the aomaly file: ..."},
        {"one pick short", kHeader + "2" + kColumns + pick, "An error occurred while reading the aomaly file: ..."},
        {"empty time", kHeader + "1" + kColumns + ",1,2,3,4,x\r\n", not_valid},
        {"blank type", kHeader + "2" + kColumns + pick + "1,1,2,3, ,x\r\n", not_valid},
        {"no comma after the type", kHeader + "1" + kColumns + "1,1,2,3,4\r\n", not_valid},
        {"words for numbers", kHeader + "1" + kColumns + "1,east,2,3,4,x\r\n", not_valid},
        {"empty line among the picks", kHeader + "2" + kColumns + "\r\n" + pick, not_valid},
        {"very long pick", kHeader + "1" + kColumns + pick.substr(0, 50) + std::string(2'000'000, 'x'), not_valid},
        {"type too great", kHeader + "1" + kColumns + "1,1,2,3,1e10,x", "An error occurred while reading ..."},
        {"time too great", kHeader + "1" + kColumns + "1e16,1,2,3,1,x", "An error occurred while reading ..."},
    };
    const TestFolder folder;
    for (const Case& c : cases) {
        PickList picks = list_with_one_pick();
        FakeOperator op;
        const std::string path = folder.write("a.dat", c.bytes);
        EXPECT_EQ(read_pick_file(path, picks, op).status, -1) << c.label;
        EXPECT_EQ(picks.number_of_picks, 0) << c.label;
        EXPECT_EQ(picks.unreadable_file, path) << c.label;
        ASSERT_EQ(op.messages.size(), 1U) << c.label;
        if (c.message.ends_with("...")) {
            EXPECT_TRUE(op.messages[0].starts_with(c.message.substr(0, c.message.size() - 3))) << op.messages[0];
        } else {
            EXPECT_EQ(op.messages[0], c.message) << c.label;
        }
    }
    PickList picks = list_with_one_pick();
    FakeOperator op;
    EXPECT_EQ(read_pick_file(folder.path("gone.dat"), picks, op).status, -1);
    EXPECT_EQ(picks.unreadable_file, "") << "there is nothing to keep";
}

TEST(PickFileReading, SaysWhereTheFileEndsTooEarly)
{
    const TestFolder folder;
    const std::string path = folder.write("a.dat", kHeader + "2" + kColumns + "1,2,3,4,5,x");
    PickList picks;
    FakeOperator op;
    read_pick_file(path, picks, op);
    EXPECT_EQ(op.messages, std::vector<std::string>{"An error occurred while reading the aomaly file: " + path +
                                                    ", line 5: a pick was expected, the file ends"});
}

// Random bytes and mutilated files: any outcome but a crash, and never a list that is half filled.
TEST(PickFileReading, SurvivesAnyBytes)
{
    const TestFolder folder;
    std::string good = kHeader + "3" + kColumns;
    for (int pick = 0; pick < 3; ++pick) good += "1718022896.000,512345.7,6712345.2,1234.5,2,Anomaly 12\r\n";
    std::mt19937 random(20240610);
    const std::string alphabet = std::string(",,,.:0159eE-+ \r\n\t\"\\") + '\0' + "\xFF";
    for (int round = 0; round < 400; ++round) {
        std::string bytes = good.substr(0, round % 2 == 0 ? good.size() : random() % good.size());
        constexpr std::size_t kFirstLine = 25; // left whole, or most files would be refused there
        for (auto change = random() % 5; change > 0 && bytes.size() > kFirstLine; --change) {
            bytes[kFirstLine + random() % (bytes.size() - kFirstLine)] = alphabet[random() % alphabet.size()];
        }
        PickList picks;
        FakeOperator op;
        const int status = read_pick_file(folder.write("a.dat", bytes), picks, op).status;
        ASSERT_EQ(picks.number_of_picks > 0, status == 0) << "round " << round;
        ASSERT_EQ(op.messages.size(), status == 0 ? 0U : 1U) << "round " << round;
    }
}

} // namespace
} // namespace tarvo

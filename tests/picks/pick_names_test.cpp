#include "picks/pick_list.h"

#include "fake_operator.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

PickList list_of(const std::vector<std::string>& names)
{
    PickList picks;
    for (const std::string& name : names) append_pick(picks, {.name = name});
    return picks;
}

TEST(PickNames, SplitAtTheLastBlankWhenANumberFollows)
{
    struct Case {
        const char* full_name;
        const char* base_name;
        const char* id_text;
        float id;
    };
    const Case cases[] = {{"", "", "", -1},
                          {"Target", "Target", "", -1},
                          {" Target ", "Target", "", -1},
                          {"Target 12", "Target", "12", 12},
                          {"Target 0", "Target", "", 0},
                          {"Target -3", "Target", "", -3},
                          {"Target 12.5", "Target", "12.5", 12.5},
                          {"Target 12.", "Target", "12", 12},
                          {"Target 12.0", "Target", "12.0", 12},
                          {"Target 1e2", "Target", "100", 100},
                          {"East wreck 007", "East wreck", "7", 7},
                          {"Target  4", "Target ", "4", 4},
                          {"  East wreck", "East wreck", "", -1},
                          {" 9", "", "9", 9},
                          {"9", "9", "", -1}};
    for (const Case& c : cases) {
        const PickNameParts parts = split_pick_name(c.full_name);
        EXPECT_EQ(parts.base_name, c.base_name) << '"' << c.full_name << '"';
        EXPECT_EQ(parts.id_text, c.id_text) << '"' << c.full_name << '"';
        EXPECT_EQ(parts.id, c.id) << '"' << c.full_name << '"';
    }
}

TEST(PickNames, CountOnFromTheHighestIdOfTheirSeries)
{
    struct Case {
        const char* label;
        std::vector<std::string> picks;
        const char* name;
        float next;
    };
    const Case cases[] = {{"nothing to go by", {}, "Target", 0},
                          {"own ID alone", {}, "Target 4", 5},
                          {"series with a fraction", {"Target 3", "Target 12.5"}, "Target 1", 14},
                          {"fraction that rounds down", {"Target 1.5"}, "Target 1", 2},
                          {"own ID above the series", {"Target 3"}, "Target 20", 21},
                          {"other series", {"Wreck 30"}, "Target 1", 2},
                          {"base name that only begins alike", {"Targeted 30"}, "Target 1", 31},
                          {"letter case counts", {"target 30"}, "Target 1", 2},
                          {"pick without an ID", {"Target"}, "Target", 0}};
    for (const Case& c : cases) EXPECT_EQ(next_pick_id(c.name, list_of(c.picks)), c.next) << c.label;
}

TEST(PickNames, NameThePickFileBesideTheData)
{
    struct Case {
        const char* data;
        const char* picks;
    };
    const Case cases[] = {{"D:\\s\\line7.csv", "D:\\s\\line7_pick.dat"},
                          {"D:\\a.b\\line7", "D:\\a.b\\line7_pick.dat"},
                          {"/s/line7.raw.csv", "/s/line7.raw_pick.dat"},
                          {"/s.2024/line7 ", "/s.2024/line7_pick.dat"},
                          {"/s/line7 .csv", "/s/line7 _pick.dat"}};
    for (const Case& c : cases) EXPECT_EQ(pick_file_name_for(c.data), c.picks);
}

TEST(NewPicks, AreRefusedWithTheFirstObjection)
{
    struct Case {
        PickTexts texts;
        const char* message;
    };
    const std::string fault = "An error occurred while checling the anomaly definitions: "
                              "the number 3e+09 is outside the range of a whole number";
    const Case cases[] = {{{" \t", "x", "x"}, "No name has been specified"},
                          {{"Target", "", "-1"}, "No ID value has been specified"},
                          {{"Target", "7a", "1"}, "No ID value has been specified"},
                          {{"Target", "-0.5", ""}, "The specified Anomaly ID is not valid"},
                          {{"Target", "7", "one"}, "No type has been specified"},
                          {{"target", "7", "-1"}, "The specified type is not valid"},
                          {{" tARGET ", " 7 ", "1"}, "That name is already in use"},
                          {{"Target", "8", "3e9"}, fault.c_str()}};
    for (const Case& c : cases) {
        PickList picks = list_of({"Other 1", " Target 7 "});
        FakeOperator op;
        EXPECT_EQ(check_new_pick(AddPick::yes, c.texts, picks, op), -1) << c.message;
        EXPECT_EQ(op.messages, std::vector<std::string>{c.message});
        EXPECT_EQ(picks.number_of_picks, 2) << c.message;
    }
}

TEST(NewPicks, AreAppendedOnlyWhenAsked)
{
    PickList picks = list_of({"Target 7"});
    FakeOperator op;
    EXPECT_EQ(check_new_pick(AddPick::no, {"Target", "7.0", "1"}, picks, op), 0);
    EXPECT_EQ(check_new_pick(AddPick::no, {"Target", "7", "1"}, picks, op, 1), 0) << "its own name";
    EXPECT_EQ(picks.number_of_picks, 1);
    EXPECT_EQ(check_new_pick(AddPick::yes, {" Target ", " 7.50 ", " 2.5 "}, picks, op), 0);
    ASSERT_EQ(picks.number_of_picks, 2);
    EXPECT_EQ(picks.pick_names[2], "Target 7.50");
    EXPECT_EQ(picks.pick_types[2], 2);
    EXPECT_TRUE(op.messages.empty());
}

// Upper bounds of the arrays: number + 32 when one more would not fit, else as they were.
TEST(PickArrays, GrowByThirtyTwoBeyondTheNumberAndKeepTheirContents)
{
    PickList picks;
    append_pick(picks, {.name = "1"});
    EXPECT_EQ(picks.pick_names.size(), 33U);
    for (int pick = 2; pick <= 32; ++pick) append_pick(picks, {.name = std::to_string(pick)});
    EXPECT_EQ(picks.pick_names.size(), 33U);
    append_pick(picks, {.name = "33"});
    EXPECT_EQ(picks.pick_names.size(), 65U);
    EXPECT_EQ(picks.pick_locations.size(), 65U);
    remove_pick(picks, 1);
    insert_pick(picks, 32, {.name = "again"});
    for (std::int32_t pick = 1; pick <= 31; ++pick) EXPECT_EQ(pick_at(picks, pick).name, std::to_string(pick + 1));
    EXPECT_EQ(picks.pick_names[32], "again");
    EXPECT_EQ(picks.pick_names[33], "33");
}

} // namespace
} // namespace tarvo

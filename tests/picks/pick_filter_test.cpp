#include "picks/pick_filter.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tarvo {

TEST(PickTypes, NamesAreReadFromTheSettingAndBack)
{
    const std::vector<PickType> types = pick_types_of(" 1  mine ;2 cable\n; 3;x pipe;1 wreck;-4 a b");
    EXPECT_EQ(types, (std::vector<PickType>{{1, "mine"}, {2, "cable"}, {-4, "a b"}}));
    EXPECT_EQ(pick_types_text(types), "1 mine; 2 cable; -4 a b");
    EXPECT_EQ(pick_types_of("1e300 far").size(), 0U);
    EXPECT_EQ(pick_type_name(types, 2.5), "");
}

TEST(PickFilter, EveryTextThatIsGivenNarrows)
{
    SurveyLines lines;
    open_first_line(lines, 12);
    for (std::int32_t record = 1; record <= 4; ++record) add_record_to_line(lines, record);
    open_next_line(lines, kNull, 4, 0);
    for (std::int32_t record = 5; record <= 8; ++record) add_record_to_line(lines, record);
    PickList picks;
    append_pick(picks, {"Target 1", 1, 4, 0, {0, 0, 0, 100}});
    append_pick(picks, {"target 2", 2, 5, 0, {0, 0, 0, 200}});
    append_pick(picks, {"Wreck 1", 1, -1, 0, {0, 0, 0, 300}});
    append_pick(picks, {"Far 9", 12, 9, 0, {0, 0, 0, 400}});
    struct Case {
        const char* label;
        PickFilter filter;
        std::vector<std::int32_t> shown;
    };
    const Case cases[] = {
        {"nothing typed", {"", " ", "", "", ""}, {1, 2, 3, 4}},
        {"part of a name", {" TARGET", "", "", "", ""}, {1, 2}},
        {"type by number", {"", "1", "", "", ""}, {1, 3}},
        {"type by name", {"", "abl", "", "", ""}, {2}},
        {"line by its name", {"", "", "12", "", ""}, {1}},
        {"line without a number", {"", "", "2", "", ""}, {2}},
        {"distances with their ends", {"", "", "", "200", "300"}, {2, 3}},
        {"no distance", {"", "", "", "x", ""}, {1, 2, 3, 4}},
        {"together", {"1", "1", "", "", "100"}, {1}},
    };
    std::vector<std::int32_t> all(4);
    std::iota(all.begin(), all.end(), 1);
    for (const Case& c : cases) {
        EXPECT_EQ(filtered_picks(picks, lines, pick_types_of("1 mine; 2 cable"), c.filter, all), c.shown) << c.label;
    }
    EXPECT_EQ(line_of_pick(picks, 4, lines), "") << "behind the last record";
    EXPECT_EQ(chosen_picks(picks, {3, 1}).pick_names[1], "Wreck 1");
}

} // namespace tarvo

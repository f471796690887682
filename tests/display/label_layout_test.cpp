#include "display/label_layout.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

bool overlap(const LabelBox& a, const LabelBox& b)
{
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

TEST(LabelLayout, ANameStandsToTheRightOrWhereThereIsRoom)
{
    struct Case {
        const char* label;
        LabelWish wish;
        std::optional<LabelBox> place;
    };
    const Case cases[] = {{"right", {50, 50, 30, 10}, LabelBox{59, 39, 30, 10}},
                          {"top", {50, 10, 30, 10}, LabelBox{59, 12, 30, 10}},
                          {"right edge", {90, 50, 30, 10}, LabelBox{51, 39, 30, 10}},
                          {"right edge at the top", {90, 10, 30, 10}, LabelBox{51, 12, 30, 10}},
                          {"just inside", {61, 50, 30, 10}, LabelBox{70, 39, 30, 10}},
                          {"no room beside", {50, 50, 80, 10}, LabelBox{10, 31, 80, 10}},
                          {"no room above either", {50, 15, 80, 10}, LabelBox{10, 24, 80, 10}},
                          {"too wide", {50, 50, 101, 10}, std::nullopt}};
    for (const Case& c : cases) EXPECT_EQ(arrange_labels({&c.wish, 1}, 100, 100, 5)[0], c.place) << c.label;
}

TEST(LabelLayout, CrowdedNamesCoverNeitherEachOtherNorAMark)
{
    std::vector<LabelWish> wishes;
    for (int mark = 0; mark < 400; ++mark) wishes.push_back({mark * 37 % 300, mark * 61 % 200, 40, 12, mark == 399});
    const auto placed = arrange_labels(wishes, 300, 200, 2);
    std::size_t shown = 0;
    for (std::size_t at = 0; at < placed.size(); ++at) {
        if (!placed[at]) continue;
        ++shown;
        for (std::size_t other = 0; other < placed.size(); ++other) {
            const LabelBox mark = {wishes[other].x - 2, wishes[other].y - 2, 5, 5};
            EXPECT_FALSE(overlap(*placed[at], mark)) << at << " covers the mark of " << other;
            if (other == at || !placed[other]) continue;
            EXPECT_FALSE(overlap(*placed[at], *placed[other])) << at << " covers " << other;
        }
    }
    EXPECT_LT(shown, 100U);
    // The one that comes first has the first choice, though it stands last.
    const LabelWish rivals[] = {{50, 5, 40, 8, false}, {50, 5, 40, 8, true}}; // in one row, as over the graphs
    const auto rival_places = arrange_labels(rivals, 100, 11, 2);
    EXPECT_EQ(rival_places[1], (LabelBox{56, 1, 40, 8}));
    EXPECT_EQ(rival_places[0], (LabelBox{4, 1, 40, 8}));
}

} // namespace
} // namespace tarvo

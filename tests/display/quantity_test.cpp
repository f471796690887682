#include "display/quantity.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace tarvo {
namespace {

TEST(Quantity, StandsAtItsIdentity)
{
    for (std::size_t at = 0; at < kQuantityCount; ++at) {
        EXPECT_EQ(kQuantities[at].id, static_cast<QuantityId>(at)) << kQuantities[at].key;
        EXPECT_EQ(&quantity_of_key(kQuantityKeys[at]), &kQuantities[at]);
    }
    EXPECT_EQ(quantity_of_key("Speed").id, QuantityId::gradient) << "keys are told apart letter by letter";
}

TEST(Quantity, RangesAreAutomaticOrTwoNumbers)
{
    const std::pair<const char*, const char*> cases[] = {
        {"auto", "auto"}, {" -2.5\t4 ", "-2.5 4"},  {"4 4", ""}, {"5 4", ""}, {"4", ""}, {"", ""}, {"1 2 3", ""},
        {"1 x", ""},      {"1e3  2E3", "1000 2000"}};
    for (const auto& [text, stored] : cases) {
        const std::optional<QuantityRange> range = quantity_range_of(text);
        EXPECT_EQ(range ? quantity_range_text(*range) : "", stored) << text;
    }
}

TEST(Quantity, AutomaticRangesLeaveOutTwoOfAHundredAtTheirEnds)
{
    constexpr auto kUnsigned = QuantitySign::unsigned_values;
    constexpr auto kSigned = QuantitySign::signed_values;
    std::vector<double> hundred(100);
    std::iota(hundred.begin(), hundred.end(), -59.0); // -59 to 40: the 2nd is -58, the 98th 38
    struct Case {
        const char* label;
        std::vector<double> values;
        QuantitySign sign;
        ValueRange range;
    };
    const Case cases[] = {{"hundred", hundred, kUnsigned, {-58, 38}},
                          {"even about 0", hundred, kSigned, {-58, 58}},
                          {"two", {3, 1}, kUnsigned, {1, 3}},
                          {"one", {4}, kUnsigned, {3.5, 4.5}},
                          {"none", {}, kUnsigned, {0, 1}},
                          {"none signed", {}, kSigned, {-1, 1}},
                          {"zeros", {0, 0}, kSigned, {-1, 1}},
                          {"negative", {-4}, kSigned, {-4, 4}}};
    for (const Case& c : cases) {
        std::vector<double> values = c.values;
        EXPECT_EQ(automatic_range(values, c.sign), c.range) << c.label;
    }
}

TEST(Quantity, AdjustersTurnARangeAboutItsMiddle)
{
    const ValueRange range = {-10, 30};
    EXPECT_EQ(adjusted_range(range, 1, 1), (ValueRange{-5, 25}));
    EXPECT_EQ(adjusted_range(range, 1, 0), (ValueRange{-15, 35}));
    EXPECT_EQ(adjusted_range(range, 0, 1), (ValueRange{-9.6, 29.6}));
    const ValueRange least = {1, 1 + 0x1p-52};
    EXPECT_EQ(adjusted_range(least, 1, 1), least) << "there is nothing between";
}

} // namespace
} // namespace tarvo

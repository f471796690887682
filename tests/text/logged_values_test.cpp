#include "text/logged_values.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(LoggedValues, UnitsStandDirectlyBehindNumbers)
{
    struct Case {
        const char* text;
        std::optional<double> expected;
    };
    const auto none = std::nullopt;
    const Case cases[] = {
        {" 41.25m ", 41.25},  {"-1.5e3nT", -1500.0}, {"5d", 5.0},      {"12e", 12.0},     {"20%", 20.0},
        {"20\xC2\xB0", 20.0}, {"5m/s", 5.0},         {"1e400m", none}, {"41.25 m", none}, {"41.25m x", none},
        {"41.25", none},      {"m", none},           {"5/s", none},    {"", none},        {".m", none},
        {"+.5m", 0.5}};
    for (const Case& c : cases) EXPECT_EQ(number_with_unit(c.text), c.expected) << c.text;
}

TEST(LoggedValues, NullTextsAreTextsOrNumbers)
{
    const std::vector<std::string> texts = {"-9999.99", "*", "NaN"};
    const NullTexts nulls(texts);
    for (const char* field : {"-9999.99", " -9999.990", "-9.99999e3", "*", "NaN"}) {
        EXPECT_TRUE(nulls.contains(field)) << field;
    }
    for (const char* field : {"-9999.9", "nan", "**", "", "0", "-9999.99m"})
        EXPECT_FALSE(nulls.contains(field)) << field;
    EXPECT_TRUE(nulls.contains("-9999.99m", -9999.99));
    EXPECT_FALSE(nulls.contains("1m", 1));
    EXPECT_FALSE(NullTexts().contains(""));
}

} // namespace
} // namespace tarvo

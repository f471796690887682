#include "text/numbers.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstring>
#include <limits>
#include <random>

namespace tarvo {
namespace {

TEST(NumericTexts, AreTakenWholeOrRefused)
{
    struct Case {
        const char* text;
        double value;
    };
    const Case cases[] = {
        {"1", 1.0},
        {"1.", 1.0},
        {".5", 0.5},
        {"+2.5", 2.5},
        {" \t-7.25\t ", -7.25},
        {"007", 7.0},
        {"1e3", 1000.0},
        {"1E+3", 1000.0},
        {"1d-3", 1e-3},
        {"-2.5D2", -250.0},
        {"+1e-2", 0.01},
        {"0e999999", 0.0},
        {"1e-400", 0.0},
        {"1e-99999999999999999999", 0.0},
        {"4.9e-324", 4.9e-324},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"9007199254740993", 9007199254740992.0}, // a tie: to even
        {"0.1", 0.1},
        {"123456789012345678901234567890", 1.2345678901234568e29},
        {"0000000000000000000000001.5", 1.5},
    };
    for (const Case& c : cases) EXPECT_EQ(numeric_value(c.text), c.value) << '"' << c.text << '"';
    for (const char* const refused :
         {"",    " ",  ".",   "+",     "-",   "e5",    "inf", "nan",   "0x10",   "1,5",
          "1 2", "1e", "1e+", "1.5.2", "--1", "1e5.0", "12m", "1e309", "-1d400", "1e99999999999999999999"}) {
        EXPECT_EQ(numeric_value(refused), std::nullopt) << '"' << refused << '"';
    }
}

// The reader of plain decimals must agree to the bit with the library's for every shape that survey files hold.
TEST(NumericTexts, AgreeWithTheStandardLibraryToTheBit)
{
    std::mt19937_64 random(20240610);
    for (int round = 0; round < 200000; ++round) {
        std::string text = random() % 2 ? "-" : "";
        const auto whole_digits = random() % 12;
        const auto decimals = random() % 12;
        for (std::uint64_t digit = 0; digit < whole_digits; ++digit) text += static_cast<char>('0' + random() % 10);
        if (decimals > 0) text += '.';
        for (std::uint64_t digit = 0; digit < decimals; ++digit) text += static_cast<char>('0' + random() % 10);
        if (whole_digits + decimals == 0) continue;
        if (random() % 8 == 0) text += "e" + std::to_string(static_cast<int>(random() % 40) - 20);
        double expected = 0;
        std::from_chars(text.data(), text.data() + text.size(), expected);
        const std::optional<double> read = numeric_value(text);
        ASSERT_TRUE(read.has_value()) << text;
        ASSERT_EQ(std::memcmp(&*read, &expected, sizeof expected), 0) << text;
    }
}

TEST(LeadingNumbers, StopAtTheFirstStrangeCharacter)
{
    struct Case {
        const char* text;
        double value;
    };
    const Case cases[] = {{"", 0}, {"abc", 0}, {"12abc", 12}, {" 3.5 m", 3.5}, {"7e", 7}, {"-2e1x", -20}, {".x", 0}};
    for (const Case& c : cases) EXPECT_EQ(leading_number(c.text), c.value) << '"' << c.text << '"';
}

TEST(WholeNumbers, RoundHalvesToEvenAndRefuseWhatDoesNotFit)
{
    EXPECT_EQ(rounded_to_int32(2.5), 2);
    EXPECT_EQ(rounded_to_int32(3.5), 4);
    EXPECT_EQ(rounded_to_int32(-0.5), 0);
    EXPECT_EQ(rounded_to_int32(2147483647.4), 2147483647);
    EXPECT_THROW(rounded_to_int32(2147483647.5), std::range_error);
    EXPECT_THROW(rounded_to_int32(-2147483649.0), std::range_error);
}

TEST(FixedFormats, RoundTheExactValueWithoutNegativeZero)
{
    struct Case {
        double value;
        int decimals;
        const char* text;
    };
    const Case cases[] = {{0, 0, "0"},
                          {-0.04, 1, "0.0"},
                          {-0.0, 3, "0.000"},
                          {-0.06, 1, "-0.1"},
                          {2.5, 0, "2"},
                          {0.125, 2, "0.12"},
                          {1.005, 2, "1.00"},
                          {1718022896, 3, "1718022896.000"},
                          {1e22, 1, "10000000000000000000000.0"}};
    for (const Case& c : cases) EXPECT_EQ(format_fixed(c.value, c.decimals), c.text);
    EXPECT_EQ(format_fixed(std::numeric_limits<double>::max(), 4).size(), 314U);
}

TEST(SignificantDigits, AreAtMostFourWithoutAnExponent)
{
    const std::pair<double, const char*> cases[] = {{1.550390625, "1.55"}, {0, "0"},
                                                    {-0.0, "0"},           {10, "10"},
                                                    {9.99951, "10"},       {0.00012345, "0.0001234"},
                                                    {-2.5, "-2.5"},        {49822.74, "49820"},
                                                    {99995, "100000"},     {123456789, "123500000"},
                                                    {0.07, "0.07"},        {1e20, "1e+20"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(format_significant(value), text) << value;
}

} // namespace
} // namespace tarvo

#include "text/tokens.h"

#include "text/field_reader.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace tarvo {
namespace {

std::vector<std::string> tokens_of(std::string_view line)
{
    const std::string normalised = normalise_line(line);
    std::string_view text = normalised;
    std::vector<std::string> tokens;
    while (!text.empty()) tokens.emplace_back(next_token(text));
    return tokens;
}

TEST(NormalisedLines, KeepEmptyFieldsAndSqueezeBlanks)
{
    struct Case {
        const char* raw;
        const char* normalised;
    };
    const Case cases[] = {{"", ""},
                          {" \t ", ""},
                          {"a,,b", "a, ,b"},
                          {"a,,,b", "a, , ,b"},
                          {"a\t\tb", "a b"},
                          {"  a   b\t", "a b"},
                          {",,", ", ,"},
                          {"a, ,b", "a, ,b"},
                          {"a ;; b", "a ;; b"}};
    for (const Case& c : cases) EXPECT_EQ(normalise_line(c.raw), c.normalised) << '"' << c.raw << '"';
}

TEST(Tokens, EndAtSeparatorsAndQuotes)
{
    struct Case {
        const char* line;
        std::vector<std::string> tokens;
    };
    const Case cases[] = {{"time, EAST ,north,Depth", {"time", "EAST", "north", "Depth"}},
                          {"a ,b", {"a", "b"}},
                          {"a , b", {"a", "b"}},
                          {"a;  b", {"a", "b"}},
                          {"a, ,b", {"a", "", "b"}},
                          {"a,,b", {"a", "", "b"}},
                          {"a,,,b", {"a", "", "", "b"}},
                          {"a;;b", {"a", "", "b"}},
                          {",a", {"", "a"}},
                          {"a,", {"a"}},
                          {"a,,", {"a", ""}},
                          {",", {""}},
                          {"it's", {"it", "s"}},
                          {"a 'b", {"a", "", "b"}},
                          {"a\tb  c", {"a", "b", "c"}},
                          {"\"a, b\",c", {"a, b", "c"}},
                          {"\"a b\" , c", {"a b", "c"}},
                          {"\"a\"b c", {"a", "b", "c"}},
                          {"\"open, end", {"open, end"}},
                          {"\"\",x", {"", "x"}},
                          {"x\"y z", {"x\"y", "z"}}};
    for (const Case& c : cases) EXPECT_EQ(tokens_of(c.line), c.tokens) << c.line;
}

TEST(FieldReader, ReadsTheNumbersOfTheTokensOfThePlainRule)
{
    constexpr std::string_view alphabet = "0123456789012345.-. \t,;'\", ,ed+\x01x";
    std::mt19937 random(7);
    const std::vector<bool> wanted = {true, false, true, true, false, true, true, true};
    FieldReader reader(wanted);
    for (int round = 0; round < 300000; ++round) {
        std::string line;
        const auto length = random() % 70;
        for (std::uint32_t at = 0; at < length; ++at) line += alphabet[random() % alphabet.size()];
        const std::vector<std::string> tokens = tokens_of(line);
        const auto values = reader.read(line);
        ASSERT_EQ(values.size(), tokens.empty() ? 0U : wanted.size()) << '"' << line << '"';
        ASSERT_EQ(count_fields(line), tokens.size());
        for (std::size_t field = 0; field < values.size(); ++field) {
            if (!wanted[field]) continue;
            const double expected = field < tokens.size() ? numeric_value(tokens[field]).value_or(kNull) : kNull;
            ASSERT_EQ(std::memcmp(&values[field], &expected, sizeof expected), 0) << line << " field " << field;
        }
    }
}

} // namespace
} // namespace tarvo

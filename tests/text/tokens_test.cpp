#include "text/tokens.h"

#include "text/numbers.h"

#include <gtest/gtest.h>

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

TEST(FieldSplitter, FindsTheSameFieldsAsThePlainRule)
{
    constexpr std::string_view alphabet = "ab1.- \t,;'\", ,\x01";
    std::mt19937 random(7);
    FieldSplitter splitter(64);
    FieldSplitter three(3);
    for (int round = 0; round < 200000; ++round) {
        std::string line;
        const auto length = random() % 24;
        for (std::uint32_t at = 0; at < length; ++at) line += alphabet[random() % alphabet.size()];
        const std::vector<std::string> expected = tokens_of(line);
        const auto fields = splitter.split(line);
        ASSERT_EQ(std::vector<std::string>(fields.begin(), fields.end()), expected) << '"' << line << '"';
        ASSERT_EQ(count_fields(line), expected.size());
        ASSERT_EQ(three.split(line).size(), std::min<std::size_t>(3, expected.size())) << '"' << line << '"';
    }
}

} // namespace
} // namespace tarvo

#include "text/field_splitter.h"

#include "text/tokens.h"

#include <gtest/gtest.h>

#include <random>

namespace tarvo {
namespace {

std::string joined(std::span<const std::string_view> fields)
{
    std::string text;
    for (const std::string_view field : fields) text += "[" + std::string(field) + "]";
    return text;
}

TEST(FieldSplitter, ANamedSeparatorIsTheOnlyOne)
{
    struct Case {
        Separator separator;
        const char* line;
        const char* expected;
    };
    const Case cases[] = {
        {Separator::comma, "", ""},
        {Separator::comma, " \t ", ""},
        {Separator::comma, "a", "[a]"},
        {Separator::comma, " Timestamp [ms] ,a;b\t, c'd ", "[Timestamp [ms]][a;b][c'd]"},
        {Separator::comma, "a,,b, ,", "[a][][b][]"},
        {Separator::comma, ",a,", "[][a]"},
        {Separator::comma, ",", "[]"},
        {Separator::comma, "\"a,b\",c", "[a,b][c]"},
        {Separator::comma, " \"a \"\"b\"\"\" ,\"\",c", "[a \"b\"][][c]"},
        {Separator::comma, "\"a\"b c ,d", "[ab c][d]"},
        {Separator::comma, "\"a\"b\"c,d", "[ab\"c][d]"},
        {Separator::comma, "\"a,b", "[a,b]"},
        {Separator::comma,
         "5\" x,\"long text that no small string holds, at all\",\"another one of that length, or so\"",
         "[5\" x][long text that no small string holds, at all][another one of that length, or so]"},
        {Separator::semicolon, "16-Apr-2016 17:15:14.200; 0,5;", "[16-Apr-2016 17:15:14.200][0,5]"},
        {Separator::tab, "\ta b\t\t c \t", "[][a b][][c]"},
        {Separator::tab, "\t", "[]"},
        {Separator::tab, "\"a\tb\"\tc", "[a\tb][c]"},
        {Separator::blank, " a \t b,c  ", "[a][b,c]"},
        {Separator::blank, "\"a b\"c d", "[a bc][d]"},
        {Separator::any, "\"a  b\", c;'d", "[a b][c][][d]"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(joined(FieldSplitter(c.separator).split(c.line)), c.expected) << c.line;
        EXPECT_LE(FieldSplitter(c.separator, 1).split(c.line).size(), 1U) << c.line;
    }
}

TEST(FieldSplitter, AnySeparatesAsTokensDo)
{
    constexpr std::string_view kCharacters = "ab1 \t,;'\"";
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 random(seed);
        std::string line;
        for (auto length = random() % 30; length > 0; --length) line += kCharacters[random() % kCharacters.size()];
        FieldSplitter splitter;
        const std::span<const std::string_view> fields = splitter.split(line);
        EXPECT_EQ(std::vector<std::string>(fields.begin(), fields.end()), fields_of_line(line)) << "seed " << seed;
    }
}

TEST(FieldSplitter, MarksAroundTheNamesAreDropped)
{
    struct Case {
        Separator separator;
        const char* header;
        const char* expected;
    };
    const Case cases[] = {{Separator::comma, "#Elapsed,Time", "Elapsed,Time"},
                          {Separator::comma, " // a,b |", "a,b"},
                          {Separator::blank, "%  GPST  Q|", "GPST  Q"},
                          {Separator::comma, "/a,|", "a,"},
                          {Separator::tab, "#\ta\t", "\ta\t"},
                          {Separator::comma, "|a,#b", "|a,#b"},
                          {Separator::comma, "", ""}};
    for (const Case& c : cases) EXPECT_EQ(without_marks(c.separator, c.header), c.expected) << c.header;
}

} // namespace
} // namespace tarvo

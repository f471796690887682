#include "text/line_reader.h"

#include "test_folder.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvo {
namespace {

TEST(LineReader, ReadsEveryKindOfLineEnd)
{
    struct Case {
        const char* label;
        std::string bytes;
        std::vector<std::string> lines;
    };
    const Case cases[] = {{"empty", "", {}},
                          {"one line end", "\n", {""}},
                          {"LF", "a\nb\n", {"a", "b"}},
                          {"CR LF", "a\r\n\r\nb\r\n", {"a", "", "b"}},
                          {"no last line end", "a\r\nb", {"a", "b"}},
                          {"a CR of its own stays", "a\rb\r\r\nc\rd", {"a\rb\r", "c\rd"}},
                          {"cut within the last line end", "a\r\nb\r", {"a", "b"}},
                          {"byte order mark",
                           "\xEF\xBB\xBF"
                           "a\n\xEF\xBB\xBF"
                           "b",
                           {"a", "\xEF\xBB\xBF"
                                 "b"}},
                          {"NUL bytes", std::string("a\0b\n\0", 5), {std::string("a\0b", 3), std::string("\0", 1)}}};
    const TestFolder folder;
    for (const Case& c : cases) {
        LineReader reader(folder.write("lines.txt", c.bytes));
        std::vector<std::string> lines;
        std::string_view line;
        while (reader.next_line(line) == LineReader::Outcome::line) lines.emplace_back(line);
        EXPECT_EQ(lines, c.lines) << c.label;
        EXPECT_EQ(reader.line_number(), static_cast<std::int64_t>(c.lines.size())) << c.label;
        EXPECT_EQ(reader.characters_consumed(), static_cast<std::int64_t>(c.bytes.size())) << c.label;
    }
}

TEST(LineReader, SkipsALineOverTheLimitAndGoesOnBehindIt)
{
    const std::string longest(LineReader::kLongestLine, 'x');
    const TestFolder folder;
    for (const std::string ending : {"\n", "\r\n"}) {
        for (const std::string& too_long : {longest + "y", longest + longest + longest}) {
            LineReader reader(folder.write("long.txt", "a" + ending + too_long + ending + longest + ending + "b" +
                                                           ending + too_long));
            std::string_view line;
            EXPECT_EQ(reader.next_line(line), LineReader::Outcome::line);
            EXPECT_EQ(reader.next_line(line), LineReader::Outcome::too_long);
            EXPECT_EQ(reader.next_line(line), LineReader::Outcome::line);
            EXPECT_EQ(line, longest);
            EXPECT_EQ(reader.next_line(line), LineReader::Outcome::line);
            EXPECT_EQ(line, "b");
            EXPECT_EQ(reader.next_line(line), LineReader::Outcome::too_long);
            EXPECT_EQ(reader.next_line(line), LineReader::Outcome::end);
            EXPECT_EQ(reader.line_number(), 5);
        }
    }
}

TEST(LineReader, ReadsLinesAcrossBlocks)
{
    std::string bytes;
    for (int line = 0; line < 60000; ++line) bytes += std::to_string(line * 7919) + "\r\n";
    const TestFolder folder;
    LineReader reader(folder.write("many.txt", bytes));
    std::string_view line;
    for (int number = 0; number < 60000; ++number) {
        ASSERT_EQ(reader.next_line(line), LineReader::Outcome::line);
        ASSERT_EQ(line, std::to_string(number * 7919));
    }
    EXPECT_EQ(reader.next_line(line), LineReader::Outcome::end);
}

TEST(LineReader, NamesTheFileThatItCannotOpen)
{
    const TestFolder folder;
    for (const std::string& name : {folder.path("absent.csv"), folder.path("")}) {
        try {
            const LineReader reader(name);
            ADD_FAILURE() << name;
        } catch (const std::runtime_error& fault) {
            EXPECT_NE(std::string(fault.what()).find(name), std::string::npos);
        }
    }
}

} // namespace
} // namespace tarvo

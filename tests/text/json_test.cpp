#include "text/json.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tarvo {
namespace {

TEST(Json, ReadsWhatItWrites)
{
    const std::string text =
        "{\n  \"version\": 1,\n  \"layers\": [\n    {\"a\": -0.25, \"b\": true, \"c\": null},\n    {}\n"
        "  ],\n  \"name\": \"a \\\"b\\\" \\\\ \\u000a \xC3\xA9\",\n  \"none\": []\n}\n";
    EXPECT_EQ(json_file_text(read_json(text)), text);
    EXPECT_EQ(read_json("\xEF\xBB\xBF \"\\u00e9\\uD83D\\uDE00\\/\\t\" ").text, "\xC3\xA9\xF0\x9F\x98\x80/\t");
}

TEST(Json, RefusesEverythingElseWithTheLine)
{
    struct Case {
        std::string text;
        const char* fault;
    };
    const Case cases[] = {
        {"", "line 1: a value was expected"},
        {"{} x", "line 1: the end of the text was expected"},
        {"{\n\"a\": 1\n\"b\": 2}", "line 3: \",\" or \"}\" was expected"},
        {"[1,\n]", "line 2: a value was expected"},
        {"{\"a\": 1, \"a\": 2}", "line 1: another name than \"a\", which stood there before, was expected"},
        {"01", "line 1: a value was expected"},
        {"+1", "line 1: a value was expected"},
        {"1.", "line 1: a value was expected"},
        {"1e999", "line 1: a value was expected"},
        {"NaN", "line 1: a value was expected"},
        {"\"a\nb\"", "line 1: a closing quote was expected"},
        {"\"\xC0\xAF\"", "line 1: UTF-8 was expected"},
        {"\"\xED\xA0\x80\"", "line 1: UTF-8 was expected"},
        {"\"\\x\"", "line 1: an escape that JSON has was expected"},
        {"\"\\uD83D\"", "line 1: the second half of a surrogate pair was expected"},
        {std::string(65, '['), "line 1: less nesting was expected"},
    };
    for (const Case& c : cases) {
        try {
            read_json(c.text);
            ADD_FAILURE() << c.text;
        } catch (const std::runtime_error& fault) {
            EXPECT_STREQ(fault.what(), c.fault) << c.text;
        }
    }
}

} // namespace
} // namespace tarvo

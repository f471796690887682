#include "text/terminal_text.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(TerminalText, NothingInItActsOnATerminal)
{
    struct Case {
        const char* text;
        const char* shown;
    };
    const Case cases[] = {
        {"", ""},
        {"b\xc3\xa5t \xe2\x82\xac \xf0\x9f\x90\x9f\n", "b\xc3\xa5t \xe2\x82\xac \xf0\x9f\x90\x9f\n"},
        {"\x1b[2J\a\r\t\x7f", "\\u{1b}[2J\\u{7}\\u{d}\\u{9}\\u{7f}"},
        {"\xc2\x9b"
         "31m \xc2\xa0",
         "\\u{9b}31m \xc2\xa0"},
        {"a\xe2\x80\xae"
         "fdp.exe\xe2\x81\xa6",
         "a\\u{202e}fdp.exe\\u{2066}"},
        {"\xd8\x9c\xe2\x80\xa8", "\\u{61c}\\u{2028}"},
        {"\x9b\xff\xc3", "\\x9b\\xff\\xc3"},
        {"\xc0\x9b\xe0\x82\x9b", "\\xc0\\x9b\\xe0\\x82\\x9b"},
        {"\xed\xa0\x80\xf4\x90\x80\x80", "\\xed\\xa0\\x80\\xf4\\x90\\x80\\x80"},
    };
    for (const Case& c : cases) EXPECT_EQ(terminal_text(c.text), c.shown);
}

} // namespace tarvo

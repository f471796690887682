#include "live/request_buffer.h"

#include "live/definition_requests.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace tarvo {

TEST(RequestBuffer, CutsRequestsWhateverThePieces)
{
    struct Case {
        const char* label;
        std::string bytes;
        std::vector<std::string> requests;
        bool last_by_closing;
    };
    const Case cases[] = {
        {"nothing", "", {}, false},
        {"one line", "ab\n", {"ab"}, false},
        {"CR LF", "ab\r\n", {"ab"}, false},
        {"one of two CRs is data", "ab\r\r\n", {"ab\r"}, false},
        {"empty lines", "\n\r\n", {"", ""}, false},
        {"no line end", "ab", {"ab"}, true},
        {"the last without line end, its CR is data", "a\nb\r", {"a", "b\r"}, true},
        {"zeros", std::string("\0\0\n\0", 4), {std::string("\0\0", 2), std::string("\0", 1)}, true},
    };
    std::mt19937 random(1);
    for (const Case& c : cases) {
        for (int run = 0; run < 20; ++run) {
            RequestBuffer buffer;
            std::vector<std::string> requests;
            bool by_closing = false;
            const auto take = [&] {
                while (buffer.has_request()) {
                    const std::optional<RequestBuffer::Request> request = buffer.next();
                    requests.emplace_back(request->text);
                    by_closing = request->end == RequestBuffer::End::closing;
                }
                EXPECT_FALSE(buffer.next()) << c.label;
            };
            for (std::size_t at = 0; at < c.bytes.size();) {
                const std::size_t piece = 1 + random() % 3;
                buffer.append(std::string_view(c.bytes).substr(at, piece));
                at += piece;
                if (random() % 2 == 0) take();
            }
            buffer.end();
            take();
            EXPECT_EQ(requests, c.requests) << c.label;
            EXPECT_EQ(by_closing, c.last_by_closing) << c.label;
        }
    }
}

TEST(RequestBuffer, ARequestMayHave64KiB)
{
    struct Case {
        const char* label;
        std::size_t length;
        const char* end; // null: the sender has ended
        bool too_long;
    };
    const Case cases[] = {
        {"the limit", kLongestRequest, "\n", false},
        {"the limit, CR LF", kLongestRequest, "\r\n", false},
        {"one more", kLongestRequest + 1, "\n", true},
        {"one more, CR LF", kLongestRequest + 1, "\r\n", true},
        {"the limit by closing", kLongestRequest, nullptr, false},
        {"one more by closing", kLongestRequest + 1, nullptr, true},
        {"unfinished", kLongestRequest, "", false},
        {"unfinished with a CR", kLongestRequest, "\r", false},
        {"unfinished, one more", kLongestRequest + 1, "", true},
        {"unfinished with a CR, one more", kLongestRequest + 1, "\r", true},
    };
    for (const Case& c : cases) {
        RequestBuffer buffer;
        buffer.append("before\n");
        buffer.append(std::string(c.length, 'x'));
        if (c.end != nullptr) buffer.append(c.end);
        if (c.end == nullptr) buffer.end();
        EXPECT_FALSE(buffer.is_too_long()) << c.label; // the first request is not
        buffer.next();
        EXPECT_EQ(buffer.is_too_long(), c.too_long) << c.label;
    }
}

} // namespace tarvo

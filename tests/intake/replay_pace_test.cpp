#include "intake/replay_pace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tarvo {
namespace {

TEST(ReplayPace, WaitsOutTheDatasOwnTime)
{
    using std::chrono::milliseconds;
    struct Line {
        double time; // seconds
        int work;    // milliseconds that showing it took
        int wait;    // milliseconds
    };
    struct Case {
        const char* label;
        const char* pace;
        std::vector<Line> lines;
    };
    const Case cases[] = {
        {"slider", "slider", {{0, 0, 0}, {1, 0, 0}}},
        {"as it was", "1", {{5, 0, 0}, {6, 0, 1000}, {6.5, 100, 400}, {6.5, 0, 0}}},
        {"twice as fast", "2", {{0, 0, 0}, {1, 0, 500}}},
        {"a gap of ten seconds stands, a longer one is cut", "10", {{0, 0, 0}, {10, 0, 1000}, {20.0001, 0, 100}}},
        {"a clock that runs back", "1", {{10, 0, 0}, {4, 0, 0}, {5, 0, 1000}}},
        {"parts of a millisecond add up", "50", {{0, 0, 0}, {0.03, 0, 0}, {0.06, 0, 1}}},
        {"a delay is caught up", "1", {{0, 0, 0}, {0.5, 900, 0}, {1, 0, 100}}},
        {"of a long one, the last second", "1", {{0, 0, 0}, {0, 5000, 0}, {1.2, 0, 200}}},
    };
    for (const Case& c : cases) {
        ReplayPace pace;
        pace.choose(pace_of_text(c.pace));
        ReplayClock::time_point now = ReplayClock::time_point(std::chrono::hours(1));
        for (const Line& line : c.lines) {
            now += milliseconds(line.work);
            const int wait = pace.wait_behind(std::llround(line.time * 10'000), now);
            EXPECT_EQ(wait, line.wait) << c.label << ", line at " << line.time;
            now += milliseconds(wait);
        }
    }
}

} // namespace
} // namespace tarvo

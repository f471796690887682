#include "processing/track_skip.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(TrackSkip, KeepsThePanControlInItsRange)
{
    struct Case {
        std::int32_t pan_span, position;
        PanRange range;
    };
    const Case cases[] = {
        {0, 5, {0, 1, 0, 0}},
        {-1, 0, {0, 1, 0, 0}},
        {32766, 40000, {32766, 1, 32766, 32766}},
        {32767, 16384, {32767, 2, 16383, 16383}},
        {65533, 7, {65533, 3, 21844, 7}}, // a skip of 2 would leave exactly 32767 positions
        {65532, 7, {65532, 2, 32766, 7}},
        {1000000, 0, {1000000, 31, 32258, 0}},
        {2147483647, 0, {2147483647, 65541, 32765, 0}},
    };
    for (const Case& c : cases) {
        const PanRange range = calculate_track_skip(c.pan_span, c.position);
        EXPECT_EQ(range.PanSpan, c.range.PanSpan) << c.pan_span;
        EXPECT_EQ(range.TrackSkip, c.range.TrackSkip) << c.pan_span;
        EXPECT_EQ(range.PanMax, c.range.PanMax) << c.pan_span;
        EXPECT_EQ(range.position, c.range.position) << c.pan_span;
    }
}

} // namespace
} // namespace tarvo

#pragma once

#include <array>
#include <chrono>
#include <cstdint>

namespace tarvo {

using LiveClock = std::chrono::steady_clock;

// How many lines a second have come in of late: a count over the second that ended with the last full tenth.
class LineRate {
public:
    void note_line(LiveClock::time_point now)
    {
        move_to(tenth_of(now));
        ++counts_[element(newest_tenth_)];
    }

    double lines_per_second(LiveClock::time_point now)
    {
        move_to(tenth_of(now));
        double lines = 0;
        for (const double count : counts_) lines += count;
        return lines - counts_[element(newest_tenth_)];
    }

private:
    static constexpr std::int64_t kTenths = 10;

    static std::int64_t tenth_of(LiveClock::time_point now)
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() / 100;
    }
    static std::size_t element(std::int64_t tenth) { return static_cast<std::size_t>(tenth % (kTenths + 1)); }

    void move_to(std::int64_t tenth)
    {
        if (tenth - newest_tenth_ > kTenths) newest_tenth_ = tenth - kTenths - 1;
        while (newest_tenth_ < tenth) counts_[element(++newest_tenth_)] = 0;
    }

    std::array<double, kTenths + 1> counts_ = {}; // by tenth of a second, round and round; the newest is still filling
    std::int64_t newest_tenth_ = 0;
};

} // namespace tarvo

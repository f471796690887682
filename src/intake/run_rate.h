#pragma once

#include "ports/run_display.h"

#include <optional>
#include <string>

namespace tarvo {

// How fast a run goes and how long it will take, from its counters now and then.
class RunRate {
public:
    // seconds: of any clock that never falls. Measures over half a second or more, so that the numbers can be read.
    void update(const RunCounters& counters, double seconds);

    std::optional<double> lines_per_second() const { return lines_per_second_; } // none: not measured yet

    // "125,000 lines/s, 0:12 left"; empty before there is anything to say.
    std::string text() const;

private:
    struct Moment {
        double seconds = 0;
        RunCounters counters;
    };
    std::optional<Moment> last_;
    std::optional<double> lines_per_second_;
    std::optional<double> seconds_left_;
};

} // namespace tarvo

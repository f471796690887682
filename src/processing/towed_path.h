#pragma once

#include "text/numbers.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace tarvo {

// A place in the survey's grid, metres; kNull: not known.
struct PathPlace {
    double east = kNull;
    double north = kNull;

    bool is_known() const { return is_valid_channel(east) && is_valid_channel(north); }
};

// Where a towed fish is: `layback` metres behind where the boat was `latency` ago, along the way that it came. The way
// is straight between positions. It begins anew after ten seconds without a position and where time runs back.
class TowedPath {
public:
    TowedPath() = default;
    TowedPath(double layback, std::int64_t latency) : layback_(layback), latency_(latency) {} // metres; ten-thousandths

    bool moves() const { return layback_ > 0 || latency_ > 0; }
    void begin_anew();

    // The fish's place at a line's time, once the line's own position is taken in; not known where the way does not
    // reach so far back, or has not come so far yet.
    PathPlace place_of_fish(std::int64_t time, const PathPlace& position);

private:
    struct Fix {
        std::int64_t time = 0;
        PathPlace place;
        double along = 0; // metres from the first fix
    };

    void append(std::int64_t time, const PathPlace& place);
    double distance_along(std::int64_t time);
    PathPlace place_along(double distance);

    double layback_ = 0;
    std::int64_t latency_ = 0;
    std::deque<Fix> fixes_; // those before the newest places of the fish are let go
    std::size_t seen_ = 0;  // the last fix at or before the time asked for last
    std::optional<std::int64_t> last_time_;
};

} // namespace tarvo

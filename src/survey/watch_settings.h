#pragma once

#include <optional>

namespace tarvo {

// When a live survey asks for the operator's attention.
struct WatchSettings {
    double AlarmSilence = 5;                  // seconds without a line; 0: never
    std::optional<double> AlarmLeastField;    // nT, of every sensor; none: no limit
    std::optional<double> AlarmGreatestField; // likewise
    std::optional<double> AlarmLeastAltitude; // metres
    std::optional<double> AlarmGreatestAltitude;
    bool AlarmSound = false;

    bool operator==(const WatchSettings&) const = default;
};

} // namespace tarvo

#pragma once

#include <string>

namespace tarvo {

// How picks are marked and laid on the track.
struct PickSettings {
    bool ShowNewPickDialog = true;  // else a pick is saved at once under the next name of its series
    bool DeferPickCombo = false;    // a new pick does not become the current one, and is listed with the next change
    double DuplicateRadius = 0;     // metres: nearer to another, a new pick is asked about; 0: on the same sample alone
    std::string PickTypeNames = {}; // "1 mine; 2 cable"
    double PickTolerance = 10.0;    // metres: a pick farther from its sample stays where it was marked

    bool operator==(const PickSettings&) const = default;
};

} // namespace tarvo

#pragma once

namespace tarvo {

// How picks are marked and laid on the track.
struct PickSettings {
    bool ShowNewPickDialog = true; // else a pick is saved at once under the next name of its series
    bool DeferPickCombo = false;   // a new pick does not become the current one, and is listed with the next change
    double PickTolerance = 10.0;   // metres: a pick farther from its sample stays where it was marked

    bool operator==(const PickSettings&) const = default;
};

} // namespace tarvo

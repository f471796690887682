#pragma once

namespace tarvo {

// The two switches of marking a pick.
struct PickSettings {
    bool ShowNewPickDialog = true; // else a pick is saved at once under the next name of its series
    bool DeferPickCombo = false;   // a new pick does not become the current one, and is listed with the next change

    bool operator==(const PickSettings&) const = default;
};

} // namespace tarvo

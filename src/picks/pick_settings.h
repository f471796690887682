#pragma once

#include "ports/settings_store.h"

#include <string_view>

namespace tarvo {

// How picks are marked and laid on the track. The switches are stored as 1 and 0.
struct PickSettings {
    bool ShowNewPickDialog = true; // else a pick is saved at once under the next name of its series
    bool DeferPickCombo = false;   // a new pick does not become the current one, and is listed with the next change
    double PickTolerance = 10.0;   // metres: a pick farther from its sample stays where it was marked
};

SettingOutcome set_pick_setting(PickSettings& settings, std::string_view key, std::string_view text);

// A stored value that would be refused, or none, leaves the switch as it is.
void read_pick_settings(PickSettings& settings, const SettingsStore& store);
void write_pick_settings(const PickSettings& settings, SettingsStore& store);

} // namespace tarvo

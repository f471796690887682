#pragma once

#include "ports/settings_store.h"

#include <string_view>

namespace tarvo {

// The two switches of marking a pick; stored as 1 and 0.
struct PickSettings {
    bool ShowNewPickDialog = true; // else a pick is saved at once under the next name of its series
    bool DeferPickCombo = false;   // a new pick does not become the current one, and is listed with the next change
};

SettingOutcome set_pick_setting(PickSettings& settings, std::string_view key, std::string_view text);

// A stored value that would be refused, or none, leaves the switch as it is.
void read_pick_settings(PickSettings& settings, const SettingsStore& store);
void write_pick_settings(const PickSettings& settings, SettingsStore& store);

} // namespace tarvo

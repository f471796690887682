#include "picks/pick_settings.h"

#include "text/numbers.h"

namespace tarvo {

namespace {

struct Switch {
    const char* key;
    bool PickSettings::*value;
};
constexpr Switch kSwitches[] = {{"ShowNewPickDialog", &PickSettings::ShowNewPickDialog},
                                {"DeferPickCombo", &PickSettings::DeferPickCombo}};

} // namespace

SettingOutcome set_pick_setting(PickSettings& settings, std::string_view key, std::string_view text)
{
    for (const Switch& known : kSwitches) {
        if (key != known.key) continue;
        const std::optional<double> value = numeric_value(text);
        if (value != 0.0 && value != 1.0) return SettingOutcome::refused;
        settings.*known.value = value == 1.0;
        return SettingOutcome::taken;
    }
    return SettingOutcome::unknown_key;
}

void read_pick_settings(PickSettings& settings, const SettingsStore& store)
{
    for (const Switch& known : kSwitches) {
        const std::string text = store.read(kSettingsApplication, kSettingsSection, known.key, kNoSetting);
        if (text != kNoSetting) set_pick_setting(settings, known.key, text);
    }
}

void write_pick_settings(const PickSettings& settings, SettingsStore& store)
{
    for (const Switch& known : kSwitches) {
        store.write(kSettingsApplication, kSettingsSection, known.key, settings.*known.value ? "1" : "0");
    }
}

} // namespace tarvo

#include "display/display_settings.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

constexpr double kLargestFloat = std::numeric_limits<float>::max();

// One stored setting: what its value must be, where it goes and how it is written.
struct StoredSetting {
    const char* key;
    bool (*is_accepted)(double value);
    void (*take)(DisplaySettings& settings, double value);
    std::string (*text)(const DisplaySettings& settings);
};

bool is_positive(double value)
{
    return value > 0;
}
bool is_over_ten(double value)
{
    return value > 10;
}

// Accepted and written as it stands: member is the setting's place.
template <double DisplaySettings::*member>
void take_real(DisplaySettings& settings, double value)
{
    settings.*member = value;
}
template <double DisplaySettings::*member>
std::string real_text(const DisplaySettings& settings)
{
    return format_shortest(settings.*member);
}

bool is_whole_number_in_range(double value)
{
    return std::abs(std::nearbyint(value)) <= std::numeric_limits<std::int32_t>::max();
}
void take_timing_tick(DisplaySettings& settings, double value)
{
    settings.timing_tick = rounded_to_int32(value);
}
std::string timing_tick_text(const DisplaySettings& settings)
{
    return std::to_string(settings.timing_tick);
}

bool is_axis_length(double value)
{
    return value > 25 && value <= kLargestFloat;
}
void take_axis_length(DisplaySettings& settings, double value)
{
    settings.track_axis_length = static_cast<float>(value);
}
std::string axis_length_text(const DisplaySettings& settings)
{
    return format_shortest(settings.track_axis_length);
}

void take_gradient_range(DisplaySettings& settings, double value)
{
    settings.gradient_max_range = std::max(value, kSmallestGradientRange);
    settings.reference_gradient_range = settings.gradient_max_range;
}

using Settings = DisplaySettings;
constexpr StoredSetting kStoredSettings[] = {
    {"TimingTick", is_whole_number_in_range, take_timing_tick, timing_tick_text},
    {"TrackAxisTickSpacing", [](double value) { return value >= 0; }, take_real<&Settings::track_axis_tick_spacing>,
     real_text<&Settings::track_axis_tick_spacing>},
    {"TrackAxisLength", is_axis_length, take_axis_length, axis_length_text},
    {"ElevationMaxRange", is_over_ten, take_real<&Settings::elevation_max_range>,
     real_text<&Settings::elevation_max_range>},
    {"TMIMaxRange", is_over_ten, take_real<&Settings::tmi_max_range>, real_text<&Settings::tmi_max_range>},
    {"TMITickSpacing", is_positive, take_real<&Settings::tmi_tick_spacing>, real_text<&Settings::tmi_tick_spacing>},
    {"GradientMaxRange", is_positive, take_gradient_range, real_text<&Settings::gradient_max_range>},
    {"GradientTickSpacing", is_positive, take_real<&Settings::gradient_tick_spacing>,
     real_text<&Settings::gradient_tick_spacing>},
};

} // namespace

SettingOutcome set_display_setting(DisplaySettings& settings, std::string_view key, std::string_view text)
{
    const auto* const setting = std::find_if(std::begin(kStoredSettings), std::end(kStoredSettings),
                                             [key](const StoredSetting& candidate) { return candidate.key == key; });
    if (setting == std::end(kStoredSettings)) return SettingOutcome::unknown_key;
    const std::optional<double> value = numeric_value(text);
    if (!value || !setting->is_accepted(*value)) return SettingOutcome::refused;
    setting->take(settings, *value);
    return SettingOutcome::taken;
}

DisplaySettings read_display_settings(const SettingsStore& store)
{
    DisplaySettings settings;
    for (const StoredSetting& setting : kStoredSettings) {
        const std::string text = store.read(kSettingsApplication, kSettingsSection, setting.key, kNoSetting);
        if (text != kNoSetting) set_display_setting(settings, setting.key, text);
    }
    return settings;
}

void write_display_settings(const DisplaySettings& settings, SettingsStore& store)
{
    for (const StoredSetting& setting : kStoredSettings) {
        store.write(kSettingsApplication, kSettingsSection, setting.key, setting.text(settings));
    }
}

} // namespace tarvo

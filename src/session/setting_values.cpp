// Values of settings as texts, and texts as values.

#include "session/settings_table.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

// Each takes the value of a text and leaves its place alone when the text is refused.

bool take(bool& place, const Setting&, std::string_view text)
{
    const std::optional<double> value = numeric_value(text);
    if (value != 0.0 && value != 1.0) return false;
    place = value == 1.0;
    return true;
}

bool take(std::int32_t& place, const Setting& setting, std::string_view text)
{
    const std::optional<double> value = numeric_value(text);
    if (!value || !setting.limits.contains(*value)) return false;
    const double whole = setting.whole == WholeNumber::rounded ? std::nearbyint(*value) : std::trunc(*value);
    if (std::abs(whole) > std::numeric_limits<std::int32_t>::max()) return false;
    place = static_cast<std::int32_t>(whole);
    return true;
}

bool take(float& place, const Setting& setting, std::string_view text)
{
    const std::optional<double> value = numeric_value(text);
    if (!value || !setting.limits.contains(*value)) return false;
    const auto single = static_cast<float>(*value);
    if (std::isinf(single) || (single == 0 && !setting.limits.contains(0))) return false;
    place = single;
    return true;
}

bool take(double& place, const Setting& setting, std::string_view text)
{
    const std::optional<double> value = numeric_value(text);
    if (!value || !setting.limits.contains(*value)) return false;
    place = *value;
    return true;
}

bool take(std::optional<double>& place, const Setting& setting, std::string_view text)
{
    if (trimmed(text).empty()) {
        place.reset();
        return true;
    }
    double value = 0;
    if (!take(value, setting, text)) return false;
    place = value;
    return true;
}

bool take(std::string& place, const Setting& setting, std::string_view text)
{
    const auto is_text = [text](const char* choice) { return text == choice; };
    if (!setting.choices.empty() && std::none_of(setting.choices.begin(), setting.choices.end(), is_text)) return false;
    place = text;
    return true;
}

bool take(QuantityRange& place, const Setting&, std::string_view text)
{
    const std::optional<QuantityRange> range = quantity_range_of(text);
    if (range) place = *range;
    return range.has_value();
}

std::string exact(bool value)
{
    return value ? "1" : "0";
}
std::string exact(std::int32_t value)
{
    return std::to_string(value);
}
std::string exact(float value)
{
    return format_shortest(value);
}
std::string exact(double value)
{
    return format_shortest(value);
}
std::string exact(const std::optional<double>& value)
{
    return value ? format_shortest(*value) : "";
}
std::string exact(const std::string& value)
{
    return value;
}
std::string exact(const QuantityRange& value)
{
    return quantity_range_text(value);
}

constexpr int kShownDecimals = 1;

template <typename Value>
std::string shown(const Value& value)
{
    return exact(value);
}
std::string shown(float value)
{
    return format_fixed(static_cast<double>(value), kShownDecimals);
}
std::string shown(double value)
{
    return format_fixed(value, kShownDecimals);
}

// A place leads to what may be written, the settings that are only read among it.
SettingPlace place_of(const Settings& settings, const Setting& setting)
{
    return setting.place(const_cast<Settings&>(settings));
}

} // namespace

SettingOutcome take_setting_text(Settings& settings, const Setting& setting, std::string_view text)
{
    const auto take_it = [&](auto* place) { return take(*place, setting, text); };
    if (!std::visit(take_it, setting.place(settings))) return SettingOutcome::refused;
    if (setting.settle != nullptr) setting.settle(settings);
    return SettingOutcome::taken;
}

SettingOutcome set_setting(Settings& settings, std::string_view key, std::string_view text)
{
    const Setting* const setting = find_setting(key);
    return setting == nullptr ? SettingOutcome::unknown_key : take_setting_text(settings, *setting, text);
}

std::string setting_text(const Settings& settings, const Setting& setting)
{
    return std::visit([](const auto* place) { return exact(*place); }, place_of(settings, setting));
}

std::string shown_setting_text(const Settings& settings, const Setting& setting)
{
    return std::visit([](const auto* place) { return shown(*place); }, place_of(settings, setting));
}

bool is_switch(const Setting& setting)
{
    Settings settings;
    return std::holds_alternative<bool*>(setting.place(settings));
}

void read_settings(Settings& settings, const SettingsStore& store)
{
    for (const Setting& setting : settings_table()) {
        const std::string text = store.read(kSettingsApplication, kSettingsSection, setting.key, kNoSetting);
        if (text != kNoSetting) take_setting_text(settings, setting, text);
    }
}

void write_settings(const Settings& settings, SettingsStore& store)
{
    for (const Setting& setting : settings_table()) {
        store.write(kSettingsApplication, kSettingsSection, setting.key, setting_text(settings, setting));
    }
}

} // namespace tarvo

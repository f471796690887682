// What people read about settings.

#include "session/settings_table.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

std::string joined(std::span<const char* const> texts)
{
    std::string all;
    for (const char* const text : texts) all += (all.empty() ? "" : ", ") + std::string(text);
    return all;
}

// Without an exponent where the number is a whole one.
std::string limit_text(double limit)
{
    return limit == std::trunc(limit) ? format_fixed(limit, 0) : format_shortest(limit);
}

std::string limits_text(const SettingLimits& limits)
{
    std::string text;
    if (std::isfinite(limits.low)) text = (limits.low_is_valid ? "at least " : "over ") + limit_text(limits.low);
    // The largest number of its kind is no limit that anybody has to know.
    constexpr double kWorthTelling = std::numeric_limits<std::int32_t>::max();
    if (limits.high < kWorthTelling) text += (text.empty() ? "up to " : ", up to ") + limit_text(limits.high);
    return text;
}

std::string values_text(const bool*, const Setting&)
{
    return "0 or 1";
}
std::string values_text(const std::string*, const Setting& setting)
{
    return setting.choices.empty() ? "a text" : joined(setting.choices);
}
std::string values_text(const std::optional<double>*, const Setting& setting)
{
    const std::string limits = limits_text(setting.limits);
    return (limits.empty() ? "a number" : limits) + ", or nothing";
}
std::string values_text(const QuantityRange*, const Setting&)
{
    return "auto, or low and high with a blank between";
}
std::string values_text(const void*, const Setting& setting)
{
    const std::string limits = limits_text(setting.limits);
    return limits.empty() ? "a number" : limits;
}

std::string caption_without_mark(const Setting& setting)
{
    std::string caption = setting.caption;
    caption.erase(std::remove(caption.begin(), caption.end(), '&'), caption.end());
    return caption;
}

} // namespace

std::string accepted_values_text(const Setting& setting)
{
    Settings settings;
    return std::visit([&setting](const auto* place) { return values_text(place, setting); }, setting.place(settings));
}

std::string plain_caption(const Setting& setting)
{
    const std::string caption = caption_without_mark(setting);
    return *setting.unit == '\0' ? caption : caption + " (" + setting.unit + ")";
}

std::string refusal_text(const Setting& setting, std::string_view text)
{
    if (*setting.refusal != '\0') return setting.refusal;
    return plain_caption(setting) + ": " + accepted_values_text(setting) + " was expected, found \"" +
           std::string(text) + '"';
}

std::string help_text(const Setting& setting)
{
    switch (setting.effect) {
    case SettingEffect::gradients: return std::string(setting.help) + ". A change recalculates the gradients.";
    case SettingEffect::reload: return std::string(setting.help) + ". A change reloads the data file.";
    case SettingEffect::none:
    case SettingEffect::redraw:
    case SettingEffect::residual: break;
    }
    return setting.help;
}

std::string settings_usage_text(std::size_t width)
{
    std::string text;
    std::size_t column = 0;
    for (const Setting& setting : settings_table()) {
        const std::string_view key = setting.key;
        const bool fits = column + 1 + key.size() <= width;
        if (!text.empty()) text += fits ? ' ' : '\n';
        column = (fits && !text.empty() ? column + 1 : 0) + key.size();
        text += key;
    }
    return text + '\n';
}

std::string settings_manual_text()
{
    const Settings defaults;
    std::string text = "| setting | default | values | unit | what it does |\n|---|---|---|---|---|\n";
    for (const Setting& setting : settings_table()) {
        text += std::string("| `") + setting.key + "` | " + setting_text(defaults, setting) + " | " +
                accepted_values_text(setting) + " | " + setting.unit + " | " + caption_without_mark(setting) + ": " +
                setting.help + " |\n";
    }
    return text;
}

} // namespace tarvo

#pragma once

#include "ports/settings_store.h"
#include "survey/settings.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace tarvo {

// Where a setting's value lives. A switch reads and writes 0 and 1; a number that may be left open is the empty text
// then. A new kind of value needs its line here and its two conversions in setting_values.cpp.
using SettingPlace =
    std::variant<bool*, std::int32_t*, float*, double*, std::optional<double>*, std::string*, QuantityRange*>;

// The numbers that are accepted, before they are rounded.
struct SettingLimits {
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
    bool low_is_valid = true;

    bool contains(double value) const { return (low_is_valid ? value >= low : value > low) && value <= high; }
};
constexpr SettingLimits over(double low, double high = std::numeric_limits<double>::infinity())
{
    return {low, high, false};
}
constexpr SettingLimits at_least(double low, double high = std::numeric_limits<double>::infinity())
{
    return {low, high, true};
}

// What a change asks for.
enum class SettingEffect { none, redraw, residual, gradients, reload };

// Where the processing dialog has the setting's box. none: it is set elsewhere in the window, or by --set alone.
enum class SettingGroup { none, samples, filters, corrections, residual, display, grid };

enum class WholeNumber { truncated, rounded }; // how a real becomes a whole number

struct Setting {
    const char* key;                  // in the store and for --set
    SettingPlace (*place)(Settings&); // its default is what is found there in new settings
    SettingEffect effect = SettingEffect::none;
    SettingGroup group = SettingGroup::none;
    const char* caption = ""; // of its box, "&" before the letter that leads there
    const char* unit = "";    // behind the caption and in the manual
    const char* help = "";    // what the number means, in the box's tooltip and in the manual
    SettingLimits limits = {};
    WholeNumber whole = WholeNumber::truncated;
    std::span<const char* const> choices = {}; // all that a text may be; none: any text
    const char* box = "";                      // name of its box
    const char* refusal = "";                  // given message for a refused text; empty: one made from the above
    void (*settle)(Settings&) = nullptr;       // brings in order what goes with a value just taken
};

// All settings, in the order of the dialog's boxes and checks.
std::span<const Setting> settings_table();
const Setting* find_setting(std::string_view key); // nullptr: there is none of that key

// Gives a setting the value of a text. A refused text leaves all as it was.
SettingOutcome take_setting_text(Settings& settings, const Setting& setting, std::string_view text);
SettingOutcome set_setting(Settings& settings, std::string_view key, std::string_view text);

// The text that reads back to the value; as a box shows it: whole numbers, and reals with one decimal.
std::string setting_text(const Settings& settings, const Setting& setting);
std::string shown_setting_text(const Settings& settings, const Setting& setting);
bool is_switch(const Setting& setting);

// A stored value that would be refused, or none, leaves the setting as it is.
void read_settings(Settings& settings, const SettingsStore& store);
void write_settings(const Settings& settings, SettingsStore& store);

// For people: "over 25", "0 or 1", "viridis, grey"; "Section length (m)" without its mark; the message for a refused
// text of a box; help and effect.
std::string accepted_values_text(const Setting& setting);
std::string plain_caption(const Setting& setting);
std::string refusal_text(const Setting& setting, std::string_view text);
std::string help_text(const Setting& setting);

// The keys in lines of at most `width` characters, for the programs' --help, and the table of the README.
std::string settings_usage_text(std::size_t width);
std::string settings_manual_text();

} // namespace tarvo

#include "display/display_settings.h"
#include "settings_in_memory.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(DisplaySettings, AreTakenWithinTheirLimits)
{
    struct Case {
        const char* key;
        const char* text;
        SettingOutcome outcome;
        const char* stored; // afterwards, the default when refused
    };
    constexpr auto kTaken = SettingOutcome::taken;
    constexpr auto kRefused = SettingOutcome::refused;
    const Case cases[] = {{"TimingTick", "2.5", kTaken, "2"},
                          {"TimingTick", "3.5", kTaken, "4"},
                          {"TimingTick", "-1", kTaken, "-1"},
                          {"TimingTick", "3e9", kRefused, "2"},
                          {"TimingTick", "two", kRefused, "2"},
                          {"TrackAxisTickSpacing", "0", kTaken, "0"},
                          {"TrackAxisTickSpacing", "-0.5", kRefused, "10"},
                          {"TrackAxisLength", "25", kRefused, "100"},
                          {"TrackAxisLength", "25.1", kTaken, "25.1"},
                          {"TrackAxisLength", "1e39", kRefused, "100"},
                          {"ElevationMaxRange", "10", kRefused, "20"},
                          {"ElevationMaxRange", "10.5", kTaken, "10.5"},
                          {"TMIMaxRange", "10", kRefused, "1000"},
                          {"TMIMaxRange", " 11 ", kTaken, "11"},
                          {"TMITickSpacing", "0", kRefused, "100"},
                          {"TMITickSpacing", "0.1", kTaken, "0.1"},
                          {"GradientMaxRange", "0.5", kTaken, "1"},
                          {"GradientMaxRange", "-7", kRefused, "10"},
                          {"GradientMaxRange", "", kRefused, "10"},
                          {"GradientTickSpacing", "0", kRefused, "2"},
                          {"GradientTickSpacing", "3", kTaken, "3"}};
    for (const Case& c : cases) {
        DisplaySettings settings;
        EXPECT_EQ(set_display_setting(settings, c.key, c.text), c.outcome) << c.key << " " << c.text;
        SettingsInMemory store;
        write_display_settings(settings, store);
        EXPECT_EQ(store.values[c.key], c.stored) << c.key << " " << c.text;
        EXPECT_EQ(store.values.size(), 8U);
    }
    DisplaySettings settings;
    EXPECT_EQ(set_display_setting(settings, "timingtick", "1"), SettingOutcome::unknown_key);
}

TEST(DisplaySettings, AreReadFromTheStore)
{
    SettingsInMemory store;
    store.values = {{"GradientMaxRange", "40"}, {"TMIMaxRange", "5"}, {"TrackAxisLength", "150"}};
    const DisplaySettings settings = read_display_settings(store);
    EXPECT_EQ(settings.gradient_max_range, 40);
    EXPECT_EQ(settings.reference_gradient_range, 40);
    EXPECT_EQ(settings.tmi_max_range, 1000) << "a stored value that would be refused";
    EXPECT_EQ(settings.track_axis_length, 150.0F);
    EXPECT_EQ(settings.timing_tick, 2) << "not stored";
}

} // namespace
} // namespace tarvo

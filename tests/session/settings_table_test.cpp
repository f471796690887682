#include "session/settings_table.h"

#include "settings_in_memory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

namespace tarvo {
namespace {

constexpr auto kTaken = SettingOutcome::taken;
constexpr auto kRefused = SettingOutcome::refused;

TEST(SettingsTable, TextsAreTakenWithinTheirLimits)
{
    struct Case {
        const char* key;
        const char* text;
        SettingOutcome outcome;
        const char* stored; // afterwards, the default when refused
    };
    const Case cases[] = {{"LoggingScrollStep", "0", kRefused, "2"},
                          {"LoggingScrollStep", "7.9", kTaken, "7"},
                          {"LoggingScrollStep", "3e9", kRefused, "2"},
                          {"LoggingSampleRate", "1e-50", kRefused, "1"},
                          {"LoggingSampleRate", "0.04", kTaken, "0.04"},
                          {"LoggingLineBreakTime", "1e-50", kTaken, "0"},
                          {"LoggingLineBreakDistance", "-1", kTaken, "-1"},
                          {"LoggingLineBreakDistance", "1e39", kRefused, "5"},
                          {"SmoothWindow", "1000000", kTaken, "1000000"},
                          {"GradientWindow", "1000001", kRefused, "11"},
                          {"CompassHeading", "2", kRefused, "0"},
                          {"SpacingOverFixes", " 1 ", kTaken, "1"},
                          {"TimingTick", "2.5", kTaken, "2"},
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
                          {"TMIMaxRange", " 11 ", kTaken, "11"},
                          {"TMITickSpacing", "0", kRefused, "100"},
                          {"GradientMaxRange", "0.5", kTaken, "1"},
                          {"GradientMaxRange", "", kRefused, "10"},
                          {"GradientTickSpacing", "0", kRefused, "2"},
                          {"ShowNewPickDialog", "0", kTaken, "0"},
                          {"DeferPickCombo", "yes", kRefused, "0"}};
    for (const Case& c : cases) {
        Settings settings;
        EXPECT_EQ(set_setting(settings, c.key, c.text), c.outcome) << c.key << " " << c.text;
        SettingsInMemory store;
        write_settings(settings, store);
        EXPECT_EQ(store.values[c.key], c.stored) << c.key << " " << c.text;
    }
    Settings settings;
    EXPECT_EQ(set_setting(settings, "timingtick", "1"), SettingOutcome::unknown_key);
}

TEST(SettingsTable, IsReadFromTheStoreWhereValuesAreAccepted)
{
    SettingsInMemory store;
    store.values = {{"GradientMaxRange", "40"}, {"TMIMaxRange", "5"}, {"TrackAxisLength", "150"}};
    Settings settings;
    read_settings(settings, store);
    Settings expected;
    expected.display_settings.gradient_max_range = expected.display_settings.reference_gradient_range = 40;
    expected.display_settings.track_axis_length = 150;
    EXPECT_EQ(settings, expected) << "5 is refused, what is not stored keeps its default";
}

TEST(SettingsTable, HoldsEachKeyAndEachPlaceOnceWithADefaultOfItsOwn)
{
    std::set<std::string> keys;
    std::set<SettingPlace> places;
    Settings settings;
    for (const Setting& setting : settings_table()) {
        EXPECT_TRUE(keys.insert(setting.key).second) << setting.key;
        EXPECT_TRUE(places.insert(setting.place(settings)).second) << setting.key;
        EXPECT_EQ(take_setting_text(settings, setting, setting_text(settings, setting)), kTaken) << setting.key;
    }
    EXPECT_EQ(settings, Settings());
}

TEST(SettingsTable, SaysWhatItAccepts)
{
    struct Case {
        const char* key;
        const char* text;
    };
    const Case cases[] = {{"LoggingSampleRate", "over 0"},           {"LoggingLineBreakTime", "a number"},
                          {"SmoothWindow", "over 0, up to 1000000"}, {"CompassHeading", "0 or 1"},
                          {"TrackAxisTickSpacing", "at least 0"},    {"TrackAxisLength", "over 25"}};
    for (const Case& c : cases) EXPECT_EQ(accepted_values_text(*find_setting(c.key)), c.text);

    constexpr const char* kPaces[] = {"Slider", "1"};
    const Setting optional = {.key = "A",
                              .place = [](Settings&) { return SettingPlace((std::optional<double>*)nullptr); }};
    const Setting choice = {.key = "B",
                            .place = [](Settings&) { return SettingPlace((std::string*)nullptr); },
                            .caption = "&Pace",
                            .unit = "x",
                            .choices = kPaces};
    EXPECT_EQ(accepted_values_text(optional), "a number, or nothing");
    EXPECT_EQ(refusal_text(choice, "2"), "Pace (x): Slider, 1 was expected, found \"2\"");
}

TEST(SettingsTable, IsTheOneOfTheReadme)
{
    std::ifstream file(TARVO_README);
    std::stringstream text;
    text << file.rdbuf();
    EXPECT_NE(text.str().find(settings_manual_text()), std::string::npos)
        << "scripts/write_settings_table brings it up to date";
}

} // namespace
} // namespace tarvo

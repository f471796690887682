#include "processing/processing_parameters.h"

#include "text/numbers.h"

#include <cmath>
#include <limits>
#include <string>

namespace tarvo {

namespace {

struct Parameter {
    const char* key;
    bool (*set)(ProcessingParameters&, double); // false: refused
    std::string (*text)(const ProcessingParameters&);
};

bool set_whole(std::int32_t& parameter, double value)
{
    if (!(value > 0) || value > std::numeric_limits<std::int32_t>::max()) return false;
    parameter = static_cast<std::int32_t>(value);
    return true;
}

// A single-precision value, which must stay one.
bool set_single(float& parameter, double value)
{
    const auto single = static_cast<float>(value);
    if (std::isinf(single)) return false;
    parameter = single;
    return true;
}

bool set_switch(bool& parameter, double value)
{
    if (value != 0 && value != 1) return false;
    parameter = value == 1;
    return true;
}

std::string single_text(float value)
{
    return format_shortest(value);
}

// A filter of more samples than this would be wider than any survey line and only cost memory.
bool set_window(std::int32_t& parameter, double value)
{
    constexpr double kWidestWindow = 1'000'000;
    return value <= kWidestWindow && set_whole(parameter, value);
}

using P = ProcessingParameters;

const Parameter kParameters[] = {
    {"LoggingScrollStep", [](P& p, double value) { return set_whole(p.LoggingScrollStep, value); },
     [](const P& p) { return std::to_string(p.LoggingScrollStep); }},
    {"LoggingSampleRate",
     [](P& p, double value) { return static_cast<float>(value) > 0 && set_single(p.LoggingSampleRate, value); },
     [](const P& p) { return single_text(p.LoggingSampleRate); }},
    {"LoggingLineBreakDistance", [](P& p, double value) { return set_single(p.LoggingLineBreakDistance, value); },
     [](const P& p) { return single_text(p.LoggingLineBreakDistance); }},
    {"LoggingLineBreakTime", [](P& p, double value) { return set_single(p.LoggingLineBreakTime, value); },
     [](const P& p) { return single_text(p.LoggingLineBreakTime); }},
    {"SmoothWindow", [](P& p, double value) { return set_window(p.SmoothWindow, value); },
     [](const P& p) { return std::to_string(p.SmoothWindow); }},
    {"GradientWindow", [](P& p, double value) { return set_window(p.GradientWindow, value); },
     [](const P& p) { return std::to_string(p.GradientWindow); }},
    {"CarryClosingSample", [](P& p, double value) { return set_switch(p.CarryClosingSample, value); },
     [](const P& p) { return std::to_string(p.CarryClosingSample ? 1 : 0); }},
    {"CircularHeading", [](P& p, double value) { return set_switch(p.CircularHeading, value); },
     [](const P& p) { return std::to_string(p.CircularHeading ? 1 : 0); }},
    {"CompassHeading", [](P& p, double value) { return set_switch(p.CompassHeading, value); },
     [](const P& p) { return std::to_string(p.CompassHeading ? 1 : 0); }},
};

} // namespace

SettingOutcome set_processing_parameter(ProcessingParameters& parameters, std::string_view key, std::string_view text)
{
    for (const Parameter& parameter : kParameters) {
        if (key != parameter.key) continue;
        const std::optional<double> value = numeric_value(text);
        return value && parameter.set(parameters, *value) ? SettingOutcome::taken : SettingOutcome::refused;
    }
    return SettingOutcome::unknown_key;
}

void read_processing_parameters(ProcessingParameters& parameters, const SettingsStore& store)
{
    for (const Parameter& parameter : kParameters) {
        const std::string text = store.read(kSettingsApplication, kSettingsSection, parameter.key, kNoSetting);
        if (text != kNoSetting) set_processing_parameter(parameters, parameter.key, text);
    }
}

void write_processing_parameters(const ProcessingParameters& parameters, SettingsStore& store)
{
    for (const Parameter& parameter : kParameters) {
        store.write(kSettingsApplication, kSettingsSection, parameter.key, parameter.text(parameters));
    }
}

} // namespace tarvo

#pragma once

#include <optional>

namespace tarvo {

// What a value should be; an end that is open limits nothing.
struct ValueLimits {
    std::optional<double> least;
    std::optional<double> greatest;

    bool are_set() const { return least.has_value() || greatest.has_value(); }
    bool leave_out(double value) const { return value < least.value_or(value) || value > greatest.value_or(value); }
    bool operator==(const ValueLimits&) const = default;
};

// When a survey asks for the operator's attention: in a live run by alarms, along the track by a colour of its own.
struct WatchSettings {
    double AlarmSilence = 5; // seconds without a line; 0: never
    ValueLimits field;       // nT, of every sensor
    ValueLimits altitude;    // metres
    ValueLimits speed;       // metres a second
    bool AlarmSound = false;

    bool operator==(const WatchSettings&) const = default;
};

} // namespace tarvo

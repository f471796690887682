#pragma once

#include <string>

namespace tarvo {

inline constexpr const char* kReplayPaces[] = {"slider", "1", "2", "5", "10", "50"}; // what ReplayPace may be

// How runs go on.
struct RunSettings {
    std::string ReplayPace = "slider"; // else the data's own time, so many times as fast

    bool operator==(const RunSettings&) const = default;
};

} // namespace tarvo

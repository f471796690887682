#pragma once

#include <string>

namespace tarvo {

// How runs go on.
struct RunSettings {
    std::string ReplayPace = "slider"; // else the data's own time, so many times as fast

    bool operator==(const RunSettings&) const = default;
};

} // namespace tarvo

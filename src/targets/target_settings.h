#pragma once

#include <optional>

namespace tarvo {

// What the operator sets for fits and proposals. Open: the program finds it.
struct TargetSettings {
    std::optional<double> FieldInclination;  // of the Earth's field, degrees below the horizon
    std::optional<double> FieldDeclination;  // degrees from grid north, clockwise
    std::optional<double> ProposalThreshold; // nT, of the smoothed residual

    bool operator==(const TargetSettings&) const = default;
};

} // namespace tarvo

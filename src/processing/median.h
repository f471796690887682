#pragma once

#include <optional>
#include <vector>

namespace tarvo {

// The middle value, for an even count the mean of the two in the middle; nullopt when there is none. It reorders the
// values, which must be valid ones.
std::optional<double> median(std::vector<double>& values);

// The value below which this share (0..1) of the values lies, linear between the two nearest; nullopt when there is
// none. It reorders the values likewise.
std::optional<double> percentile(std::vector<double>& values, double share);

} // namespace tarvo

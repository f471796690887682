#pragma once

#include <array>
#include <cstddef>

namespace tarvo {

inline constexpr std::size_t kIgrfEpochs = 26; // every 5 years
inline constexpr double kIgrfFirstEpoch = 1900;
inline constexpr double kIgrfYearsPerEpoch = 5;
inline constexpr std::size_t kIgrfRows = 195;
inline constexpr std::size_t kIgrfDegree = 13; // the highest

// One Gauss coefficient, Schmidt semi-normalised.
struct IgrfRow {
    char kind; // g: of the cosine, h: of the sine
    int degree;
    int order;
    std::array<double, kIgrfEpochs + 1> values; // nT by epoch; the last: nT a year from the last epoch on
};

extern const std::array<IgrfRow, kIgrfRows> kIgrfTable;

} // namespace tarvo

#pragma once

#include "targets/fit_readings.h"

#include <vector>

namespace tarvo {

// The constant and the slope along the track that every segment of some readings has of its own.
class Baselines {
public:
    explicit Baselines(const FitReadings& readings); // which must outlive it

    // Takes what they can explain off a column with a value a reading, by least squares.
    void take_out(std::vector<double>& column) const;

private:
    const FitReadings* readings_;
    std::vector<double> slope_; // by reading: the slope of its segment, of length 1 and mean 0
};

} // namespace tarvo

#include "targets/baselines.h"

#include <cmath>
#include <cstddef>

namespace tarvo {

Baselines::Baselines(const FitReadings& readings) : readings_(&readings), slope_(readings.count(), 0.0)
{
    constexpr double kShortest = 1e-12; // square metres: a segment without length has no slope
    for (const FitSegment& segment : readings.segments) {
        const std::size_t end = segment.first + segment.count;
        double mean = 0;
        for (std::size_t at = segment.first; at < end; ++at) mean += readings.distance[at];
        mean /= static_cast<double>(segment.count);
        double square = 0;
        for (std::size_t at = segment.first; at < end; ++at) {
            slope_[at] = readings.distance[at] - mean;
            square += slope_[at] * slope_[at];
        }
        const double scale = square > kShortest ? 1 / std::sqrt(square) : 0;
        for (std::size_t at = segment.first; at < end; ++at) slope_[at] *= scale;
    }
}

void Baselines::take_out(std::vector<double>& column) const
{
    for (const FitSegment& segment : readings_->segments) {
        const std::size_t end = segment.first + segment.count;
        double mean = 0;
        double slope = 0;
        for (std::size_t at = segment.first; at < end; ++at) {
            mean += column[at];
            slope += column[at] * slope_[at];
        }
        mean /= static_cast<double>(segment.count);
        for (std::size_t at = segment.first; at < end; ++at) column[at] -= mean + slope * slope_[at];
    }
}

} // namespace tarvo

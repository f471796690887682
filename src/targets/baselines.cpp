#include "targets/baselines.h"

#include "targets/column_sums.h"

#include <cmath>
#include <cstddef>
#include <span>

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
        const std::span<double> part = std::span(column).subspan(segment.first, segment.count);
        const std::span<const double> slopes = std::span(slope_).subspan(segment.first, segment.count);
        const double mean = sum_of(part) / static_cast<double>(segment.count);
        const double slope = inner_product(part, slopes);
        for (std::size_t at = 0; at < part.size(); ++at) part[at] -= mean + slope * slopes[at];
    }
}

} // namespace tarvo

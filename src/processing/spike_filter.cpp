#include "processing/spike_filter.h"

#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvo {

namespace {

constexpr double kSmallestSpike = 2.0;      // nT
constexpr double kSpreads = 5.0;            // that a spike lies off the median at least
constexpr double kSpreadOfMad = 1.4826;     // standard deviation over median absolute deviation, of normal noise
constexpr double kNeighbourShare = 1 / 5.0; // of the spike's distance from the median
constexpr std::size_t kFewestValues = 5;

struct Neighbourhood {
    std::array<double, 2 * kSpikeReach + 1> values;
    std::size_t count = 0;
};

Neighbourhood valid_values_around(const double* field, std::int32_t record, std::int32_t first, std::int32_t last)
{
    Neighbourhood around;
    const std::int32_t end = std::min(last, record + kSpikeReach);
    for (std::int32_t r = std::max(first, record - kSpikeReach); r <= end; ++r) {
        if (is_valid_sensor(field[r])) around.values[around.count++] = field[r];
    }
    return around;
}

double median_of(Neighbourhood& around)
{
    double* const begin = around.values.data();
    std::sort(begin, begin + around.count);
    const std::size_t middle = around.count / 2;
    return around.count % 2 == 1 ? begin[middle] : (begin[middle - 1] + begin[middle]) / 2;
}

} // namespace

bool is_spike(const double* field, std::int32_t record, std::int32_t first, std::int32_t last)
{
    if (record <= first || record >= last) return false;
    const double value = field[record];
    const double before = field[record - 1];
    const double after = field[record + 1];
    if (!is_valid_sensor(value) || !is_valid_sensor(before) || !is_valid_sensor(after)) return false;
    if ((value - before) * (value - after) <= 0) return false; // no spike stands between its neighbours

    Neighbourhood around = valid_values_around(field, record, first, last);
    if (around.count < kFewestValues) return false;
    const double median = median_of(around);
    const double deviation = std::abs(value - median);
    const double most = kNeighbourShare * deviation;
    if (!(deviation > kSmallestSpike) || std::abs(before - median) > most || std::abs(after - median) > most) {
        return false;
    }
    for (std::size_t i = 0; i < around.count; ++i) around.values[i] = std::abs(around.values[i] - median);
    return deviation > kSpreads * kSpreadOfMad * median_of(around);
}

} // namespace tarvo

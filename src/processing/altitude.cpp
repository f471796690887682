#include "processing/altitude.h"

#include "processing/median.h"
#include "text/numbers.h"

#include <vector>

namespace tarvo {

double altitude(const SampleStore& store, std::int32_t record)
{
    const double elevation = store.channel(kElevation, record);
    if (!store.dem_from_column || !is_valid_channel(elevation)) return elevation;
    const double ground = store.channel(kDem, record);
    return is_valid_channel(ground) ? elevation - ground : kNull;
}

std::optional<double> median_altitude(const SampleStore& store)
{
    if (!store.has_channel(kElevation)) return std::nullopt;
    std::vector<double> altitudes;
    for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
        const double value = altitude(store, record);
        if (is_valid_channel(value)) altitudes.push_back(value);
    }
    return median(altitudes);
}

} // namespace tarvo

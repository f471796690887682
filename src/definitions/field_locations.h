#pragma once

#include "definitions/survey_definitions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo {

// Which quantity stands in which header column. Columns count from 0, -1: not located.
struct FieldLocations {
    std::array<std::int32_t, number_of_field_slots + 1> column = for_every_slot<std::int32_t>(-1); // by slot
    std::int32_t located_field_count = 0;
    std::vector<int> depth_channels;                // of the vertical kind: those located or derived, in their order
    std::vector<int> attitude_channels;             // of the attitude kind: those located
    bool derived_dem = false;                       // DEM is computed from Depth and Elevation
    std::vector<std::int32_t> sensor_column = {-1}; // by sensor channel, from 1
    int header_column_count = 0;

    bool has(FieldSlotIndex slot) const { return column[static_cast<std::size_t>(slot)] >= 0; }
    std::int32_t sensor_channel_count() const { return static_cast<std::int32_t>(sensor_column.size()) - 1; }
};

} // namespace tarvo

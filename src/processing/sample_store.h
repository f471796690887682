#pragma once

#include "definitions/field_locations.h"
#include "definitions/survey_definitions.h"
#include "processing/record_array.h"
#include "processing/track_table.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo {

using RecordValues = RecordArray<double, 2048>; // by record, from 1

// One sensor's stored values. Rows that the survey does not have stay without memory.
struct SensorRecords {
    std::array<RecordValues, 4> averages;  // row 0: total field, rows 1 to components: the components
    std::array<RecordValues, 4> position;  // rows 1 to 3: easting, northing, vertical, metres
    std::array<RecordValues, 4> gradients; // rows 1: vertical, 2: horizontal, 3: amplitude, 0: smoothed amplitude, the
                                           // display value; valid up to gradient_records
};

// The stored samples of a run. kNull stands for every value that a record does not have.
struct SampleStore {
    std::int32_t RecordCount = 0;
    std::int32_t components_per_sensor = 1;
    bool track_follows_sensor = false; // the track is sensor 1's: the fish has no position of its own
    bool dem_from_column = false;      // the DEM is the data's own, not derived from Depth and Elevation

    RecordValues record_time;                                     // days since 1899-12-30
    RecordValues distance;                                        // metres along the track
    std::array<RecordValues, number_of_field_slots + 1> channels; // by slot: the averages of those in stored_slots
    std::vector<int> stored_slots;                                // located and derived ones; East and North always
    std::vector<SensorRecords> sensors = std::vector<SensorRecords>(1); // from 1

    std::int32_t gradient_records = 0; // records that have gradient rows

    int number_of_sensors() const { return static_cast<int>(sensors.size()) - 1; }
    bool has_channel(int slot) const { return channels[static_cast<std::size_t>(slot)].capacity() > 0; }

    // The average of a channel; kNull for one that the survey does not have.
    double channel(int slot, std::int32_t record) const;

    // The input row of the gradient filters of a sensor.
    const RecordValues& gradient_input(int sensor) const;
};

// Empties the store and fits it to the columns that were located; memory is released.
void reset_sample_store(SampleStore& store, const SurveyDefinitions& definitions, const FieldLocations& locations);

// Makes room for record `last` in every array but the gradient rows. Throws std::bad_alloc.
void reserve_records(SampleStore& store, std::int32_t last);

// Makes room for the gradient rows up to record `last` and fills new ones with kNull. Throws std::bad_alloc.
void reserve_gradients(SampleStore& store, std::int32_t last);

TrackTable track_table(const SampleStore& store);

// Memory of all arrays in bytes.
std::size_t store_bytes(const SampleStore& store);

} // namespace tarvo

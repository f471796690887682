#include "processing/sample_store.h"

#include "text/numbers.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace tarvo {

namespace {

// Calls the operation for every array with one value a record, gradient rows left out; for the record times last, whose
// capacity stands for that of all.
template <typename Operation>
void for_each_record_array(SampleStore& store, Operation operation)
{
    operation(store.distance);
    for (const int slot : store.stored_slots) operation(store.channels[static_cast<std::size_t>(slot)]);
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        for (std::size_t row = 0; row <= static_cast<std::size_t>(store.components_per_sensor); ++row) {
            operation(store.sensors[sensor].averages[row]);
        }
        for (std::size_t axis = 1; axis <= 3; ++axis) operation(store.sensors[sensor].position[axis]);
    }
    operation(store.record_time);
}

// Giving hundreds of megabytes back takes the system a tenth of a second, in which the user interface would stand
// still.
void release_in_background(SampleStore store)
{
    constexpr std::size_t kWorthAThread = std::size_t{64} << 20;
    if (store_bytes(store) < kWorthAThread) return;
    try {
        std::thread([released = std::move(store)] {}).detach();
    } catch (const std::system_error&) { // no thread to be had: it was released here
        return;
    }
}

} // namespace

double SampleStore::channel(int slot, std::int32_t record) const
{
    return has_channel(slot) ? channels[static_cast<std::size_t>(slot)][record] : kNull;
}

const RecordValues& SampleStore::gradient_input(int sensor) const
{
    return sensors[static_cast<std::size_t>(sensor)].averages[components_per_sensor == 3 ? 0 : 1];
}

void reset_sample_store(SampleStore& store, const SurveyDefinitions& definitions, const FieldLocations& locations)
{
    release_in_background(std::exchange(store, SampleStore()));
    store.components_per_sensor = definitions.components_per_sensor;
    store.track_follows_sensor =
        definitions.read_sensor_location == 1 && !(locations.has(kEast) && locations.has(kNorth));
    store.dem_from_column = locations.has(kDem);
    store.sensors.resize(definitions.sensors.size());
    for (int slot = 1; slot <= number_of_field_slots; ++slot) {
        const bool located = locations.column[static_cast<std::size_t>(slot)] >= 0;
        const bool derived = slot == kDem && locations.derived_dem;
        if (located || derived || field_slot(slot).kind == SlotKind::coordinate) store.stored_slots.push_back(slot);
    }
    reserve_records(store, 1);
}

void reserve_records(SampleStore& store, std::int32_t last)
{
    if (last <= store.record_time.capacity()) return;
    for_each_record_array(store, [last](RecordValues& values) { values.reserve(last); });
}

void reserve_gradients(SampleStore& store, std::int32_t last)
{
    if (last <= store.gradient_records) return;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        for (RecordValues& row : store.sensors[sensor].gradients) {
            row.reserve(last);
            std::fill(row.data() + store.gradient_records + 1, row.data() + last + 1, kNull);
        }
    }
    store.gradient_records = last;
}

TrackTable track_table(const SampleStore& store)
{
    const auto& easting = store.track_follows_sensor ? store.sensors[1].position[1] : store.channels[kEast];
    const auto& northing = store.track_follows_sensor ? store.sensors[1].position[2] : store.channels[kNorth];
    return {store.RecordCount, store.distance.data(), store.record_time.data(), easting.data(), northing.data()};
}

std::size_t store_bytes(const SampleStore& store)
{
    std::size_t bytes = 0;
    const auto add = [&bytes](const RecordValues& values) { bytes += values.bytes(); };
    add(store.record_time);
    add(store.distance);
    for (const RecordValues& channel : store.channels) add(channel);
    for (const SensorRecords& sensor : store.sensors) {
        for (const auto* const rows : {&sensor.averages, &sensor.position, &sensor.gradients}) {
            for (const RecordValues& row : *rows) add(row);
        }
    }
    return bytes;
}

} // namespace tarvo

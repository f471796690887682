#include "processing/fix_filling.h"

#include "processing/fixed_time.h"

#include <cmath>

namespace tarvo {

namespace {

constexpr double kLongestGap = 2; // seconds between positions

// Of the way from one record's time to another's; the record times are days.
double seconds_between(const RecordValues& times, std::int32_t from, std::int32_t to)
{
    return std::nearbyint((times[to] - times[from]) * kSecondsPerDay * kFixedTimeUnits) / kFixedTimeUnits;
}

void place_record(SampleProcessing& run, std::int32_t before, std::int32_t record, std::int32_t after)
{
    const RecordValues& times = run.store.record_time;
    const double share = seconds_between(times, before, record) / seconds_between(times, before, after);
    if (!(share >= 0 && share <= 1)) return; // time ran back in between
    for (const FieldSlotIndex slot : {kEast, kNorth}) {
        RecordValues& values = run.store.channels[static_cast<std::size_t>(slot)];
        values[record] = values[before] + (values[after] - values[before]) * share;
    }
    if (!run.plan.read_sensor_location) store_derived_locations(run, record);
}

} // namespace

void place_records_between(SampleProcessing& run, std::int32_t before)
{
    const std::int32_t newest = run.store.RecordCount;
    const bool on_open_line = before >= run.lines.first_record(run.lines.CurrentLine);
    if (before == 0 || newest - before < 2 || !on_open_line || run.store.track_follows_sensor) return;
    if (!has_position(track_table(run.store), newest)) return;
    const double gap = seconds_between(run.store.record_time, before, newest);
    if (!(gap > 0 && gap <= kLongestGap)) return;

    run.first_placed_record = before + 1;
    for (std::int32_t record = before + 1; record < newest; ++record) place_record(run, before, record, newest);
    run.last_positioned_record = before;
    for (std::int32_t record = before + 1; record <= newest; ++record) store_track_point(run, record);
}

} // namespace tarvo

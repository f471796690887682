#include "targets/fit_survey.h"

#include "processing/fixed_time.h"
#include "processing/median.h"
#include "processing/survey_lines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace tarvo {

namespace {

constexpr std::int32_t kBlockRecords = 64;

bool is_known(const GridVector& place)
{
    return is_valid_channel(place.east) && is_valid_channel(place.north) && is_valid_channel(place.up);
}

// Of some thousand values at most, which stand for all.
double median_of_fields(const SampleStore& store)
{
    constexpr std::int32_t kEnough = 5000;
    const std::int32_t step = std::max(1, store.RecordCount / kEnough);
    std::vector<double> fields;
    for (std::int32_t record = 1; record <= store.RecordCount; record += step) {
        for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
            const double field = store.sensors[sensor].averages[0][record];
            if (is_valid_sensor(field)) fields.push_back(field);
        }
    }
    return median_or_null(std::move(fields));
}

// Data lines came at even steps, so many to a stored sample; one more closed it unless that is carried on.
SampleWay way_of_samples(const SampleProcessing& run)
{
    const std::int32_t records = run.store.RecordCount;
    if (records < 2) return {};
    std::vector<double> periods;
    const std::int32_t step = std::max(1, records / 5000);
    for (std::int32_t record = 2; record <= records; record += step) {
        periods.push_back((run.store.record_time[record] - run.store.record_time[record - 1]) * kSecondsPerDay);
    }
    const double lines_a_period = std::round(static_cast<double>(run.lines_processed) / records);
    const double lines = run.plan.carry_closing_sample ? lines_a_period : lines_a_period - 1;
    if (lines < 2) return {};
    return sample_way(lines, median_or_null(std::move(periods)) / lines_a_period);
}

// A line that leaves the selection and comes back passes twice.
bool goes_on(const FitReadings& readings, std::int32_t line, int sensor, double distance, double longest_gap)
{
    if (readings.segments.empty()) return false;
    const FitSegment& last = readings.segments.back();
    return last.line == line && last.sensor == sensor && distance - readings.distance.back() < longest_gap;
}

} // namespace

double median_or_null(std::vector<double> values)
{
    return median(values).value_or(kNull);
}

FitSurvey::FitSurvey(const SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations)
    : run_(run)
{
    const bool reads_heights = definitions.read_sensor_location == 1;
    const bool has_depth = locations.has(kDepth);
    has_heights_ = has_depth || locations.has(kElevation) || reads_heights;
    if (has_depth && definitions.flip_depth_sign != 1) up_sign_ = -1;
    median_field_ = median_of_fields(run.store);
    way_ = way_of_samples(run);
    make_blocks();
}

double FitSurvey::seabed_height(std::int32_t record) const
{
    const double ground = store().channel(kDem, record);
    return has_heights_ && is_valid_channel(ground) ? height(ground) : kNull;
}

GridVector FitSurvey::sensor_place(int sensor, std::int32_t record) const
{
    const auto& position = store().sensors[static_cast<std::size_t>(sensor)].position;
    const double vertical = position[3][record];
    double up = kNull;
    if (!has_heights_) {
        up = 0;
    } else if (is_valid_channel(vertical)) {
        up = height(vertical);
    }
    return {position[1][record], position[2][record], up};
}

void FitSurvey::make_blocks()
{
    constexpr double kNowhere = std::numeric_limits<double>::infinity();
    const std::int32_t records = store().RecordCount;
    for (std::int32_t first = 1; first <= records; first += kBlockRecords) {
        Block block{first, std::min(records, first + kBlockRecords - 1), kNowhere, -kNowhere, kNowhere, -kNowhere};
        for (std::size_t sensor = 1; sensor < store().sensors.size(); ++sensor) {
            const auto& position = store().sensors[sensor].position;
            for (std::int32_t record = block.first; record <= block.last; ++record) {
                const double east = position[1][record];
                const double north = position[2][record];
                if (!is_valid_channel(east) || !is_valid_channel(north)) continue;
                block.low_east = std::min(block.low_east, east);
                block.high_east = std::max(block.high_east, east);
                block.low_north = std::min(block.low_north, north);
                block.high_north = std::max(block.high_north, north);
            }
        }
        if (block.low_east <= block.high_east) blocks_.push_back(block);
    }
}

// From a sample's middle to its outer point ahead, by the way to its neighbours on the line.
GridVector FitSurvey::way(int sensor, std::int32_t record, std::int32_t line) const
{
    if (way_.weight == 0) return {};
    const std::int32_t before = std::max(record - 1, run_.lines.first_record(line));
    const std::int32_t after = std::min(record + 1, run_.lines.last_record(line));
    const double seconds = (store().record_time[after] - store().record_time[before]) * kSecondsPerDay;
    const GridVector from = sensor_place(sensor, before);
    const GridVector to = sensor_place(sensor, after);
    if (!(seconds > 0) || !is_known(from) || !is_known(to)) return {};
    return way_.seconds / seconds * (to - from);
}

FitReadings FitSurvey::readings(const FitSelection& selection, const GridVector& from) const
{
    const auto is_left_out = [](const auto& left_out, auto number) {
        return std::find(left_out.begin(), left_out.end(), number) != left_out.end();
    };
    FitReadings readings;
    readings.origin = from;
    readings.way_weight = way_.weight;
    for (int sensor = 1; sensor <= store().number_of_sensors(); ++sensor) {
        if (is_left_out(selection.sensors_left_out, sensor)) continue;
        const RecordValues& fields = store().sensors[static_cast<std::size_t>(sensor)].averages[0];
        for_records_near(selection.east, selection.north, selection.radius, [&](std::int32_t first, std::int32_t last) {
            for (std::int32_t record = first; record <= last; ++record) {
                const double field = fields[record];
                if (!is_valid_sensor(field)) continue;
                const GridVector place = sensor_place(sensor, record);
                if (!is_known(place)) continue;
                if (std::hypot(place.east - selection.east, place.north - selection.north) > selection.radius) continue;
                const std::int32_t line = line_of_record(run_.lines, record);
                if (is_left_out(selection.lines_left_out, line)) continue;
                if (!goes_on(readings, line, sensor, store().distance[record], selection.radius))
                    readings.segments.push_back({line, sensor, readings.count(), 0});
                ++readings.segments.back().count;
                readings.place.push_back(place - from);
                readings.field.push_back(field);
                readings.distance.push_back(store().distance[record]);
                readings.record.push_back(record);
                readings.way.push_back(way(sensor, record, line));
            }
        });
    }
    return readings;
}

} // namespace tarvo

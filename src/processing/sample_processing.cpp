#include "processing/sample_processing.h"

#include "processing/fix_filling.h"
#include "processing/fixed_time.h"
#include "processing/formatted_lines.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace tarvo {

namespace {

// kNull for a result beyond the range of a 64-bit float.
double finite_or_null(double value)
{
    return std::isfinite(value) ? value : kNull;
}

// The time of the line. Without a Time column lines follow each other at the sample interval. nullopt when the line has
// no time.
std::optional<std::int64_t> time_of_line(const LineReading& reading, SampleProcessing& run)
{
    const ProcessingPlan& plan = run.plan;
    if (plan.has_time && run.sequence.runs_by_format) {
        return time_of(run.sequence.time_form, reading.time, run.sequence.running_day);
    }
    const double seconds =
        plan.has_time ? run.sample.ChannelValues[kTime] : static_cast<double>(run.lines_read) * plan.SampleInterval;
    return seconds == kNull ? std::nullopt : to_fixed_time(seconds);
}

void drop_values_of_column(SampleProcessing& run, std::size_t column)
{
    for (const ProcessingPlan::Column& planned : run.plan.channels) {
        if (planned.field == column) run.sample.ChannelValues[planned.channel] = kNull;
    }
    for (const ProcessingPlan::Column& planned : run.plan.sensor_channels) {
        if (planned.field == column) run.sample.SensorValues[planned.channel] = kNull;
    }
}

// What the data format and the lines before say of the values of this one.
void judge_values(const LineReading& reading, SampleProcessing& run)
{
    decide_units(run.sequence, reading);
    for (const OddField& odd : reading.odd_fields) {
        if (!is_number_in_sequence(run.sequence, odd)) drop_values_of_column(run, odd.column);
    }
    if (run.plan.has_time) {
        run.sample.ChannelValues[kTime] = static_cast<double>(run.sample.SampleTime) / kFixedTimeUnits;
    }
    if (reading.sensor_values_count) return;
    for (const std::size_t channel : run.plan.component_channels) run.sample.SensorValues[channel] = kNull;
}

void move_to_fish(SampleProcessing& run)
{
    ChannelArray& values = run.sample.ChannelValues;
    const PathPlace fish = run.sequence.path.place_of_fish(run.sample.SampleTime, {values[kEast], values[kNorth]});
    values[kEast] = fish.east;
    values[kNorth] = fish.north;
}

void scale_values(const ProcessingPlan& plan, CurrentSample& sample)
{
    for (const ProcessingPlan::Scaling& scaling : plan.scaled_channels) {
        double& value = sample.ChannelValues[scaling.channel];
        if (is_valid_channel(value)) value = finite_or_null(value * scaling.multiplier);
    }
    for (const ProcessingPlan::Scaling& scaling : plan.scaled_sensor_channels) {
        double& value = sample.SensorValues[scaling.channel];
        if (is_valid_sensor(value)) value = finite_or_null(value * scaling.multiplier);
    }
}

void derive_dem(const ProcessingPlan& plan, ChannelArray& values)
{
    if (plan.dem_sign == 0) return;
    const bool both = is_valid_channel(values[kDepth]) && is_valid_channel(values[kElevation]);
    values[kDem] = both ? finite_or_null(values[kDepth] + plan.dem_sign * values[kElevation]) : kNull;
}

void begin_bin(const CurrentSample& sample, AveragingBin& bin)
{
    bin.BinStartTime = sample.SampleTime;
    bin.BinStartValues = sample.ChannelValues;
}

bool is_line_break(const SampleProcessing& run)
{
    const ProcessingPlan& plan = run.plan;
    const CurrentSample& sample = run.sample;
    const AveragingBin& bin = run.bin;
    if (plan.line_numbers_from_data) {
        return is_valid_channel(sample.LineNumberFromData) && is_valid_channel(run.lines.CurrentLineNumber) &&
               sample.LineNumberFromData != run.lines.CurrentLineNumber;
    }
    if (plan.LoggingLineBreakDistance > 0) {
        const auto& here = sample.ChannelValues;
        const auto& start = bin.BinStartValues;
        const bool both_known = is_valid_channel(here[kEast]) && is_valid_channel(here[kNorth]) &&
                                is_valid_channel(start[kEast]) && is_valid_channel(start[kNorth]);
        const double east = here[kEast] - start[kEast];
        const double north = here[kNorth] - start[kNorth];
        if (both_known && static_cast<float>(std::sqrt(east * east + north * north)) >= plan.LoggingLineBreakDistance) {
            return true;
        }
    }
    return plan.LoggingLineBreakTime > 0 && elapsed_time(bin.BinStartTime, sample.SampleTime) > plan.line_break_time;
}

// Brings the store and the track back to the record count that a dropped line leaves.
void drop_records(SampleProcessing& run, std::int32_t record_count)
{
    run.store.RecordCount = record_count;
    run.store.gradient_records = std::min(run.store.gradient_records, record_count);
    const TrackTable track = track_table(run.store);
    std::int32_t& positioned = run.last_positioned_record;
    positioned = std::min(positioned, record_count);
    while (positioned > 0 && !has_position(track, positioned)) --positioned;
}

int open_new_line(SampleProcessing& run)
{
    if (run.bin.BinCount > 0 && store_averaged_sample(run) < 0) return -1;
    SurveyLines& lines = run.lines;
    const double number =
        run.plan.line_numbers_from_data ? run.sample.LineNumberFromData : lines.CurrentLineNumber + 1.0;
    const std::int32_t left = open_next_line(lines, number, run.store.RecordCount, run.plan.MinLineRecords);
    if (left < run.store.RecordCount) drop_records(run, left);
    return 0;
}

// A heading of the bin, within 180 degrees of the bin's first.
double heading_near_first(double heading, AveragingBin& bin)
{
    if (!is_valid_channel(heading)) return heading;
    if (!is_valid_channel(bin.first_heading)) bin.first_heading = heading;
    return bin.first_heading + std::remainder(heading - bin.first_heading, 360.0);
}

double mean(double sum, std::int64_t count)
{
    return count < 1 ? kNull : finite_or_null(sum / static_cast<double>(count));
}

double sensor_mean(const AveragingBin& bin, std::int32_t channel)
{
    if (channel < 0) return kNull;
    const auto at = static_cast<std::size_t>(channel);
    return mean(bin.SensorSum[at], bin.SensorCountAcc[at]);
}

void store_channels(SampleProcessing& run, std::int32_t record)
{
    for (const int slot : run.store.stored_slots) {
        const auto at = static_cast<std::size_t>(slot);
        double value = mean(run.bin.ChannelSum[at], run.bin.ChannelCountAcc[at]);
        if (slot == kHeading && run.plan.circular_heading) value = within_circle(value);
        run.store.channels[at][record] = value;
    }
}

// The field of the whole sensor: a component alone, or the length of the vector of three.
double total_field(const std::array<double, 4>& components, int count)
{
    if (count == 1) return components[1];
    for (std::size_t row = 1; row <= 3; ++row) {
        if (!is_valid_sensor(components[row])) return kNull;
    }
    return std::sqrt(components[1] * components[1] + components[2] * components[2] + components[3] * components[3]);
}

void store_sensor_values(SampleProcessing& run, std::int32_t record)
{
    const int components = run.plan.components_per_sensor;
    for (std::size_t sensor = 1; sensor < run.plan.sensors.size(); ++sensor) {
        auto& rows = run.store.sensors[sensor].averages;
        std::array<double, 4> averages = {};
        for (std::size_t row = 1; row <= static_cast<std::size_t>(components); ++row) {
            averages[row] = sensor_mean(run.bin, run.plan.sensors[sensor].component_channels[row]);
            rows[row][record] = averages[row];
        }
        rows[0][record] = total_field(averages, components);
    }
}

void store_read_locations(SampleProcessing& run, std::int32_t record)
{
    for (std::size_t sensor = 1; sensor < run.plan.sensors.size(); ++sensor) {
        for (std::size_t axis = 1; axis <= 3; ++axis) {
            run.store.sensors[sensor].position[axis][record] =
                sensor_mean(run.bin, run.plan.sensors[sensor].location_channels[axis]);
        }
    }
}

bool bin_is_full(const SampleProcessing& run)
{
    const std::int64_t elapsed = elapsed_time(run.bin.BinStartTime, run.sample.SampleTime);
    return run.bin.BinCount > 0 && (elapsed >= run.plan.sample_interval || elapsed < 0);
}

void refuse_line(const LineReading& reading, SampleProcessing& run)
{
    ++run.lines_rejected;
    try {
        note_rejected_line(run.rejected, run.file, reading, run.line_fault);
    } catch (const std::bad_alloc&) { // it is counted
        return;
    }
}

// Whether the first lines of the file fit, and whether it begins before another has ended.
void note_line_of_file(SampleProcessing& run)
{
    FirstLines& first = run.first_lines.back();
    const bool has_time = run.line_fault == LineFault::none;
    if (first.lines < kJudgedLines) {
        ++first.lines;
        first.with_time += has_time ? 1 : 0;
    }
    if (!has_time) return;
    const std::int64_t time = run.sample.SampleTime;
    if (!run.file_has_time && run.newest_time && time < *run.newest_time) {
        run.overlaps.push_back({run.file, run.newest_time_file});
    }
    run.file_has_time = true;
    if (run.newest_time && time <= *run.newest_time) return;
    if (run.newest_time) {
        const std::int64_t step = time - *run.newest_time;
        run.shortest_step = run.shortest_step == 0 ? step : std::min(run.shortest_step, step);
    }
    run.newest_time = time;
    run.newest_time_file = run.file;
}

// Closes the full bin. By default the sample that closes it belongs to no bin.
int close_full_bin(SampleProcessing& run)
{
    if (store_averaged_sample(run) < 0) return -1;
    if (run.plan.carry_closing_sample) {
        begin_bin(run.sample, run.bin);
        return accumulate_sample(run);
    }
    ++run.lines_not_averaged;
    return 0;
}

} // namespace

void store_derived_locations(SampleProcessing& run, std::int32_t record)
{
    const SampleStore& store = run.store;
    FishPose fish;
    fish.easting = store.channel(kEast, record);
    fish.northing = store.channel(kNorth, record);
    fish.vertical = store.channel(run.plan.vertical_slot, record);
    fish.heading = store.channel(kHeading, record);
    fish.pitch = store.channel(kPitch, record);
    fish.roll = store.channel(kRoll, record);
    const Rotation rotation = fish_rotation(fish, run.plan.heading_sense);
    for (std::size_t sensor = 1; sensor < run.plan.sensors.size(); ++sensor) {
        const std::array<double, 3> position = sensor_position(fish, rotation, run.plan.sensors[sensor].offset);
        for (std::size_t axis = 1; axis <= 3; ++axis) {
            run.store.sensors[sensor].position[axis][record] = position[axis - 1];
        }
    }
}

void store_track_point(SampleProcessing& run, std::int32_t record)
{
    const TrackTable track = track_table(run.store);
    double distance = record > 1 ? track.distance[record - 1] : 0.0;
    if (is_placed(track, record)) {
        if (const std::int32_t last = run.last_positioned_record; last > 0) {
            const double east = track.easting[record] - track.easting[last];
            const double north = track.northing[record] - track.northing[last];
            distance += std::sqrt(east * east + north * north);
        }
        run.last_positioned_record = record;
    }
    run.store.distance[record] = distance;
}

double within_circle(double heading)
{
    if (!is_valid_channel(heading)) return heading;
    const double turned = std::fmod(heading, 360.0);
    return turned < 0 ? turned + 360.0 : turned;
}

void start_processing(SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations,
                      const ProcessingParameters& parameters)
{
    SampleStore store = std::move(run.store); // reset below, which gives its memory back in good time
    run = SampleProcessing();
    run.store = std::move(store);
    run.plan = make_processing_plan(definitions, locations, parameters);
    run.converter = LineConverter(run.plan.wanted_fields);
    const auto sensor_channels = static_cast<std::size_t>(locations.sensor_channel_count()) + 1;
    run.sample.SensorValues.assign(sensor_channels, kNull);
    run.bin.SensorCountAcc.assign(sensor_channels, 0);
    run.bin.SensorSum.assign(sensor_channels, 0.0);
    reset_sample_store(run.store, definitions, locations);
}

LineConverter line_converter(const SurveyDefinitions& definitions, const FieldLocations& locations,
                             const std::vector<bool>& wanted_fields, std::string_view names_line,
                             std::shared_ptr<const Projection> grid)
{
    if (!definitions.data_format) return LineConverter(wanted_fields);
    FormatRules rules = make_format_rules(definitions, locations, wanted_fields, names_line);
    return LineConverter(std::make_unique<FormattedLineReader>(std::move(rules), std::move(grid)));
}

void obey_data_format(SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations,
                      std::string_view names_line, std::shared_ptr<const Projection> grid)
{
    if (!definitions.data_format) return;
    const DataFormat& format = *definitions.data_format;
    const std::vector<bool>& wanted = run.plan.wanted_fields;
    LoggerSequence& sequence = run.sequence;
    sequence.runs_by_format = true;
    sequence.time_form = compiled_time_form(format);
    sequence.undecided_columns = make_format_rules(definitions, locations, wanted, names_line).number_columns;
    sequence.units.assign(run.plan.wanted_fields.size(), LoggerSequence::Unit::undecided);
    sequence.path = TowedPath(format.layback, to_fixed_interval(format.latency));
    run.converter = line_converter(definitions, locations, wanted, names_line, std::move(grid));
}

void begin_next_file(SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations,
                     std::string_view names_line, std::shared_ptr<const Projection> grid)
{
    close_open_bin(run);
    const SurveyLines& lines = run.lines;
    const bool has_records = lines.has_line() && lines.last_record(lines.CurrentLine) == run.store.RecordCount &&
                             lines.LineLimits[lines.CurrentLine][SurveyLines::kCount] > 0;
    if (has_records && !run.plan.line_numbers_from_data) open_new_line(run);
    ++run.file;
    run.first_lines.emplace_back();
    run.file_has_time = false;

    ProcessingPlan moved = make_processing_plan(definitions, locations, ProcessingParameters());
    run.plan.channels = std::move(moved.channels);
    run.plan.sensor_channels = std::move(moved.sensor_channels);
    run.plan.wanted_fields = std::move(moved.wanted_fields);
    run.converter = LineConverter(run.plan.wanted_fields);
    obey_data_format(run, definitions, locations, names_line, std::move(grid));
}

int process_data_line(std::string_view line, SampleProcessing& run)
{
    LineReading reading = run.converter.read(line);
    reading.number = run.lines_read + 1;
    return process_line_reading(reading, run);
}

int process_line_reading(const LineReading& reading, SampleProcessing& run)
{
    ++run.lines_read;
    run.first_placed_record = 0;
    int status = -1;
    try {
        status = convert_record_fields(reading, run);
        if (status == 0) status = check_line_break(run);
        if (status == 0) status = bin_is_full(run) ? close_full_bin(run) : accumulate_sample(run);
        note_line_of_file(run);
    } catch (const std::exception&) { // memory has run out: the line is lost, what is stored stays
        status = -1;
        run.line_fault = LineFault::no_memory;
    }
    if (status < 0) refuse_line(reading, run);
    return status;
}

int close_open_bin(SampleProcessing& run)
{
    return run.bin.BinCount > 0 ? store_averaged_sample(run) : 0;
}

int convert_record_fields(const LineReading& reading, SampleProcessing& run)
{
    run.line_fault = reading.fault;
    if (reading.fault != LineFault::none) return -1;
    const SampleRecord record = reading.values;
    const ProcessingPlan& plan = run.plan;
    CurrentSample& sample = run.sample;
    for (const ProcessingPlan::Column& column : plan.channels) {
        sample.ChannelValues[column.channel] = record[column.field];
    }
    const std::optional<std::int64_t> time = time_of_line(reading, run);
    if (!time) {
        run.line_fault = LineFault::no_time;
        return -1;
    }
    sample.SampleTime = *time;
    for (const ProcessingPlan::Column& column : plan.sensor_channels) {
        sample.SensorValues[column.channel] = record[column.field];
    }
    if (run.sequence.runs_by_format) judge_values(reading, run);
    scale_values(plan, sample);
    if (run.sequence.path.moves()) move_to_fish(run);
    derive_dem(plan, sample.ChannelValues);
    if (plan.line_numbers_from_data) sample.LineNumberFromData = sample.ChannelValues[kLine];
    ++run.lines_processed;
    return 0;
}

int check_line_break(SampleProcessing& run)
{
    SurveyLines& lines = run.lines;
    const bool from_data = run.plan.line_numbers_from_data;
    if (!lines.has_line()) open_first_line(lines, from_data ? run.sample.LineNumberFromData : 1.0);
    if (from_data && !is_valid_channel(lines.CurrentLineNumber)) {
        lines.CurrentLineNumber = run.sample.LineNumberFromData;
        lines.LineNumbers[lines.CurrentLine] = lines.CurrentLineNumber;
    }
    if (run.bin.BinCount == 0) begin_bin(run.sample, run.bin);
    if (!is_line_break(run)) return 0;
    if (open_new_line(run) < 0) return -1;
    begin_bin(run.sample, run.bin);
    return 0;
}

int accumulate_sample(SampleProcessing& run)
{
    AveragingBin& bin = run.bin;
    if (bin.BinCount == 0) {
        bin.ChannelCountAcc.fill(0);
        bin.ChannelSum.fill(0.0);
        std::fill(bin.SensorCountAcc.begin(), bin.SensorCountAcc.end(), 0);
        std::fill(bin.SensorSum.begin(), bin.SensorSum.end(), 0.0);
        bin.first_heading = kNull;
    }
    ++bin.BinCount;

    // Adding 0 for a value that is not valid leaves the sum as it is and keeps the loops free of branches.
    ChannelArray& values = run.sample.ChannelValues;
    const double heading = values[kHeading];
    if (run.plan.circular_heading) values[kHeading] = heading_near_first(heading, bin);
    for (std::size_t channel = 1; channel <= number_of_field_slots; ++channel) {
        const bool valid = is_valid_channel(values[channel]);
        bin.ChannelCountAcc[channel] += valid ? 1 : 0;
        bin.ChannelSum[channel] += valid ? values[channel] : 0.0;
    }
    values[kHeading] = heading;
    for (std::size_t channel = 1; channel < run.sample.SensorValues.size(); ++channel) {
        const double value = run.sample.SensorValues[channel];
        const bool valid = is_valid_sensor(value);
        bin.SensorCountAcc[channel] += valid ? 1 : 0;
        bin.SensorSum[channel] += valid ? value : 0.0;
    }
    return 0;
}

int store_averaged_sample(SampleProcessing& run)
{
    SampleStore& store = run.store;
    const std::int32_t record = store.RecordCount + 1;
    reserve_records(store, record);
    add_record_to_line(run.lines, record);
    store.record_time[record] = to_date_time(run.bin.BinStartTime);
    store_channels(run, record);
    store_sensor_values(run, record);
    if (run.plan.read_sensor_location) {
        store_read_locations(run, record);
    } else {
        store_derived_locations(run, record);
    }
    const std::int32_t positioned = run.last_positioned_record;
    store_track_point(run, record);
    store.RecordCount = record;
    run.bin.BinCount = 0;
    if (run.sequence.runs_by_format) place_records_between(run, positioned);
    return 0;
}

int decimate_accumulated_data_values(const AveragingBin& bin, CurrentSample& sample)
{
    for (std::size_t channel = 1; channel <= number_of_field_slots; ++channel) {
        const std::int64_t count = bin.ChannelCountAcc[channel];
        sample.ChannelValues[channel] = count <= 1 ? kNull : mean(bin.ChannelSum[channel], count);
    }
    for (std::size_t channel = 1; channel < sample.SensorValues.size(); ++channel) {
        const std::int64_t count = bin.SensorCountAcc[channel];
        sample.SensorValues[channel] = count <= 1 ? kNull : mean(bin.SensorSum[channel], count);
    }
    return 0;
}

} // namespace tarvo

#include "processing/residual.h"

#include "processing/altitude.h"
#include "processing/median.h"
#include "processing/spike_filter.h"
#include "text/file_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

namespace tarvo {

namespace {

constexpr double kAltitudesPerWindow = 8.0;
constexpr double kSmallestAutomaticWindow = 20.0; // metres
constexpr double kWindowWithoutAltitude = 40.0;   // metres
constexpr double kFewestStepsPerWindow = 3.0;
constexpr double kWeakestEarthField = 15'000.0; // nT; what lies outside is no Earth's field in nanotesla
constexpr double kStrongestEarthField = 80'000.0;

// The stretch of track that a record's window holds, metres along the track. Every bound is a rising function of the
// record's distance, rounding included: a window never moves back.
struct WindowLimits {
    double from;
    double to;
};

WindowLimits limits_before_line_end(const ResidualSource& source, std::int32_t first, std::int32_t record)
{
    const double here = source.distance[record];
    const double start = source.distance[first];
    return {std::max(start, here - source.half_window) - kWindowTolerance,
            std::min(2 * here - start, here + source.half_window) + kWindowTolerance};
}

WindowLimits limits_in_line(const ResidualSource& source, std::int32_t first, std::int32_t last, std::int32_t record)
{
    const WindowLimits open = limits_before_line_end(source, first, record);
    const double end = source.distance[last];
    return {std::max(open.from, 2 * source.distance[record] - end - kWindowTolerance),
            std::min(open.to, end + kWindowTolerance)};
}

// Values on their way from the store into a window.
class ReducedField {
public:
    ReducedField(const ResidualSource& source, std::int32_t first, std::int32_t last)
        : source_(source), first_(first), last_(last)
    {
        if (source.base != nullptr) base_.emplace(*source.base);
    }

    double take(std::int32_t record, std::int64_t& spikes)
    {
        const double field = source_.field[record];
        if (!is_valid_sensor(field)) return kNull;
        if (source_.filters_spikes && is_spike(source_.field, record, first_, last_)) {
            ++spikes;
            return kNull;
        }
        if (!base_) return field;
        const double base = base_->field_at_date(source_.time[record]);
        return is_valid_sensor(base) ? field - (base - source_.base_level) : kNull;
    }

private:
    const ResidualSource& source_;
    std::int32_t first_;
    std::int32_t last_;
    std::optional<BaseCursor> base_;
};

void begin_sweep(ResidualSweep& sweep, std::int32_t first)
{
    sweep.first = first;
    sweep.next = first;
    sweep.lower = first;
    sweep.upper = first - 1;
    sweep.values.clear();
}

void write_record(const ResidualSweep& sweep, const ResidualRows& rows, std::int32_t record, double background)
{
    const double reduced = sweep.values.value(record - sweep.lower);
    const bool is_known = is_valid_sensor(reduced) && is_valid_sensor(background);
    const std::int32_t at = record - rows.first;
    if (rows.residual != nullptr) rows.residual[at] = is_known ? reduced - background : kNull;
    if (rows.background != nullptr) rows.background[at] = background;
    if (rows.reduced != nullptr) rows.reduced[at] = reduced;
}

// Computes the records from sweep.next to `limit`, in a line whose records [sweep.first, known] are stored. Of a line
// that is still open only those whose window lies before its newest values.
enum class LineEnd { known, open };
void advance(ResidualSweep& sweep, const ResidualSource& source, const ResidualRows& rows, std::int32_t known,
             LineEnd line_end, std::int32_t limit)
{
    ReducedField field(source, sweep.first, known);
    // A value is not known for good while records that may make it a spike are missing.
    const bool waits_for_neighbours = line_end == LineEnd::open && source.filters_spikes;
    const std::int32_t last_value = waits_for_neighbours ? known - kSpikeReach : known;
    for (; sweep.next <= limit; ++sweep.next) {
        if (line_end == LineEnd::open && sweep.next > last_value) return;
        const WindowLimits limits = line_end == LineEnd::open ? limits_before_line_end(source, sweep.first, sweep.next)
                                                              : limits_in_line(source, sweep.first, known, sweep.next);
        if (line_end == LineEnd::open && !(source.distance[last_value] > limits.to)) return;
        while (sweep.upper < last_value && source.distance[sweep.upper + 1] <= limits.to) {
            ++sweep.upper;
            sweep.values.push_back(field.take(sweep.upper, sweep.spikes));
        }
        for (; source.distance[sweep.lower] < limits.from; ++sweep.lower) sweep.values.pop_front();
        const bool has_background = sweep.values.valid_count() >= kFewestBackgroundValues;
        write_record(sweep, rows, sweep.next, has_background ? sweep.values.median() : kNull);
    }
}

ResidualSource source_of(const SampleStore& store, int sensor, double window_width,
                         const ProcessingParameters& parameters, const BaseStation* base, double level)
{
    ResidualSource source;
    source.field = store.sensors[static_cast<std::size_t>(sensor)].averages[0].data();
    source.distance = store.distance.data();
    source.time = store.record_time.data();
    source.half_window = window_width / 2;
    source.filters_spikes = parameters.SpikeFilter;
    source.base = base;
    source.base_level = level;
    return source;
}

// Metres from record to record, the mean over all lines; 0 when no line has two records.
double mean_sample_step(const SampleStore& store, const SurveyLines& lines)
{
    double length = 0;
    double steps = 0;
    for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
        const std::int32_t first = lines.first_record(line);
        const std::int32_t last = std::min(lines.last_record(line), store.RecordCount);
        if (last <= first) continue;
        length += store.distance[last] - store.distance[first];
        steps += last - first;
    }
    return steps > 0 ? length / steps : 0.0;
}

// What the parameters and the base station come to for the stored records.
struct Plan {
    ResidualWindow window;
    double base_level = 0; // nT
    std::string refusal;   // empty: they suit them
};

std::string window_refusal(double width, double step)
{
    const double least = kFewestStepsPerWindow * step;
    if (width >= least) return {};
    return "A residual window of " + format_fixed(width, 1) + " m is below three sample steps of this survey (" +
           format_fixed(least, 1) + " m)";
}

std::string base_refusal(const BaseStation& base, const TrackTable& track)
{
    const std::string name(last_part(base.file_name));
    const std::optional<TimeSpan> readings = time_span(base);
    const std::optional<TimeSpan> survey = time_span(track);
    if (!readings) return "The base station file " + name + " holds no reading of the field";
    if (!survey) return {};
    return "The base station file " + name + " says nothing of the time of the survey: it covers " +
           time_span_text(*readings) + ", the survey " + time_span_text(*survey);
}

Plan make_plan(const SampleStore& store, const SurveyLines& lines, const ProcessingParameters& parameters,
               const BaseStation* base)
{
    Plan plan;
    plan.window = residual_window(store, parameters);
    plan.refusal = window_refusal(plan.window.width, mean_sample_step(store, lines));
    if (!plan.refusal.empty() || base == nullptr) return plan;
    const TrackTable track = track_table(store);
    const std::optional<double> level = base_level_over(*base, track);
    plan.base_level = level.value_or(0.0);
    if (!level) plan.refusal = base_refusal(*base, track);
    return plan;
}

constexpr std::int32_t kStretch = 1 << 15; // records between two pauses

void sweep_line(ResidualSweep& sweep, const ResidualSource& source, const ResidualRows& rows, std::int32_t first,
                std::int32_t last, const std::function<void()>& pause)
{
    begin_sweep(sweep, first);
    while (sweep.next <= last) {
        advance(sweep, source, rows, last, LineEnd::known, std::min<std::int32_t>(last, sweep.next + (kStretch - 1)));
        if (pause) pause();
    }
}

void fit_sensors(ResidualField& field, const SampleStore& store)
{
    if (field.values.size() == store.sensors.size()) return;
    field.values = std::vector<RecordValues>(store.sensors.size());
    field.records = 0;
}

// Room for the rows up to `last`, the new ones null.
void reserve_rows(ResidualField& field, std::int32_t last)
{
    for (std::size_t sensor = 1; sensor < field.values.size(); ++sensor) {
        RecordValues& row = field.values[sensor];
        row.reserve(last);
        if (last > field.records) std::fill(row.data() + field.records + 1, row.data() + last + 1, kNull);
    }
    field.records = last;
}

// Leads the sweeps of a run that goes on through line after line.
void begin_line(ResidualField& field, std::int32_t line, std::int32_t first)
{
    field.line = line;
    for (ResidualSweep& sweep : field.sweeps) begin_sweep(sweep, first);
}

} // namespace

ResidualWindow residual_window(const SampleStore& store, const ProcessingParameters& parameters)
{
    const std::optional<double> height = median_altitude(store);
    if (parameters.ResidualWindow > 0) return {parameters.ResidualWindow, false, height.has_value()};
    if (!height) return {kWindowWithoutAltitude, true, false};
    return {std::max(kSmallestAutomaticWindow, kAltitudesPerWindow * *height), true, true};
}

std::string residual_refusal(const SampleStore& store, const SurveyLines& lines, const ProcessingParameters& parameters,
                             const BaseStation* base)
{
    return make_plan(store, lines, parameters, base).refusal;
}

std::string calculate_residual(ResidualField& field, const SampleStore& store, const SurveyLines& lines,
                               const ProcessingParameters& parameters, const BaseStation* base,
                               const std::function<void()>& pause)
{
    const Plan plan = make_plan(store, lines, parameters, base);
    if (!plan.refusal.empty()) return plan.refusal;
    clear_residual(field);
    fit_sensors(field, store);
    reserve_rows(field, store.RecordCount);
    field.window = plan.window;
    field.base_level = plan.base_level;
    ResidualSweep sweep;
    for (int sensor = 1; sensor <= store.number_of_sensors(); ++sensor) {
        const ResidualSource source = source_of(store, sensor, plan.window.width, parameters, base, plan.base_level);
        ResidualRows rows;
        rows.residual = field.values[static_cast<std::size_t>(sensor)].data();
        for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
            const std::int32_t last = std::min(lines.last_record(line), store.RecordCount);
            sweep_line(sweep, source, rows, lines.first_record(line), last, pause);
        }
    }
    field.spikes = sweep.spikes;
    return {};
}

std::int32_t calculate_newest_residual(ResidualField& field, const SampleStore& store, const SurveyLines& lines,
                                       const ProcessingParameters& parameters, const BaseStation* base)
{
    const std::int32_t newest = store.RecordCount;
    if (newest < 1) return 0;
    fit_sensors(field, store);
    const bool is_dropped_line = field.line > 0 && lines.ShortLinesDropped != field.dropped_lines;
    field.dropped_lines = lines.ShortLinesDropped;
    if (is_dropped_line) { // it has taken its records back: their places hold others now
        begin_line(field, field.line, lines.first_record(field.line));
        field.records = std::min(newest, lines.first_record(field.line) - 1);
    }
    reserve_rows(field, newest);
    if (field.sweeps.size() != store.sensors.size()) {
        field.sweeps = std::vector<ResidualSweep>(store.sensors.size());
        field.line = 0;
        field.window = {parameters.ResidualWindow, false, false};
        if (!(parameters.ResidualWindow > 0)) field.window = {kWindowWithoutAltitude, true, false};
        field.base_level = base != nullptr ? base_level(*base) : 0.0;
    }
    if (field.line == 0) begin_line(field, 1, lines.first_record(1));

    std::int32_t first_done = 0;
    for (;;) {
        const bool is_open = field.line >= lines.CurrentLine;
        const std::int32_t last = std::min(lines.last_record(field.line), newest);
        for (int sensor = 1; sensor <= store.number_of_sensors(); ++sensor) {
            const auto at = static_cast<std::size_t>(sensor);
            const ResidualSource source =
                source_of(store, sensor, field.window.width, parameters, base, field.base_level);
            ResidualRows rows;
            rows.residual = field.values[at].data();
            const std::int32_t next = field.sweeps[at].next;
            advance(field.sweeps[at], source, rows, last, is_open ? LineEnd::open : LineEnd::known, last);
            if (first_done == 0 && field.sweeps[at].next > next) first_done = next;
        }
        if (is_open) break;
        begin_line(field, field.line + 1, lines.first_record(field.line + 1));
    }
    field.spikes = 0;
    for (const ResidualSweep& sweep : field.sweeps) field.spikes += sweep.spikes;
    return first_done;
}

void clear_residual(ResidualField& field)
{
    field = ResidualField();
}

ResidualProfile residual_profile(const SampleStore& store, const SurveyLines& lines, std::int32_t line, int sensor,
                                 const ProcessingParameters& parameters, const BaseStation* base)
{
    ResidualProfile profile;
    profile.first = lines.first_record(line);
    const std::int32_t last = std::min(lines.last_record(line), store.RecordCount);
    if (last < profile.first) return profile;
    const double width = residual_window(store, parameters).width;
    const double level = base != nullptr ? base_level_over(*base, track_table(store)).value_or(0.0) : 0.0;
    const auto records = static_cast<std::size_t>(last - profile.first) + 1;
    profile.distance.assign(store.distance.data() + profile.first, store.distance.data() + last + 1);
    for (std::vector<double>* const row : {&profile.reduced, &profile.background, &profile.residual}) {
        row->assign(records, kNull);
    }
    ResidualSweep sweep;
    sweep_line(sweep, source_of(store, sensor, width, parameters, base, level),
               {profile.residual.data(), profile.background.data(), profile.reduced.data(), profile.first},
               profile.first, last, nullptr);
    return profile;
}

bool is_window_cut(const double* distance, std::int32_t record, std::int32_t first, std::int32_t last,
                   double window_width)
{
    const double nearer_end = std::min(distance[record] - distance[first], distance[last] - distance[record]);
    return nearer_end < window_width / 4 - kWindowTolerance;
}

namespace {

std::vector<std::int32_t> lines_without_field(const SampleStore& store, const SurveyLines& lines)
{
    std::vector<std::int32_t> found;
    for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
        const std::int32_t first = lines.first_record(line);
        const std::int32_t last = std::min(lines.last_record(line), store.RecordCount);
        const auto has_reading = [&](const SensorRecords& sensor) {
            const double* const fields = sensor.averages[0].data();
            return std::any_of(fields + first, fields + last + 1, is_valid_sensor);
        };
        if (first > last) continue; // opened, nothing stored
        if (std::none_of(store.sensors.begin() + 1, store.sensors.end(), has_reading)) found.push_back(line);
    }
    return found;
}

} // namespace

std::vector<std::string> residual_remarks(const SampleStore& store, const SurveyLines& lines,
                                          const ResidualField& field)
{
    std::vector<std::string> remarks;
    std::vector<double> fields;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        const RecordValues& total = store.sensors[sensor].averages[0];
        for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
            if (is_valid_sensor(total[record])) fields.push_back(total[record]);
        }
    }
    const std::optional<double> middle = median(fields);
    if (!middle) {
        remarks.emplace_back("The survey has no reading of the field, so it has no residual");
        return remarks;
    }
    if (const std::vector<std::int32_t> silent = lines_without_field(store, lines); !silent.empty()) {
        remarks.push_back(lines_that_have(lines, silent) + " no reading of the field and no residual");
    }
    if (*middle < kWeakestEarthField || *middle > kStrongestEarthField) {
        remarks.push_back("The median total field is " + format_fixed(*middle, 1) +
                          ", which is no field of the Earth in nanotesla: spikes of 2 nT and every threshold in nT are "
                          "taken as they stand");
    }
    if (field.window.is_automatic && !field.window.has_altitude) {
        remarks.push_back("The survey has no altitude: the residual window is " + format_fixed(field.window.width, 0) +
                          " m");
    }
    return remarks;
}

} // namespace tarvo

#include "targets/anomaly_field.h"

#include "processing/residual.h"
#include "processing/running_median.h"
#include "targets/dipole_model.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

// How far away a dipole bends readings by an amount that counts, metres.
double reach_of(const GridVector& moment)
{
    constexpr double kCounts = 0.05; // nT
    constexpr double kNearest = 5;   // metres
    return std::max(kNearest, std::cbrt(200 * length(moment) / kCounts));
}

} // namespace

AnomalyField::AnomalyField(const FitSurvey& survey, const std::vector<const double*>& residual, double window,
                           double smoothing, const std::function<void()>& pause)
    : survey_(survey), half_window_(window / 2), half_smoothing_(smoothing / 2)
{
    const std::int32_t records = survey.store().RecordCount;
    const std::vector<double> nothing(at(records) + 1, kNull);
    cleaned_.assign(residual.size(), nothing);
    left_ = cleaned_;
    smoothed_ = cleaned_;
    closed_.assign(residual.size(), std::vector<bool>(nothing.size(), false));
    const auto blocks = at(records / kBlock + 1);
    peaks_.assign(residual.size(), std::vector<Peak>(blocks));
    for (int sensor = 1; at(sensor) < residual.size(); ++sensor) {
        const RecordValues& fields = survey.store().sensors[at(sensor)].averages[0];
        for (std::int32_t record = 1; record <= records; ++record) {
            const double left = residual[at(sensor)][record];
            if (!is_valid_sensor(left)) continue;
            cleaned_[at(sensor)][at(record)] = fields[record];
            left_[at(sensor)][at(record)] = left;
        }
        const SurveyLines& lines = survey.run().lines;
        for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
            const std::int32_t last = std::min(lines.last_record(line), records);
            smooth(sensor, line, lines.first_record(line), last);
            if (pause) pause();
        }
        find_block_peaks(sensor, 1, records);
    }
}

double AnomalyField::noise() const
{
    std::vector<double> sizes;
    for (const std::vector<double>& values : smoothed_) {
        for (const double value : values) {
            if (is_valid_sensor(value)) sizes.push_back(std::abs(value));
        }
    }
    const double middle = median_or_null(std::move(sizes));
    return is_valid_sensor(middle) ? 1.4826 * middle : 0;
}

void AnomalyField::take_off(const Dipole& dipole, const FieldDirection& field)
{
    const double reach = reach_of(dipole.moment);
    FitSelection selection;
    selection.east = dipole.place.east;
    selection.north = dipole.place.north;
    selection.radius = reach;
    const FitReadings readings = survey_.readings(selection, dipole.place);
    std::vector<GridVector> fields(readings.count());
    add_dipole_field(readings, {{}, dipole.moment}, 1, fields);
    for (const FitSegment& segment : readings.segments) {
        std::vector<double>& cleaned = cleaned_[at(segment.sensor)];
        const std::size_t end = segment.first + segment.count;
        for (std::size_t reading = segment.first; reading < end; ++reading) {
            double& value = cleaned[at(readings.record[reading])];
            if (!is_valid_sensor(value)) continue;
            value -= dot(field.unit, fields[reading]) + beyond_linear(fields[reading], field.unit, field.strength);
        }
        renew(segment.sensor, segment.line, readings.record[segment.first], readings.record[end - 1]);
    }
}

// What follows from new cleaned values of some records of a line.
void AnomalyField::renew(int sensor, std::int32_t line, std::int32_t from, std::int32_t to)
{
    const SurveyLines& lines = survey_.run().lines;
    const RecordValues& distance = survey_.store().distance;
    const std::int32_t first = lines.first_record(line);
    const std::int32_t last = std::min(lines.last_record(line), survey_.store().RecordCount);
    const double start = distance[from] - half_window_;
    const double end = distance[to] + half_window_;
    while (from > first && distance[from - 1] >= start) --from;
    while (to < last && distance[to + 1] <= end) ++to;
    take_background(sensor, line, from, to);
    smooth(sensor, line, from, to);
    find_block_peaks(sensor, from, to);
}

// The residual's own rule for the background, for a stretch of a line.
void AnomalyField::take_background(int sensor, std::int32_t line, std::int32_t from, std::int32_t to)
{
    const SurveyLines& lines = survey_.run().lines;
    const RecordValues& distance = survey_.store().distance;
    const std::int32_t first = lines.first_record(line);
    const std::int32_t last = std::min(lines.last_record(line), survey_.store().RecordCount);
    const std::vector<double>& cleaned = cleaned_[at(sensor)];
    RunningMedian window;
    std::int32_t lower = from; // records [lower, upper) are in the window
    const double reach_of_first = std::min(half_window_, distance[from] - distance[first]) + kWindowTolerance;
    while (lower > first && distance[lower - 1] >= distance[from] - reach_of_first) --lower;
    std::int32_t upper = lower;
    for (std::int32_t record = from; record <= to; ++record) {
        const double here = distance[record];
        const double half = std::min({half_window_, here - distance[first], distance[last] - here}) + kWindowTolerance;
        while (upper <= last && distance[upper] <= here + half) window.push_back(cleaned[at(upper++)]);
        while (distance[lower] < here - half) {
            window.pop_front();
            ++lower;
        }
        const double value = cleaned[at(record)];
        const bool is_known = is_valid_sensor(value) && window.valid_count() >= kFewestBackgroundValues;
        left_[at(sensor)][at(record)] = is_known ? value - window.median() : kNull;
    }
}

void AnomalyField::smooth(int sensor, std::int32_t line, std::int32_t from, std::int32_t to)
{
    const SurveyLines& lines = survey_.run().lines;
    const RecordValues& distance = survey_.store().distance;
    const std::int32_t first = lines.first_record(line);
    const std::int32_t last = std::min(lines.last_record(line), survey_.store().RecordCount);
    const std::vector<double>& left = left_[at(sensor)];
    for (std::int32_t record = from; record <= to; ++record) {
        double& smoothed = smoothed_[at(sensor)][at(record)];
        smoothed = kNull;
        if (!is_valid_sensor(left[at(record)])) continue;
        double sum = 0;
        int count = 0;
        std::int32_t near = record;
        while (near > first && distance[near - 1] >= distance[record] - half_smoothing_) --near;
        for (; near <= last && distance[near] <= distance[record] + half_smoothing_; ++near) {
            if (!is_valid_sensor(left[at(near)])) continue;
            sum += left[at(near)];
            ++count;
        }
        smoothed = sum / count;
    }
}

void AnomalyField::find_block_peaks(int sensor, std::int32_t from, std::int32_t to)
{
    const std::int32_t records = survey_.store().RecordCount;
    const std::vector<double>& smoothed = smoothed_[at(sensor)];
    for (std::int32_t block = from / kBlock; block <= to / kBlock; ++block) {
        Peak peak;
        const std::int32_t end = std::min(records, (block + 1) * kBlock - 1);
        for (std::int32_t record = std::max(1, block * kBlock); record <= end; ++record) {
            const double value = smoothed[at(record)];
            if (!is_valid_sensor(value) || closed_[at(sensor)][at(record)]) continue;
            if (std::abs(value) > std::abs(peak.size)) peak = {sensor, record, value};
        }
        peaks_[at(sensor)][at(block)] = peak;
    }
}

std::optional<AnomalyField::Peak> AnomalyField::largest() const
{
    Peak largest;
    for (const std::vector<Peak>& peaks : peaks_) {
        for (const Peak& peak : peaks) {
            if (std::abs(peak.size) > std::abs(largest.size)) largest = peak;
        }
    }
    if (largest.record == 0) return std::nullopt;
    return largest;
}

void AnomalyField::close(double east, double north, double radius)
{
    for (int sensor = 1; at(sensor) < closed_.size(); ++sensor) {
        survey_.for_records_near(east, north, radius, [&](std::int32_t first, std::int32_t last) {
            for (std::int32_t record = first; record <= last; ++record) {
                const GridVector place = survey_.sensor_place(sensor, record);
                if (std::hypot(place.east - east, place.north - north) > radius) continue;
                closed_[at(sensor)][at(record)] = true;
            }
            find_block_peaks(sensor, first, last);
        });
    }
}

void AnomalyField::open_all()
{
    for (int sensor = 1; at(sensor) < closed_.size(); ++sensor) {
        std::fill(closed_[at(sensor)].begin(), closed_[at(sensor)].end(), false);
        find_block_peaks(sensor, 1, survey_.store().RecordCount);
    }
}

} // namespace tarvo

#include "survey/line_table.h"

#include "processing/altitude.h"
#include "processing/fixed_time.h"
#include "processing/median.h"
#include "processing/track_speed.h"
#include "processing/track_table.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

constexpr double kSpreadOfMad = 1.4826; // standard deviation over median absolute deviation, of normal noise

double line_noise(const SampleStore& store, std::int32_t first, std::int32_t last)
{
    std::vector<double> steps;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        const RecordValues& field = store.sensors[sensor].averages[0];
        for (std::int32_t record = first + 1; record <= last; ++record) {
            if (!is_valid_sensor(field[record]) || !is_valid_sensor(field[record - 1])) continue;
            steps.push_back(std::abs(field[record] - field[record - 1]));
        }
    }
    const std::optional<double> middle = median(steps);
    return middle ? kSpreadOfMad * *middle / std::sqrt(2.0) : kNull;
}

// Of the values that are known; kNull where nothing is to be judged.
double share_left_out(const std::vector<double>& values, const ValueLimits& limits)
{
    if (values.empty() || !limits.are_set()) return kNull;
    const auto out = std::count_if(values.begin(), values.end(), [&](double value) { return limits.leave_out(value); });
    return static_cast<double>(out) / static_cast<double>(values.size());
}

void take_altitudes(const SampleStore& store, const ValueLimits& limits, LineSummary& line)
{
    std::vector<double> altitudes;
    for (std::int32_t record = line.first; record <= line.last; ++record) {
        const double value = altitude(store, record);
        if (is_valid_channel(value)) altitudes.push_back(value);
    }
    line.altitude_out = share_left_out(altitudes, limits);
    line.altitude_low = percentile(altitudes, 0.1).value_or(kNull);
    line.altitude_middle = percentile(altitudes, 0.5).value_or(kNull);
    line.altitude_high = percentile(altitudes, 0.9).value_or(kNull);
}

void take_speeds(const TrackTable& track, const ValueLimits& limits, LineSummary& line)
{
    const double seconds = (line.end_time - line.start_time) * kSecondsPerDay;
    if (seconds > 0) line.speed = line.length / seconds;
    if (!limits.are_set()) return;
    std::vector<double> speeds;
    for (std::int32_t record = line.first + 1; record <= line.last; ++record) {
        const double value = speed_over_ground(track, record);
        if (is_valid_channel(value)) speeds.push_back(value);
    }
    line.speed_out = share_left_out(speeds, limits);
}

std::int64_t count_nulls(const SampleStore& store, std::int32_t first, std::int32_t last)
{
    std::int64_t nulls = 0;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        const RecordValues& field = store.sensors[sensor].averages[0];
        for (std::int32_t record = first; record <= last; ++record) nulls += is_valid_sensor(field[record]) ? 0 : 1;
    }
    return nulls;
}

LineSummary summary_of(const SampleProcessing& run, const WatchSettings& limits, std::int32_t line)
{
    const SampleStore& store = run.store;
    LineSummary summary;
    summary.line = line;
    summary.number = run.lines.LineNumbers[line];
    summary.first = run.lines.first_record(line);
    summary.last = std::min(run.lines.last_record(line), store.RecordCount);
    summary.start_time = store.record_time[summary.first];
    summary.end_time = store.record_time[summary.last];
    summary.length = store.distance[summary.last] - store.distance[summary.first];
    summary.samples = summary.last - summary.first + 1;
    summary.nulls = count_nulls(store, summary.first, summary.last);
    take_speeds(track_table(store), limits.speed, summary);
    take_altitudes(store, limits.altitude, summary);
    summary.noise = line_noise(store, summary.first, summary.last);
    return summary;
}

std::string percent_text(double share)
{
    return is_valid_channel(share) ? format_fixed(share * 100, 1) : std::string();
}

std::string number_text(double value, int decimals)
{
    return is_valid_channel(value) ? format_fixed(value, decimals) : std::string();
}

std::string two_digits(std::int64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string time_text(double date_time)
{
    if (!is_valid_channel(date_time)) return {};
    const double day = date_time - std::floor(date_time);
    constexpr double kHeldTo = 1e-5; // seconds: a whole second may be stored as a little less
    const auto second = static_cast<std::int64_t>(std::floor(day * kSecondsPerDay + kHeldTo));
    return two_digits(second / 3600 % 24) + ':' + two_digits(second / 60 % 60) + ':' + two_digits(second % 60);
}

std::string exact_text(double value)
{
    return is_valid_channel(value) ? format_shortest(value) : std::string();
}

// Square of the distance from (x, y) to the straight piece from record - 1 to record; to the record alone where the
// piece is not known.
double squared_distance(const TrackTable& track, std::int32_t record, bool has_piece, double x, double y)
{
    const double x2 = track.easting[record];
    const double y2 = track.northing[record];
    double nearest_x = x2;
    double nearest_y = y2;
    if (has_piece && has_position(track, record - 1)) {
        const double dx = x2 - track.easting[record - 1];
        const double dy = y2 - track.northing[record - 1];
        const double square = dx * dx + dy * dy;
        const double share = square > 0 ? ((x2 - x) * dx + (y2 - y) * dy) / square : 0.0; // back from the record
        const double back = std::clamp(share, 0.0, 1.0);
        nearest_x = x2 - back * dx;
        nearest_y = y2 - back * dy;
    }
    return (nearest_x - x) * (nearest_x - x) + (nearest_y - y) * (nearest_y - y);
}

struct LineRecords {
    std::int32_t first;
    std::int32_t last;
};

// The least distance from a record to a line, where it is below `limit`. What is farther along the track than the
// distance that is missing to the nearest place so far cannot be nearer: it is leapt over.
double distance_to_line(const TrackTable& track, const LineRecords& line, std::int32_t record, double limit)
{
    double least = limit;
    for (std::int32_t other = line.first; other <= line.last;) {
        if (!has_position(track, other)) {
            ++other;
            continue;
        }
        const double distance = std::sqrt(
            squared_distance(track, other, other > line.first, track.easting[record], track.northing[record]));
        least = std::min(least, distance);
        const double* const next = std::upper_bound(track.distance + other + 1, track.distance + line.last + 1,
                                                    track.distance[other] + (distance - least));
        other = static_cast<std::int32_t>(next - track.distance);
    }
    return least;
}

} // namespace

std::vector<LineSummary> line_summaries(const SampleProcessing& run, const WatchSettings& limits)
{
    std::vector<LineSummary> summaries;
    for (std::int32_t line = 1; line <= run.lines.CurrentLine; ++line) {
        if (run.lines.first_record(line) > run.store.RecordCount) break; // opened, nothing stored
        summaries.push_back(summary_of(run, limits, line));
    }
    return summaries;
}

std::vector<std::string> line_table_captions()
{
    return {"Line",      "Start",     "End",       "Length (m)", "Samples",      "Nulls",        "Speed (m/s)",
            "Alt. 10 %", "Alt. 50 %", "Alt. 90 %", "Noise (nT)", "Alt. out (%)", "Speed out (%)"};
}

std::vector<std::string> line_table_texts(const LineSummary& line)
{
    return {is_valid_channel(line.number) ? line_name(line.number) : std::to_string(line.line),
            time_text(line.start_time),
            time_text(line.end_time),
            format_fixed(line.length, 1),
            std::to_string(line.samples),
            std::to_string(line.nulls),
            number_text(line.speed, 2),
            number_text(line.altitude_low, 1),
            number_text(line.altitude_middle, 1),
            number_text(line.altitude_high, 1),
            number_text(line.noise, 2),
            percent_text(line.altitude_out),
            percent_text(line.speed_out)};
}

std::vector<double> line_table_values(const LineSummary& line)
{
    const double number = is_valid_channel(line.number) ? line.number : line.line;
    return {number,
            line.start_time,
            line.end_time,
            line.length,
            static_cast<double>(line.samples),
            static_cast<double>(line.nulls),
            line.speed,
            line.altitude_low,
            line.altitude_middle,
            line.altitude_high,
            line.noise,
            line.altitude_out,
            line.speed_out};
}

std::string line_table_tabbed(const std::vector<LineSummary>& lines)
{
    std::string text;
    const auto add_row = [&text](const std::vector<std::string>& cells) {
        for (std::size_t column = 0; column < cells.size(); ++column) text += (column > 0 ? "\t" : "") + cells[column];
        text += '\n';
    };
    add_row(line_table_captions());
    for (const LineSummary& line : lines) add_row(line_table_texts(line));
    return text;
}

std::string line_table_csv(const std::vector<LineSummary>& lines)
{
    std::string text = "line,number,first,last,start,end,length,samples,nulls,speed,altitude_10,altitude_50,"
                       "altitude_90,noise,altitude_out,speed_out\n";
    for (const LineSummary& line : lines) {
        text += std::to_string(line.line) + ',' + exact_text(line.number) + ',' + std::to_string(line.first) + ',' +
                std::to_string(line.last) + ',' + format_fixed(seconds_since_1970(line.start_time), 4) + ',' +
                format_fixed(seconds_since_1970(line.end_time), 4) + ',' + exact_text(line.length) + ',' +
                std::to_string(line.samples) + ',' + std::to_string(line.nulls) + ',' + exact_text(line.speed);
        for (const double value : {line.altitude_low, line.altitude_middle, line.altitude_high, line.noise,
                                   line.altitude_out, line.speed_out}) {
            text += ',' + exact_text(value);
        }
        text += '\n';
    }
    return text;
}

double distance_to_other_line(const SampleProcessing& run, std::int32_t record)
{
    const TrackTable track = track_table(run.store);
    if (record < 1 || record > track.count || !has_position(track, record)) return kNull;
    const std::int32_t own = line_of_record(run.lines, record);
    double least = std::numeric_limits<double>::infinity();
    for (std::int32_t line = 1; line <= run.lines.CurrentLine; ++line) {
        if (line == own) continue;
        const std::int32_t last = std::min(run.lines.last_record(line), track.count);
        least = std::min(least, distance_to_line(track, {run.lines.first_record(line), last}, record, least));
    }
    return std::isfinite(least) ? least : kNull;
}

} // namespace tarvo

#include "survey/survey_readings.h"

#include "picks/pick_placing.h"
#include "processing/fixed_time.h"
#include "survey/displayed_quantity.h"
#include "survey/line_table.h"
#include "text/civil_date.h"
#include "text/file_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarvo {

namespace {

constexpr std::int64_t kLongestSpanOfDays = 700'000; // from 1970, either way, that the calendar surely has
constexpr int kListedSensors = 4;                    // of a text of one line

double sample_total_field(const ProcessingPlan& plan, std::size_t sensor, const CurrentSample& sample)
{
    double squares = 0;
    double component = kNull;
    for (std::size_t row = 1; row <= static_cast<std::size_t>(plan.components_per_sensor); ++row) {
        const std::int32_t channel = plan.sensors[sensor].component_channels[row];
        component = channel < 0 ? kNull : sample.SensorValues[static_cast<std::size_t>(channel)];
        if (!is_valid_sensor(component)) return kNull;
        squares += component * component;
    }
    return plan.components_per_sensor == 1 ? component : std::sqrt(squares);
}

// Of the records record_of(1) .. record_of(count) the nearest to a place within a reach, the first of several; 0: none.
template <typename RecordOf>
std::int32_t nearest_of(std::int32_t count, const RecordOf& record_of, const TrackTable& track, const GridPlace& place,
                        double reach)
{
    std::int32_t nearest = 0;
    double least_square = reach * reach;
    for (std::int32_t k = 1; k <= count; ++k) {
        const std::int32_t record = record_of(k);
        // A null position is so far away that it is never the nearest.
        const double east = track.easting[record] - place.easting;
        const double north = track.northing[record] - place.northing;
        const double square = east * east + north * north;
        if (square > least_square || (square == least_square && nearest > 0 && nearest < record)) continue;
        nearest = record;
        least_square = square;
    }
    return nearest;
}

std::string time_of_day_text(double date_time)
{
    const double day = date_time - std::floor(date_time);
    const auto tenths = static_cast<std::int64_t>(std::nearbyint(day * kSecondsPerDay * 10)) % 864000;
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%d", static_cast<int>(tenths / 36000),
                  static_cast<int>(tenths / 600 % 60), static_cast<int>(tenths / 10 % 60),
                  static_cast<int>(tenths % 10));
    return text;
}

// The date where the data have one: clock times alone count from 1970-01-01.
std::string date_time_text(double date_time)
{
    const auto day = static_cast<std::int64_t>(std::floor(date_time - kDaysTo1970));
    const std::string clock = time_of_day_text(date_time);
    return day == 0 || std::abs(day) > kLongestSpanOfDays ? clock : civil_date_text(date_of_day(day)) + ' ' + clock;
}

std::string sensor_text(const SampleStore& store, int sensor, std::int32_t record)
{
    const SensorRecords& values = store.sensors[static_cast<std::size_t>(sensor)];
    std::string text = "   S" + std::to_string(sensor) + ": ";
    const double field = values.averages[0][record];
    text += is_valid_sensor(field) ? readable_number(field, 2) + " nT" : "no field";
    if (record > store.gradient_records) return text;
    const double gradient = values.gradients[0][record];
    if (is_valid_sensor(gradient)) text += ", " + readable_number(gradient, 2) + " nT/m";
    return text;
}

} // namespace

DialReadings dial_readings_of_sample(const SurveyState& survey, const CurrentSample& sample)
{
    const SampleProcessing& run = survey.processing;
    const ChannelArray& values = sample.ChannelValues;
    DialReadings readings = {values[kHeading],   values[kPitch], values[kRoll], values[kDepth],
                             values[kElevation], kNull,          {kNull}};
    if (run.plan.has_time) readings.speed = speed_over_ground(track_table(run.store), run.store.RecordCount);
    for (std::size_t sensor = 1; sensor < run.plan.sensors.size(); ++sensor) {
        readings.total_field.push_back(sample_total_field(run.plan, sensor, sample));
    }
    return readings;
}

DialReadings dial_readings_of_record(const SurveyState& survey, std::int32_t record)
{
    const SampleStore& store = survey.processing.store;
    DialReadings readings;
    const bool is_stored = record >= 1 && record <= store.RecordCount;
    if (is_stored) {
        readings = {store.channel(kHeading, record),
                    store.channel(kPitch, record),
                    store.channel(kRoll, record),
                    store.channel(kDepth, record),
                    store.channel(kElevation, record),
                    survey.processing.plan.has_time ? speed_over_ground(track_table(store), record) : kNull,
                    {kNull}};
    }
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        readings.total_field.push_back(is_stored ? store.sensors[sensor].averages[0][record] : kNull);
    }
    return readings;
}

std::string record_text(const SurveyState& survey, std::int32_t record)
{
    const SampleStore& store = survey.processing.store;
    if (record < 1 || record > store.RecordCount) return "";
    const TrackTable track = track_table(store);
    std::string text = place_text({track.easting[record], track.northing[record]});
    if (text.empty()) text = "no position";
    text += "   at " + readable_number(track.distance[record], 1) + " m";
    const double number = line_number_of_record(survey.processing, record);
    if (is_valid_channel(number)) text += "   line " + line_name(number);
    const double spacing = distance_to_other_line(survey.processing, record);
    if (is_valid_channel(spacing)) text += "   next line " + format_fixed(spacing, 1) + " m off";
    // Without a Time column the stored times only count the data lines.
    text += "   " + (survey.processing.plan.has_time ? date_time_text(track.time[record]) : "--:--:--");
    for (int sensor = 1; sensor <= std::min(store.number_of_sensors(), kListedSensors); ++sensor) {
        text += sensor_text(store, sensor, record);
    }
    return text;
}

double line_number_of_record(const SampleProcessing& run, std::int32_t record)
{
    if (record < 1 || record > run.store.RecordCount) return kNull;
    const std::int32_t line = line_of_record(run.lines, record);
    return line > 0 ? run.lines.LineNumbers[line] : kNull;
}

std::string track_caption(const SurveyState& survey)
{
    const TrackTable track = track_table(survey.processing.store);
    std::string text(survey.data_file_name.empty() ? "Live survey" : last_part(survey.data_file_name));
    if (track.count > 0 && survey.processing.plan.has_time) {
        text += "   " + date_time_text(track.time[1]) + " to " + date_time_text(track.time[track.count]);
    }
    return text + "   " + displayed_quantity(survey.display_settings).caption;
}

std::string place_text(const GridPlace& place)
{
    if (!place.is_known()) return "";
    return readable_number(place.easting, 1) + " m E, " + readable_number(place.northing, 1) + " m N";
}

std::int32_t nearest_record(const TrackTable& track, const GridPlace& place, double reach)
{
    if (!place.is_known()) return 0;
    const auto every_record = [](std::int32_t record) { return record; };
    return nearest_of(track.count, every_record, track, place, reach);
}

// All within reach are asked of the index, and the nearest is taken of them: its own nearest search passes over
// neighbours beyond a dividing line, and beside a track there often is one.
std::int32_t record_at_pixel(const SurveyState& survey, const PixelPlace& pixel, double reach)
{
    const TrackImage& image = survey.track_image;
    if (image.mode == TrackMode::scroll) return scrolled_record_at(image.scrolled, pixel, reach);
    const PixelTransform transform = active_transform(image);
    const GridPlace place = place_of_pixel(image, pixel.x, pixel.y);
    const double metres = reach / (transform.scale * transform.zoom);
    const TrackTable track = track_table(survey.processing.store);
    if (!place.is_known()) return 0;
    if (!survey.track_index.is_initialised()) return nearest_record(track, place, metres);

    const FoundPoints near = survey.track_index.find_points_near(place.easting, place.northing, metres);
    const auto record_near = [&near](std::int32_t k) { return near.indices[static_cast<std::size_t>(k)]; };
    return nearest_of(near.count, record_near, track, place, metres);
}

std::string out_of_world_hint(const SampleStore& store)
{
    std::string text;
    const auto name = [&](const std::string& what, const auto& value_at) {
        std::int64_t count = 0;
        double greatest = 0;
        for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
            const double value = value_at(record);
            if (is_in_world(value) || !is_valid_channel(value)) continue;
            ++count;
            greatest = std::max(greatest, value);
        }
        if (count == 0) return;
        text += (text.empty() ? "" : ", ") + what + " in " + grouped_digits(std::to_string(count)) + " (up to " +
                readable_number(greatest, 0) + ')';
    };
    for (const FieldSlotIndex slot : {kEast, kNorth, kDepth, kElevation, kDem}) {
        name(field_slot(slot).name, [&](std::int32_t record) { return store.channel(slot, record); });
    }
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        name("sensor " + std::to_string(sensor), [&](std::int32_t record) {
            const double field = store.sensors[sensor].averages[0][record];
            return is_valid_sensor(field) ? field : kNull;
        });
    }
    if (text.empty()) return text;
    return "Values out of this world take no part in what is shown: " + text + " of " +
           grouped_digits(std::to_string(store.RecordCount)) + " samples";
}

std::string far_picks_hint(const SurveyState& survey)
{
    const double tolerance = survey.pick_settings.PickTolerance;
    const TrackTable track = track_table(survey.processing.store);
    const std::int32_t far = picks_beyond(survey.picks, track, tolerance);
    const std::int32_t lost = track.count > 0 ? picks_without_sample(survey.picks) : 0;
    const auto count_text = [&survey](std::int32_t count) {
        return std::to_string(count) + " of " + std::to_string(survey.picks.number_of_picks) +
               (count == 1 ? " picks lies " : " picks lie ");
    };
    std::string text;
    if (far > 0) {
        text = count_text(far) + "more than " + format_significant(tolerance) +
               " m from the track: a dashed ring stands where each was marked. ";
    }
    if (lost > 0) {
        text += count_text(lost) + "far off the track: only the pick list shows " + (lost == 1 ? "it. " : "them. ");
    }
    return text.empty() ? text : text + "Was the survey loaded to its end?";
}

std::string averaging_hint(const SampleProcessing& run)
{
    if (run.lines_not_averaged < 1) return "";
    constexpr double kAboutHalf = 2; // percent off it
    const double percent = 100.0 * static_cast<double>(run.lines_not_averaged) / static_cast<double>(run.lines_read);
    const std::string share = std::abs(percent - 50) < kAboutHalf ? "Half"
                              : percent < 1                       ? "Under 1 %"
                                                                  : format_fixed(percent, 0) + " %";
    return share + " of your lines are not used (" + grouped_digits(std::to_string(run.lines_not_averaged)) + " of " +
           grouped_digits(std::to_string(run.lines_read)) + "): the line that ends a stored sample goes into none";
}

std::string few_samples_hint(const SampleProcessing& run)
{
    constexpr std::int64_t kFewSamples = 60;
    constexpr std::int64_t kManyLines = 4; // of a sample
    const std::int64_t samples = run.store.RecordCount;
    if (samples >= kFewSamples || run.lines_processed < kManyLines * std::max<std::int64_t>(samples, 1)) return "";
    if (run.shortest_step == 0 || !run.plan.has_time) return "";
    return "Only " + std::to_string(samples) + (samples == 1 ? " sample" : " samples") + " of " +
           std::to_string(run.lines_processed) + " lines, at " + format_shortest(1 / run.plan.SampleInterval) +
           " per second";
}

float rate_of_lines(const SampleProcessing& run)
{
    return static_cast<float>(kFixedTimeUnits / static_cast<double>(std::max<std::int64_t>(run.shortest_step, 1)));
}

std::string spacing_hint(const SurveyState& survey)
{
    if (survey.parameters.SpacingOverFixes) return "";
    const SurveyLines& lines = survey.processing.lines;
    const std::vector<std::int32_t> found = lines_with_short_spacing(survey.processing.store, lines);
    if (found.empty()) return "";
    return lines_that_have(lines, found) +
           " records without a position at an end: the gradients come out too large there";
}

} // namespace tarvo

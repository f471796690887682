#include "intake/preview_readings.h"

#include "text/civil_date.h"
#include "text/logged_values.h"
#include "text/numbers.h"
#include "text/time_form.h"

#include <algorithm>

namespace tarvo {

namespace {

bool is_among(const std::vector<std::int32_t>& columns, std::size_t column)
{
    return std::find(columns.begin(), columns.end(), static_cast<std::int32_t>(column)) != columns.end();
}

bool is_slot_column(const FieldLocations& locations, std::size_t column)
{
    for (std::size_t slot = kEast; slot <= number_of_field_slots; ++slot) {
        if (locations.column[slot] == static_cast<std::int32_t>(column)) return true;
    }
    return false;
}

bool is_odd(const LineReading& reading, const LoggerSequence& sequence, std::size_t column)
{
    for (const OddField& odd : reading.odd_fields) {
        if (odd.column == column) return !is_number_in_sequence(sequence, odd);
    }
    return column < reading.values.size() && !is_valid_channel(reading.values[column]);
}

FieldReading time_reading(const LineReading& reading)
{
    return reading.fault == LineFault::no_such_time ? FieldReading::odd : FieldReading::plain;
}

FieldReading value_reading(const LineReading& reading, const LoggerSequence& sequence, std::size_t column,
                           bool is_sensor)
{
    if (reading.fault != LineFault::none) return FieldReading::plain;
    if (is_odd(reading, sequence, column)) return FieldReading::odd;
    return is_sensor && !reading.sensor_values_count ? FieldReading::null : FieldReading::plain;
}

std::string metres_text(double value)
{
    constexpr int kDecimals = 3;
    return is_valid_channel(value) ? format_fixed(value, kDecimals) : std::string();
}

std::string time_text(const SampleProcessing& run)
{
    const TimeForm& form = run.sequence.time_form;
    const bool is_plain = form.is_count && form.survey_date == CivilDate();
    if (!is_plain) return date_and_clock_text(run.sample.SampleTime);
    constexpr int kDecimals = 4;
    return format_fixed(static_cast<double>(run.sample.SampleTime) / static_cast<double>(kTimeUnitsPerSecond),
                        kDecimals);
}

} // namespace

std::string date_and_clock_text(std::int64_t fixed_time)
{
    constexpr std::int64_t kFirstDay = -719162; // 0001-01-01
    constexpr std::int64_t kLastDay = 2932896;  // 9999-12-31
    std::int64_t day = fixed_time / kTimeUnitsPerDay;
    std::int64_t clock = fixed_time % kTimeUnitsPerDay;
    if (clock < 0) {
        clock += kTimeUnitsPerDay;
        --day;
    }
    if (day < kFirstDay || day > kLastDay) return {};
    const auto padded = [](std::int64_t number, std::size_t digits) {
        const std::string text = std::to_string(number);
        return std::string(digits - std::min(digits, text.size()), '0') + text;
    };
    const std::int64_t seconds = clock / kTimeUnitsPerSecond;
    return civil_date_text(date_of_day(day)) + ' ' + padded(seconds / 3600, 2) + ':' + padded(seconds / 60 % 60, 2) +
           ':' + padded(seconds % 60, 2) + '.' + padded(clock % kTimeUnitsPerSecond, 4);
}

LineReadings readings_of(const LineReading& reading, const SampleProcessing& run, const SurveyDefinitions& definitions,
                         const FieldLocations& locations, const std::vector<std::string>& fields)
{
    LineReadings readings;
    if (run.line_fault == LineFault::none) {
        if (run.plan.has_time) readings.time = time_text(run);
        readings.east = metres_text(run.sample.ChannelValues[kEast]);
        readings.north = metres_text(run.sample.ChannelValues[kNorth]);
    }
    const NullTexts nulls(definitions.data_format->null_texts);
    for (std::size_t column = 0; column < fields.size(); ++column) {
        FieldReading& field = readings.fields.emplace_back(FieldReading::plain);
        const bool is_time = is_among(locations.time_columns, column);
        const bool is_sensor = is_among(locations.sensor_column, column);
        if (!is_time && !is_sensor && !is_slot_column(locations, column)) continue;
        if (trimmed(fields[column]).empty() || nulls.contains(fields[column])) {
            field = FieldReading::null;
        } else {
            field = is_time ? time_reading(reading) : value_reading(reading, run.sequence, column, is_sensor);
        }
    }
    return readings;
}

} // namespace tarvo

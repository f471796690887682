#include "processing/sample_export.h"

#include "processing/fixed_time.h"
#include "text/numbers.h"

#include <charconv>
#include <string>

namespace tarvo {

namespace {

constexpr std::size_t kWriteSize = 1 << 16;
constexpr std::int32_t kRecordsPerReport = 4096;

void append_whole(std::string& text, std::int64_t value)
{
    char digits[24];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void append_number(std::string& text, double value)
{
    char digits[32];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void append_channel(std::string& text, double value)
{
    text += ',';
    if (is_valid_channel(value)) append_number(text, value);
}

void append_sensor_value(std::string& text, double value)
{
    text += ',';
    if (is_valid_sensor(value)) append_number(text, value);
}

std::string samples_header(const SampleStore& store, const ResidualField* residual)
{
    std::string header = "record,line,time,distance";
    for (const FieldSlotTraits& slot : kFieldSlots) {
        if (slot.sample_column != nullptr) header += std::string(1, ',') + slot.sample_column;
    }
    for (int sensor = 1; sensor <= store.number_of_sensors(); ++sensor) {
        const std::string prefix = ",s" + std::to_string(sensor) + "_";
        header += prefix + "total";
        for (int component = 1; component <= store.components_per_sensor; ++component) {
            header += prefix + "c" + std::to_string(component);
        }
        for (const char* const name : {"x", "y", "z", "vertical", "horizontal", "amplitude", "smoothed"}) {
            header += prefix + name;
        }
    }
    for (int sensor = 1; residual != nullptr && sensor <= store.number_of_sensors(); ++sensor) {
        header += ",s" + std::to_string(sensor) + "_residual";
    }
    return header + "\n";
}

void append_sensor(std::string& text, const SampleStore& store, const SensorRecords& sensor, std::int32_t record)
{
    for (std::size_t row = 0; row <= static_cast<std::size_t>(store.components_per_sensor); ++row) {
        append_sensor_value(text, sensor.averages[row][record]);
    }
    for (std::size_t axis = 1; axis <= 3; ++axis) append_channel(text, sensor.position[axis][record]);
    for (const std::size_t row : {1U, 2U, 3U, 0U}) {
        append_sensor_value(text, record <= store.gradient_records ? sensor.gradients[row][record] : kNull);
    }
}

void append_record(std::string& text, const SampleStore& store, const ResidualField* residual, double line_number,
                   std::int32_t record)
{
    append_whole(text, record);
    append_channel(text, line_number);
    text += ',';
    text += format_fixed(seconds_since_1970(store.record_time[record]), 4);
    text += ',';
    append_number(text, store.distance[record]);
    for (const FieldSlotTraits& slot : kFieldSlots) {
        if (slot.sample_column != nullptr) append_channel(text, store.channel(slot.slot, record));
    }
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        append_sensor(text, store, store.sensors[sensor], record);
    }
    for (std::size_t sensor = 1; residual != nullptr && sensor < store.sensors.size(); ++sensor) {
        append_sensor_value(text, record <= residual->records ? residual->values[sensor][record] : kNull);
    }
    text += '\n';
}

} // namespace

bool export_samples(const SampleStore& store, const SurveyLines& lines, const ExportSink& sink,
                    const ExportProgress& progress, const ResidualField* residual)
{
    std::string text = samples_header(store, residual);
    std::int32_t line = 1;
    for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
        while (line < lines.CurrentLine && lines.last_record(line) < record) ++line;
        append_record(text, store, residual, lines.LineNumbers[line], record);
        if (text.size() >= kWriteSize) {
            sink(text);
            text.clear();
        }
        if (progress && record % kRecordsPerReport == 0 && !progress(record)) return false;
    }
    sink(text);
    return true;
}

void export_lines(const SurveyLines& lines, const ExportSink& sink)
{
    std::string text = "line,number,first,last,count\n";
    for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
        const auto& limits = lines.LineLimits[line];
        append_whole(text, line);
        append_channel(text, lines.LineNumbers[line]);
        for (const std::size_t limit : {SurveyLines::kFirst, SurveyLines::kLast, SurveyLines::kCount}) {
            text += ',';
            append_whole(text, limits[limit]);
        }
        text += '\n';
    }
    sink(text);
}

} // namespace tarvo

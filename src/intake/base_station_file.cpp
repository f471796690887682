#include "intake/base_station_file.h"

#include "definitions/definitions_file.h"
#include "intake/iaga_2002.h"
#include "intake/survey_source.h"
#include "processing/fixed_time.h"
#include "processing/sample_processing.h"
#include "text/file_names.h"
#include "text/line_reader.h"

#include <optional>
#include <stdexcept>

namespace tarvo {

namespace {

// Turns what would be a message on the screen into the reason of the refusal. Warnings about columns that only a
// survey needs are left out.
class FirstMessage : public Operator {
public:
    void show_message(const std::string& text) override
    {
        if (message.empty()) message = text;
    }
    void show_warnings(const Warnings&) override {}
    bool ask_yes_no(const std::string&) override { return false; }
    std::optional<std::string> choose_file_to_open(const FileQuestion&) override { return std::nullopt; }
    std::optional<std::string> choose_file_to_create(const FileQuestion&) override { return std::nullopt; }

    std::string message;
};

// Parameters under which every line becomes a record of its own.
ProcessingParameters every_line_a_record()
{
    ProcessingParameters parameters;
    parameters.LoggingSampleRate = 10'000.0F; // what a time is counted in
    parameters.LoggingLineBreakDistance = 0;
    parameters.LoggingLineBreakTime = 0;
    parameters.CarryClosingSample = true;
    return parameters;
}

void check_columns(const std::string& file_name, const SurveyDefinitions& definitions, const FieldLocations& locations)
{
    if (!locations.has(kTime)) throw std::runtime_error(file_name + ": the Time column was not found");
    for (std::size_t component = 1; component <= static_cast<std::size_t>(definitions.components_per_sensor);
         ++component) {
        const SensorDefinition& sensor = definitions.sensors[1];
        if (sensor.column_slots[3 * component] < 0) {
            throw std::runtime_error(file_name + ": the column " + sensor.component_columns[component] +
                                     " of the field was not found");
        }
    }
}

void read_by_definitions(const std::string& file_name, BaseStation& base)
{
    const std::string definitions_file = definitions_file_name_for(file_name);
    if (!is_there(definitions_file)) {
        throw std::runtime_error(file_name + ": neither IAGA-2002 nor a text with the definitions file " +
                                 std::string(last_part(definitions_file)) + " beside it");
    }
    FirstMessage op;
    SurveyDefinitions definitions;
    int header_line = 1;
    if (read_definitions(definitions_file, definitions, header_line, op).status < 0) {
        throw std::runtime_error(op.message);
    }
    definitions.fields[kLine].name = "N/A"; // its lines are one run of readings
    FileSource source(file_name, header_line);
    const std::optional<SourceColumns> columns = open_source(source, definitions, op);
    if (!columns) throw std::runtime_error(op.message);
    check_columns(file_name, definitions, columns->locations);
    SampleProcessing run;
    start_processing(run, definitions, columns->locations, every_line_a_record());
    std::string_view line;
    std::int32_t taken = 0;
    const auto take_records = [&] {
        for (; taken < run.store.RecordCount; ++taken) {
            add_base_reading(base, seconds_since_1970(run.store.record_time[taken + 1]),
                             run.store.sensors[1].averages[0][taken + 1]);
        }
    };
    for (auto outcome = source.next_line(line); outcome != SurveySource::Outcome::end;
         outcome = source.next_line(line)) {
        if (outcome == SurveySource::Outcome::line) process_data_line(line, run);
        take_records();
    }
    close_open_bin(run);
    take_records();
}

} // namespace

BaseStationReading read_base_station(const std::string& file_name)
{
    BaseStationReading reading;
    reading.base.file_name = file_name;
    try {
        LineReader file(file_name);
        std::string_view first_line;
        file.next_line(first_line);
        if (is_iaga_2002(first_line)) {
            read_iaga_2002(file, reading.base);
        } else {
            read_by_definitions(file_name, reading.base);
        }
        if (reading.base.readings.empty()) throw std::runtime_error(file_name + ": holds no reading of the field");
    } catch (const std::exception& fault) {
        reading.base = BaseStation();
        reading.refusal = std::string("The base station cannot be used: ") + fault.what();
    }
    return reading;
}

} // namespace tarvo

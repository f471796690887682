#include "intake/file_order.h"

#include "intake/data_file.h"
#include "intake/header.h"
#include "intake/message_keeper.h"
#include "intake/survey_source.h"
#include "processing/sample_processing.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <map>
#include <stdexcept>

namespace tarvo {

namespace {

struct FileBeginning {
    std::string name;
    std::vector<std::string> columns; // that the definitions name and the file has
    std::int64_t first_time = std::numeric_limits<std::int64_t>::max();
};

// The columns that the definitions name, of those in the file, one text each.
std::vector<std::string> used_columns(const HeaderColumns& header, const SurveyDefinitions& definitions)
{
    std::vector<std::string> used;
    const auto add = [&](const std::string& name) {
        if (header.find_column(name).index > 0) used.push_back(upper_case(trimmed(name)));
    };
    for (const FieldSlot& field : definitions.fields) add(field.name);
    for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
        for (const std::string& name : definitions.sensors[sensor].component_columns) add(name);
        if (definitions.read_sensor_location != 1) continue;
        for (const std::string& name : definitions.sensors[sensor].coordinate_columns) add(name);
    }
    std::sort(used.begin(), used.end());
    return used;
}

std::int64_t first_valid_time(DataFile& file, SurveyDefinitions definitions)
{
    FieldLocations locations;
    locate_header_fields(file.columns, definitions, locations);
    SampleProcessing run;
    start_processing(run, definitions, locations, ProcessingParameters());
    obey_data_format(run, definitions, locations, file.names_line, nullptr);
    const bool has_no_date = run.sequence.runs_by_format && run.sequence.time_form.days_run_on();
    if (!run.plan.has_time || has_no_date) return std::numeric_limits<std::int64_t>::max();
    std::string_view line;
    for (;;) {
        const LineReader::Outcome outcome = file.lines->next_line(line);
        if (outcome == LineReader::Outcome::end) return std::numeric_limits<std::int64_t>::max();
        if (outcome == LineReader::Outcome::too_long) continue;
        if (convert_record_fields(run.converter.read(line), run) == 0) return run.sample.SampleTime;
    }
}

// Throws for a file that lacks a used column which another has.
void check_columns(const std::vector<FileBeginning>& files)
{
    std::map<std::string, const FileBeginning*> owners; // of the columns
    for (const FileBeginning& file : files) {
        for (const std::string& column : file.columns) owners.try_emplace(column, &file);
    }
    for (const FileBeginning& file : files) {
        for (const auto& [column, owner] : owners) {
            if (std::binary_search(file.columns.begin(), file.columns.end(), column)) continue;
            throw std::runtime_error(file.name + ": the file does not have the column " + column + ", which " +
                                     owner->name + " has");
        }
    }
}

FileBeginning look_into(const std::string& name, int header_line_number, const SurveyDefinitions& definitions)
{
    MessageKeeper refusal;
    std::optional<DataFile> file = open_data_file(name, header_line_number, definitions, refusal);
    if (!file) throw std::runtime_error(refusal.text());
    const std::string missing = missing_format_columns(definitions, file->columns);
    if (!missing.empty()) {
        throw std::runtime_error("the data format names " + missing + ", which the file does not have");
    }
    return {name, used_columns(file->columns, definitions), first_valid_time(*file, definitions)};
}

} // namespace

bool put_in_order(std::vector<std::string>& file_names, int header_line_number, const SurveyDefinitions& definitions,
                  Operator& op)
{
    std::vector<FileBeginning> files;
    std::string at_hand;
    try {
        for (const std::string& name : file_names) {
            at_hand = name;
            files.push_back(look_into(name, header_line_number, definitions));
        }
        at_hand.clear();
        check_columns(files);
    } catch (const std::exception& fault) {
        const std::string text = fault.what();
        const bool is_named = text.find(at_hand) != std::string::npos;
        op.show_message(is_named ? text : at_hand + ": " + text);
        return false;
    }
    std::stable_sort(files.begin(), files.end(), [](const FileBeginning& one, const FileBeginning& other) {
        return one.first_time < other.first_time;
    });
    std::transform(files.begin(), files.end(), file_names.begin(), [](const FileBeginning& file) { return file.name; });
    return true;
}

} // namespace tarvo

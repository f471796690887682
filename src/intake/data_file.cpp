#include "intake/data_file.h"

#include "intake/header.h"
#include "text/field_splitter.h"
#include "text/tokens.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kCountedLines = 100; // of data, in which the longest line is looked for

// Every line of the file is a data line: the reader must stand before the first one, and whether the file has it is
// known from the line itself.
std::optional<DataFile> open_without_names(const std::string& file_name, int first_data_line,
                                           const SurveyDefinitions& definitions, Operator& op)
{
    HeaderReading ahead = read_header_line(1, file_name, first_data_line, op);
    if (ahead.status < 0) return std::nullopt;
    std::vector<std::string> first_lines = {ahead.header};
    std::string_view line;
    while (static_cast<int>(first_lines.size()) < kCountedLines &&
           ahead.stream->next_line(line) == LineReader::Outcome::line) {
        first_lines.emplace_back(line);
    }
    DataFile file;
    file.columns = numbered_columns(first_lines, definitions);
    if (first_data_line == 1) {
        file.lines = std::make_unique<LineReader>(file_name);
        return file;
    }
    HeaderReading before = read_header_line(1, file_name, first_data_line - 1, op);
    if (before.status < 0) return std::nullopt;
    file.lines = std::move(before.stream);
    return file;
}

} // namespace

bool has_line_of_names(const SurveyDefinitions& definitions)
{
    return !definitions.data_format || definitions.data_format->names_in_line;
}

std::optional<DataFile> open_data_file(const std::string& file_name, int header_line_number,
                                       const SurveyDefinitions& definitions, Operator& op)
{
    if (!has_line_of_names(definitions)) return open_without_names(file_name, header_line_number, definitions, op);
    HeaderReading reading = read_header_line(1, file_name, header_line_number, op);
    if (reading.status < 0) return std::nullopt;
    return DataFile{columns_of_names(reading.header, definitions), reading.header, std::move(reading.stream)};
}

HeaderColumns columns_of_names(std::string_view names_line, const SurveyDefinitions& definitions)
{
    if (!definitions.data_format) return header_columns_of(names_line);
    const Separator separator = definitions.data_format->separator;
    FieldSplitter splitter(separator);
    std::vector<std::string> names;
    for (const std::string_view name : splitter.split(without_marks(separator, names_line))) names.emplace_back(name);
    return HeaderColumns(std::move(names));
}

std::vector<std::string> fields_by_format(std::string_view line, const SurveyDefinitions& definitions)
{
    if (!definitions.data_format) return fields_of_line(line);
    FieldSplitter splitter(definitions.data_format->separator);
    std::vector<std::string> fields;
    for (const std::string_view field : splitter.split(line)) fields.emplace_back(field);
    return fields;
}

HeaderColumns numbered_columns(std::span<const std::string> first_data_lines, const SurveyDefinitions& definitions)
{
    std::size_t most = 0;
    for (const std::string& line : first_data_lines) most = std::max(most, fields_by_format(line, definitions).size());
    std::vector<std::string> names;
    for (std::size_t column = 1; column <= most; ++column) names.push_back(std::to_string(column));
    return HeaderColumns(std::move(names));
}

} // namespace tarvo

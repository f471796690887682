#include "intake/survey_source.h"

#include "intake/header.h"

#include <filesystem>
#include <utility>

namespace tarvo {

namespace {

// Length in bytes; 0 for what has none, such as a pipe.
std::int64_t length_of_file(const std::string& file_name)
{
    std::error_code fault;
    const auto length = std::filesystem::file_size(file_name, fault);
    return fault ? 0 : static_cast<std::int64_t>(length);
}

} // namespace

std::optional<HeaderColumns> FileSource::open(Operator& op)
{
    length_ = length_of_file(file_name_);
    HeaderReading reading = read_header_line(1, file_name_, header_line_number_, op);
    if (reading.status < 0) return std::nullopt;
    reader_ = std::move(reading.stream);
    return header_columns_of(reading.header);
}

SurveySource::Outcome FileSource::next_line(std::string_view& line)
{
    switch (reader_->next_line(line)) {
    case LineReader::Outcome::line: return Outcome::line;
    case LineReader::Outcome::too_long: return Outcome::too_long;
    case LineReader::Outcome::end: break;
    }
    return Outcome::end;
}

SurveySource::Outcome LiveFeed::next_line(std::string_view& line)
{
    if (!line_) return Outcome::waiting;
    line = *std::exchange(line_, std::nullopt);
    return Outcome::line;
}

HeaderColumns LinesInMemory::open()
{
    if (header_line_number_ < 1) return HeaderColumns();
    const auto header = static_cast<std::size_t>(header_line_number_) - 1;
    next_ = header + 1;
    return header < lines_.size() ? header_columns_of(lines_[header]) : HeaderColumns();
}

SurveySource::Outcome LinesInMemory::next_line(std::string_view& line)
{
    if (next_ >= lines_.size()) return Outcome::end;
    line = lines_[next_++];
    return Outcome::line;
}

SourceColumns locate_columns(HeaderColumns header, SurveyDefinitions& definitions)
{
    SourceColumns columns;
    columns.header = std::move(header);
    ColumnLocating located = locate_header_fields(columns.header, definitions, columns.locations);
    columns.warnings = std::move(located.warnings);
    columns.fault = std::move(located.fault);
    return columns;
}

std::optional<SourceColumns> open_source(SurveySource& source, SurveyDefinitions& definitions, Operator& op)
{
    std::optional<HeaderColumns> header = source.open(op);
    if (!header) return std::nullopt;
    SourceColumns columns = locate_columns(std::move(*header), definitions);
    if (columns.fault.empty()) return columns;
    op.show_message(columns.fault);
    return std::nullopt;
}

} // namespace tarvo

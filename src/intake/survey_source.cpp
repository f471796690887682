#include "intake/survey_source.h"

#include "intake/file_order.h"
#include "intake/header.h"
#include "intake/message_keeper.h"
#include "text/numbers.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace tarvo {

namespace {

// Length in bytes; 0 for what has none, such as a pipe.
std::int64_t length_of_file_named(const std::string& file_name)
{
    std::error_code fault;
    const auto length = std::filesystem::file_size(file_name, fault);
    return fault ? 0 : static_cast<std::int64_t>(length);
}

SurveySource::Outcome outcome_of(LineReader::Outcome outcome)
{
    switch (outcome) {
    case LineReader::Outcome::line: return SurveySource::Outcome::line;
    case LineReader::Outcome::too_long: return SurveySource::Outcome::too_long;
    case LineReader::Outcome::end: break;
    }
    return SurveySource::Outcome::end;
}

} // namespace

std::optional<NamedColumns> FileSource::open(const SurveyDefinitions& definitions, Operator& op)
{
    definitions_ = definitions;
    if (file_names_.size() > 1 && !put_in_order(file_names_, header_line_number_, definitions, op)) return std::nullopt;
    for (const std::string& name : file_names_) length_ += length_of_file_named(name);
    return open_file(op) ? std::optional(columns_) : std::nullopt;
}

bool FileSource::open_file(Operator& op)
{
    std::optional<DataFile> file = open_data_file(file_names_[file_], header_line_number_, definitions_, op);
    if (!file) return false;
    file_length_ = length_of_file_named(file_names_[file_]);
    lines_ = std::move(file->lines);
    columns_ = {std::move(file->columns), std::move(file->names_line)};
    return true;
}

SurveySource::Outcome FileSource::next_line(std::string_view& line)
{
    const Outcome outcome = outcome_of(lines_->next_line(line));
    if (outcome != Outcome::end || file_ + 1 == file_names_.size()) return outcome;
    consumed_ += lines_->characters_consumed();
    ++file_;
    MessageKeeper fault;
    if (!open_file(fault)) throw std::runtime_error(file_names_[file_] + ": " + fault.text());
    return Outcome::next_file;
}

std::int64_t FileSource::characters_consumed() const
{
    return consumed_ + (lines_ ? lines_->characters_consumed() : 0);
}

SurveySource::Outcome LiveFeed::next_line(std::string_view& line)
{
    if (!line_) return Outcome::waiting;
    line = *std::exchange(line_, std::nullopt);
    ++lines_;
    return Outcome::line;
}

NamedColumns LinesInMemory::open(const SurveyDefinitions& definitions)
{
    if (header_line_number_ < 1) return NamedColumns();
    next_ = static_cast<std::size_t>(header_line_number_) - 1;
    if (!has_line_of_names(definitions)) {
        return NamedColumns{numbered_columns(lines_.subspan(std::min(next_, lines_.size())), definitions), {}};
    }
    if (next_ >= lines_.size()) return NamedColumns();
    const std::string& names = lines_[next_++];
    return NamedColumns{columns_of_names(names, definitions), names};
}

SurveySource::Outcome LinesInMemory::next_line(std::string_view& line)
{
    if (next_ >= lines_.size()) return Outcome::end;
    line = lines_[next_++];
    return Outcome::line;
}

SourceColumns locate_columns(NamedColumns named, SurveyDefinitions& definitions)
{
    SourceColumns columns;
    columns.named = std::move(named);
    ColumnLocating located = locate_header_fields(columns.named.header, definitions, columns.locations);
    columns.warnings = std::move(located.warnings);
    columns.fault = std::move(located.fault);
    return columns;
}

std::optional<SourceColumns> open_source(SurveySource& source, SurveyDefinitions& definitions, Operator& op)
{
    std::optional<NamedColumns> named = source.open(definitions, op);
    if (!named) return std::nullopt;
    SourceColumns columns = locate_columns(std::move(*named), definitions);
    const std::string missing = missing_format_columns(definitions, columns.named.header);
    if (columns.fault.empty() && missing.empty()) return columns;
    op.show_message(missing.empty() ? columns.fault
                                    : "The data format names " + missing + ", which the data do not have");
    return std::nullopt;
}

std::string missing_format_columns(const SurveyDefinitions& definitions, const HeaderColumns& header)
{
    if (!definitions.data_format) return {};
    std::vector<std::string> times = definitions.data_format->time_columns;
    if (times.empty() && !is_unused_name(trimmed(definitions.fields[kTime].name))) {
        times.push_back(definitions.fields[kTime].name);
    }
    std::string missing;
    const auto look_for = [&](const char* what, const std::string& name) {
        if (header.find_column(name).index > 0) return;
        missing += std::string(missing.empty() ? "" : " and ") + "the " + what + " column \"" + name + '"';
    };
    for (const std::string& name : times) look_for("time", name);
    const std::string& valid = definitions.data_format->valid_column;
    if (!valid.empty()) look_for("valid", valid);
    return missing;
}

} // namespace tarvo

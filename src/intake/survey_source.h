#pragma once

#include "definitions/field_locations.h"
#include "definitions/header_columns.h"
#include "definitions/survey_definitions.h"
#include "intake/data_file.h"
#include "ports/operator.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// The names of a source's columns, and their line as it stands in a file; empty where there is none.
struct NamedColumns {
    HeaderColumns header;
    std::string names_line;
};

// Where a survey's data lines come from. Every kind goes one way: it is opened, which tells the names of its columns;
// the columns that the definitions name are located among them; then its lines are taken one after the other.
class SurveySource {
public:
    enum class Outcome {
        line,
        too_long,  // a line over LineReader::kLongestLine, which was skipped
        next_file, // the lines that follow are another file's: its columns are to be located
        waiting,   // none has come since the last one
        end
    };

    virtual ~SurveySource() = default;

    // nullopt: refused, the operator has been told.
    virtual std::optional<NamedColumns> open(const SurveyDefinitions& definitions, Operator& op) = 0;

    // The next data line, which holds until the next call. Throws std::runtime_error when the disk fails.
    virtual Outcome next_line(std::string_view& line) = 0;

    // Of the file at hand.
    virtual NamedColumns columns_of_file() { return {}; }

    virtual std::int64_t line_number() const = 0; // of the line taken last, from 1 in its file
    virtual std::int64_t characters_consumed() const { return 0; }
    virtual std::int64_t length() const { return 0; } // bytes; 0: not known
};

// The lines of one file or of several, behind their names.
class FileSource : public SurveySource {
public:
    // Several files are read in the order of their first valid times; in this one where their times have no date.
    FileSource(std::vector<std::string> file_names, int header_line_number)
        : file_names_(std::move(file_names)), header_line_number_(header_line_number)
    {
    }

    // Of several files, all are looked into first: one that cannot be read or lacks a column that another has refuses.
    std::optional<NamedColumns> open(const SurveyDefinitions& definitions, Operator& op) override;
    Outcome next_line(std::string_view& line) override;
    NamedColumns columns_of_file() override { return columns_; }
    std::int64_t line_number() const override { return lines_ ? lines_->line_number() : 0; }
    std::int64_t characters_consumed() const override;
    std::int64_t length() const override { return length_; }

    // Of the file at hand.
    LineReader& lines() { return *lines_; }
    std::int64_t length_of_file() const { return file_length_; }
    std::int64_t characters_before_file() const { return consumed_; }

    const std::vector<std::string>& file_names() const { return file_names_; } // once open, in the order of reading

private:
    bool open_file(Operator& op);

    std::vector<std::string> file_names_;
    int header_line_number_;
    SurveyDefinitions definitions_; // of the names
    std::size_t file_ = 0;          // at hand
    std::unique_ptr<LineReader> lines_;
    NamedColumns columns_;
    std::int64_t length_ = 0;
    std::int64_t file_length_ = 0;
    std::int64_t consumed_ = 0; // of the files before
};

// The lines that a sender hands over one by one, under columns that it has named before.
class LiveFeed : public SurveySource {
public:
    explicit LiveFeed(HeaderColumns columns = {}) : columns_(std::move(columns)) {}

    void offer(std::string_view line) { line_ = line; } // to be taken before the text behind it goes

    std::optional<NamedColumns> open(const SurveyDefinitions&, Operator&) override
    {
        return NamedColumns{columns_, {}};
    }
    Outcome next_line(std::string_view& line) override;
    std::int64_t line_number() const override { return lines_; }

private:
    HeaderColumns columns_;
    std::optional<std::string_view> line_;
    std::int64_t lines_ = 0;
};

// The beginning of a file that was read before.
class LinesInMemory : public SurveySource {
public:
    // lines: from the first of the file on; they must outlive the source.
    LinesInMemory(std::span<const std::string> lines, int header_line_number)
        : lines_(lines), header_line_number_(header_line_number)
    {
    }

    NamedColumns open(const SurveyDefinitions& definitions); // which cannot be refused
    std::optional<NamedColumns> open(const SurveyDefinitions& definitions, Operator&) override
    {
        return open(definitions);
    }
    Outcome next_line(std::string_view& line) override;
    std::int64_t line_number() const override { return static_cast<std::int64_t>(next_); }

private:
    std::span<const std::string> lines_;
    int header_line_number_;
    std::size_t next_ = 0;
};

// Which columns a source has, and where among them the quantities stand that the definitions name.
struct SourceColumns {
    NamedColumns named;
    FieldLocations locations;
    Warnings warnings; // of columns that are missing
    std::string fault; // what went wrong while they were located; empty: nothing
};

// Locates the columns that the definitions name; these note what was found.
SourceColumns locate_columns(NamedColumns named, SurveyDefinitions& definitions);

// Opens the source and locates the columns. nullopt: refused, the operator has been told.
std::optional<SourceColumns> open_source(SurveySource& source, SurveyDefinitions& definitions, Operator& op);

// What a data format needs and the header does not have: "the time column \"UTC\""; empty: nothing.
std::string missing_format_columns(const SurveyDefinitions& definitions, const HeaderColumns& header);

} // namespace tarvo

#pragma once

#include "definitions/field_locations.h"
#include "definitions/header_columns.h"
#include "definitions/survey_definitions.h"
#include "ports/operator.h"
#include "text/line_reader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarvo {

// Where a survey's data lines come from. Every kind goes one way: it is opened, which tells the names of its columns;
// the columns that the definitions name are located among them; then its lines are taken one after the other.
class SurveySource {
public:
    enum class Outcome {
        line,
        too_long, // a line over LineReader::kLongestLine, which was skipped
        waiting,  // none has come since the last one
        end
    };

    virtual ~SurveySource() = default;

    // The columns by name; nullopt: refused, the operator has been told.
    virtual std::optional<HeaderColumns> open(Operator& op) = 0;

    // The next data line, which holds until the next call. Throws std::runtime_error when the disk fails.
    virtual Outcome next_line(std::string_view& line) = 0;

    virtual std::int64_t characters_consumed() const { return 0; }
    virtual std::int64_t length() const { return 0; } // bytes; 0: not known
};

// The lines behind the header line of one file.
class FileSource : public SurveySource {
public:
    FileSource(std::string file_name, int header_line_number)
        : file_name_(std::move(file_name)), header_line_number_(header_line_number)
    {
    }

    std::optional<HeaderColumns> open(Operator& op) override;
    Outcome next_line(std::string_view& line) override;
    std::int64_t characters_consumed() const override { return reader_ ? reader_->characters_consumed() : 0; }
    std::int64_t length() const override { return length_; }

private:
    std::string file_name_;
    int header_line_number_;
    std::unique_ptr<LineReader> reader_;
    std::int64_t length_ = 0;
};

// The lines that a sender hands over one by one, under columns that it has named before.
class LiveFeed : public SurveySource {
public:
    explicit LiveFeed(HeaderColumns columns = {}) : columns_(std::move(columns)) {}

    void offer(std::string_view line) { line_ = line; } // to be taken before the text behind it goes

    std::optional<HeaderColumns> open(Operator&) override { return columns_; }
    Outcome next_line(std::string_view& line) override;

private:
    HeaderColumns columns_;
    std::optional<std::string_view> line_;
};

// The beginning of a file that was read before.
class LinesInMemory : public SurveySource {
public:
    // lines: from the first of the file on; they must outlive the source.
    LinesInMemory(std::span<const std::string> lines, int header_line_number)
        : lines_(lines), header_line_number_(header_line_number)
    {
    }

    HeaderColumns open(); // which cannot be refused
    std::optional<HeaderColumns> open(Operator&) override { return open(); }
    Outcome next_line(std::string_view& line) override;

private:
    std::span<const std::string> lines_;
    int header_line_number_;
    std::size_t next_ = 0;
};

// Which columns a source has, and where among them the quantities stand that the definitions name.
struct SourceColumns {
    HeaderColumns header;
    FieldLocations locations;
    Warnings warnings; // of columns that are missing
    std::string fault; // what went wrong while they were located; empty: nothing
};

// Locates the columns that the definitions name; these note what was found.
SourceColumns locate_columns(HeaderColumns header, SurveyDefinitions& definitions);

// Opens the source and locates the columns. nullopt: refused, the operator has been told.
std::optional<SourceColumns> open_source(SurveySource& source, SurveyDefinitions& definitions, Operator& op);

} // namespace tarvo

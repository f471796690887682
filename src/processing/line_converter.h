#pragma once

#include "processing/line_reading.h"
#include "text/field_reader.h"

#include <memory>
#include <string_view>
#include <vector>

namespace tarvo {

class FormattedLineReader;

// Reads data lines as numbers, one after the other: in the plain form, or by a data format. It knows nothing of a line
// once the next is read, so several of a kind can read a file's lines between them.
class LineConverter {
public:
    // wanted: by header column, which are to be read.
    explicit LineConverter(std::vector<bool> wanted = {});
    explicit LineConverter(std::unique_ptr<FormattedLineReader> formatted);
    LineConverter(LineConverter&&) noexcept;
    LineConverter& operator=(LineConverter&&) noexcept;
    ~LineConverter();

    // What the line says; the views in it hold until the next call.
    LineReading read(std::string_view line);

    // The same with its values behind the first `kept` of the room, which grows where it must.
    LineReading read(std::string_view line, std::vector<double>& room, std::size_t kept);

private:
    FieldReader fields_;
    std::unique_ptr<FormattedLineReader> formatted_; // null: the plain form
};

} // namespace tarvo

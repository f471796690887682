#include "processing/line_converter.h"

#include "processing/formatted_lines.h"

#include <exception>
#include <utility>

namespace tarvo {

LineConverter::LineConverter(std::vector<bool> wanted) : fields_(std::move(wanted)) {}

LineConverter::LineConverter(std::unique_ptr<FormattedLineReader> formatted) : formatted_(std::move(formatted)) {}

LineConverter::LineConverter(LineConverter&&) noexcept = default;
LineConverter& LineConverter::operator=(LineConverter&&) noexcept = default;
LineConverter::~LineConverter() = default;

LineReading LineConverter::read(std::string_view line)
{
    LineReading reading;
    try {
        if (formatted_) {
            formatted_->read(line, reading);
        } else {
            reading.values = fields_.read(line);
            if (reading.values.empty()) reading.fault = LineFault::empty_line;
        }
    } catch (const std::bad_alloc&) {
        reading.fault = LineFault::no_memory;
    }
    reading.text = line;
    return reading;
}

} // namespace tarvo

#include "processing/line_converter.h"

#include "processing/formatted_lines.h"

#include <algorithm>
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

LineReading LineConverter::read(std::string_view line, std::vector<double>& room, std::size_t kept)
{
    if (!formatted_) {
        const std::size_t width = fields_.width();
        if (room.size() < kept + width) room.resize(2 * (kept + width));
        LineReading reading;
        reading.text = line;
        if (!fields_.read(line, room.data() + kept)) {
            reading.fault = LineFault::empty_line;
        } else {
            reading.values = SampleRecord(room).subspan(kept, width);
        }
        return reading;
    }
    LineReading reading = read(line);
    const std::size_t width = reading.values.size();
    if (room.size() < kept + width) room.resize(2 * (kept + width));
    std::copy(reading.values.begin(), reading.values.end(), room.begin() + static_cast<std::ptrdiff_t>(kept));
    reading.values = SampleRecord(room).subspan(kept, width);
    return reading;
}

} // namespace tarvo

#pragma once

#include "ports/projection.h"
#include "processing/format_rules.h"
#include "processing/line_reading.h"
#include "text/decimal_reader.h"
#include "text/field_splitter.h"
#include "text/logged_values.h"
#include "text/position_text.h"
#include "text/time_form.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// Reads data lines by a data format: splits them by its separator, reads times by its form, brings positions into the
// survey grid and tells nulls and units from numbers.
class FormattedLineReader {
public:
    // grid: null where positions are metres. Throws std::runtime_error for a time form that is none.
    FormattedLineReader(FormatRules rules, std::shared_ptr<const Projection> grid);

    // Fills in what the line says; the views in it hold until the next call.
    void read(std::string_view line, LineReading& reading);

private:
    using Fields = std::span<const std::string_view>;

    LineFault read_line_time(Fields fields, WrittenTime& time);
    void read_number(std::size_t column, std::string_view field);
    bool read_usual_number(std::string_view field, UndividedNumber& number) const;
    void read_position(const PositionColumns& columns, Fields fields);
    bool counts_as_valid(Fields fields) const;

    FormatRules rules_;
    TimeForm time_form_;
    DegreesReader read_angle_;
    std::shared_ptr<const Projection> grid_;
    NullTexts nulls_;
    FieldSplitter splitter_;
    std::vector<double> values_;
    std::vector<double> divisors_;      // what the values are still to be divided by
    const char* quick_from_ = nullptr;  // of the line at hand: where a number may begin that is read in few steps
    const char* quick_until_ = nullptr; // likewise, its end
    std::vector<OddField> odd_fields_;
    std::string joined_time_; // of several columns
};

TimeForm compiled_time_form(const DataFormat& format); // throws std::runtime_error, which says why it is none

} // namespace tarvo

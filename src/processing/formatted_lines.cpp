#include "processing/formatted_lines.h"

#include "text/decimal_reader.h"
#include "text/numbers.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

namespace tarvo {

namespace {

std::string_view field_at(std::span<const std::string_view> fields, std::size_t column)
{
    return column < fields.size() ? fields[column] : std::string_view();
}

} // namespace

TimeForm compiled_time_form(const DataFormat& format)
{
    TimeFormReading compiled = compile_time_form(format.time_form, format.survey_date, format.time_offset);
    if (!compiled.form) {
        throw std::runtime_error("the time form \"" + format.time_form + "\" cannot be read by: " + compiled.refusal);
    }
    return std::move(*compiled.form);
}

FormattedLineReader::FormattedLineReader(FormatRules rules, std::shared_ptr<const Projection> grid)
    : rules_(std::move(rules)), time_form_(compiled_time_form(rules_.format)),
      read_angle_(rules_.format.position_form == PositionForm::nmea ? read_nmea_degrees : read_degrees),
      grid_(std::move(grid)), nulls_(rules_.format.null_texts), splitter_(rules_.format.separator),
      values_(rules_.column_count, kNull), divisors_(rules_.column_count, 1.0)
{
}

void FormattedLineReader::read(std::string_view line, LineReading& reading)
{
    const std::string_view text = trimmed(line);
    if (text.empty()) {
        reading.fault = LineFault::empty_line;
        return;
    }
    if (text == rules_.names_line) {
        reading.fault = LineFault::repeated_names;
        return;
    }
    const Fields fields = splitter_.split(line);
    quick_until_ = line.data() + line.size() - std::min<std::size_t>(line.size(), kShortNumberReach);
    quick_from_ = line.data();
    reading.fault = read_line_time(fields, reading.time);
    if (reading.fault != LineFault::none) return;
    odd_fields_.clear();
    for (const std::size_t column : rules_.number_columns) read_number(column, field_at(fields, column));
    for (std::size_t column = 0; column < values_.size(); ++column) values_[column] /= divisors_[column];
    for (const PositionColumns& columns : rules_.positions) read_position(columns, fields);
    reading.sensor_values_count = counts_as_valid(fields);
    reading.values = values_;
    reading.odd_fields = odd_fields_;
}

LineFault FormattedLineReader::read_line_time(Fields fields, WrittenTime& time)
{
    if (rules_.time_columns.empty()) return LineFault::none;
    std::string_view text = field_at(fields, rules_.time_columns.front());
    if (text.empty() || nulls_.contains(text)) return LineFault::no_time;
    if (rules_.time_columns.size() > 1) {
        joined_time_ = text;
        for (std::size_t part = 1; part < rules_.time_columns.size(); ++part) {
            const std::string_view more = field_at(fields, rules_.time_columns[part]);
            if (more.empty() || nulls_.contains(more)) return LineFault::no_time;
            joined_time_ += ' ';
            joined_time_ += more;
        }
        text = joined_time_;
    }
    const std::optional<WrittenTime> read = read_time(time_form_, text);
    if (!read) return LineFault::no_such_time;
    time = *read;
    return LineFault::none;
}

// The usual number, still to be divided, as FieldReader reads it. False where the field is none or its line ends too
// soon behind it.
bool FormattedLineReader::read_usual_number(std::string_view field, UndividedNumber& number) const
{
    const auto is_before = std::less<>(); // a field with quotes stands elsewhere
    return !is_before(field.data(), quick_from_) && is_before(field.data(), quick_until_) &&
           read_short_number(field.data(), number) == field.data() + field.size();
}

void FormattedLineReader::read_number(std::size_t column, std::string_view field)
{
    double& value = values_[column];
    value = kNull;
    divisors_[column] = 1;
    if (field.empty()) return;
    UndividedNumber usual;
    if (nulls_.empty() && read_usual_number(field, usual)) {
        value = usual.mantissa;
        divisors_[column] = usual.divisor;
        return;
    }
    if (const std::optional<double> number = numeric_value(field)) {
        if (!nulls_.contains(field, *number)) value = *number;
        return;
    }
    if (nulls_.contains(field)) return;
    const std::optional<double> number = number_with_unit(field);
    if (number && nulls_.contains(field, *number)) return;
    value = number.value_or(kNull);
    odd_fields_.push_back(
        {static_cast<std::uint32_t>(column), number ? OddField::Kind::with_unit : OddField::Kind::no_number});
}

void FormattedLineReader::read_position(const PositionColumns& columns, Fields fields)
{
    const std::string_view x = field_at(fields, columns.x);
    const std::string_view y = field_at(fields, columns.y);
    GridCoordinates place;
    if (grid_ && !nulls_.contains(x) && !nulls_.contains(y)) {
        const std::optional<GeoPosition> position =
            geo_position(read_angle_(x, field_at(fields, columns.x + 1), GeoAxis::longitude),
                         read_angle_(y, field_at(fields, columns.y + 1), GeoAxis::latitude));
        if (position) place = grid_->to_grid({position->longitude, position->latitude});
    }
    values_[columns.x] = place.easting;
    values_[columns.y] = place.northing;
}

bool FormattedLineReader::counts_as_valid(Fields fields) const
{
    if (!rules_.valid_column) return true;
    const std::string_view field = field_at(fields, *rules_.valid_column);
    return !nulls_.contains(field) && numeric_value(field).value_or(0) != 0;
}

} // namespace tarvo

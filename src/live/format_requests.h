#pragma once

#include "definitions/header_columns.h"
#include "definitions/survey_definitions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// The data format of a live survey, and what it does to the line of names.

// A line of the format, "Key : value". Returns what the operator is to be told of one that was ignored; else empty.
std::string take_format_request(std::string_view payload, std::optional<DataFormat>& format);

// The requests that bring a data format to another monitor; none for the plain form.
std::vector<std::string> format_requests(const SurveyDefinitions& definitions);

// Names as one line that is split like the data lines. Only where a separator is named: the plain form has rules of its
// own.
bool has_named_separator(const std::optional<DataFormat>& format);
std::string line_of_names(const std::vector<std::string>& names, Separator separator);
HeaderColumns columns_of_line(std::string_view line, Separator separator);

// A clock without a date belongs to the day on which it comes, unless the format tells the day of the first.
void give_clock_its_day(DataFormat& format, const CivilDate& today);
CivilDate utc_today();

// The format as a file holds it whose columns are called otherwise and named in its first line. name_of: the new name
// of a column, "N/A" for one that is not there.
template <class NameOf>
void rename_format_columns(SurveyDefinitions& definitions, NameOf name_of)
{
    if (!definitions.data_format) return;
    DataFormat& format = *definitions.data_format;
    format.names_in_line = true;
    for (std::string& name : format.time_columns) name_of(name);
    if (!format.valid_column.empty()) name_of(format.valid_column);
}

} // namespace tarvo

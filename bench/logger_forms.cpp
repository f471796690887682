#include "logger_forms.h"

#include "unattended.h"

#include "definitions/definitions_file.h"
#include "geo/proj_projections.h"
#include "text/civil_date.h"
#include "text/file_names.h"
#include "text/line_reader.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace tarvo::survey {

namespace {

constexpr double kSecondsOfDay = 86'400;
constexpr const char* kGrid = "UTM 32N";
constexpr int kDegreeDecimals = 9; // a tenth of a millimetre

std::string two_digits(int number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// "2025-06-16;07:00:00.100"
std::string date_and_clock(double seconds_since_1970)
{
    const double day = std::floor(seconds_since_1970 / kSecondsOfDay);
    const auto thousandths = static_cast<int>(std::nearbyint((seconds_since_1970 - day * kSecondsOfDay) * 1000));
    const int seconds = thousandths / 1000;
    const std::string fraction = std::to_string(1000 + thousandths % 1000).substr(1);
    return civil_date_text(date_of_day(static_cast<std::int64_t>(day))) + ';' + two_digits(seconds / 3600) + ':' +
           two_digits(seconds / 60 % 60) + ':' + two_digits(seconds % 60) + '.' + fraction;
}

std::string_view take_field(std::string_view& line)
{
    const std::size_t length = std::min(line.find(','), line.size());
    const std::string_view field = line.substr(0, length);
    line.remove_prefix(std::min(length + 1, line.size()));
    return field;
}

// The rest of the line with the other separator; the first three fields are `first`.
std::string line_of(std::string first, std::string_view rest)
{
    const auto begin = static_cast<std::ptrdiff_t>(first.size() + 1);
    first += ';';
    first += rest;
    std::replace(first.begin() + begin, first.end(), ',', ';');
    return first + '\n';
}

std::string logger_line(std::string_view line, LoggerForm form, const Projection& grid)
{
    const double time = leading_number(take_field(line));
    const std::string_view east = take_field(line);
    const std::string_view north = take_field(line);
    std::string first = date_and_clock(time) + ';';
    if (form == LoggerForm::clock) return line_of(first.append(east).append(";").append(north), line);
    const GeographicPlace place = grid.to_geographic({leading_number(east), leading_number(north)});
    return line_of(first + format_fixed(place.latitude, kDegreeDecimals) + ';' +
                       format_fixed(place.longitude, kDegreeDecimals),
                   line);
}

SurveyDefinitions definitions_beside(const std::string& survey_file)
{
    SurveyDefinitions definitions;
    int header_line = 1;
    Unattended op;
    read_definitions(definitions_file_name_for(survey_file), definitions, header_line, op);
    return definitions;
}

void write_beside(const std::string& data_file, SurveyDefinitions definitions)
{
    Unattended op;
    if (write_definitions(definitions_file_name_for(data_file), definitions, 1, op) < 0) {
        throw std::runtime_error("the definitions of " + data_file + " cannot be written");
    }
}

void close(std::ofstream& file, const std::string& name)
{
    file.close();
    if (!file) throw std::runtime_error(name + " cannot be written");
}

} // namespace

void write_logger_form(const std::string& survey_file, LoggerForm form, const std::string& data_file)
{
    SurveyDefinitions definitions = definitions_beside(survey_file);
    DataFormat format;
    format.separator = Separator::semicolon;
    format.time_columns = {"date", "clock"};
    format.time_form = "YYYY-MM-DD hh:mm:ss";
    definitions.fields[kTime].name = "date";
    if (form == LoggerForm::clock_and_degrees) {
        format.position_form = PositionForm::degrees;
        format.survey_grid = kGrid;
        definitions.fields[kEast].name = "lon";
        definitions.fields[kNorth].name = "lat";
    }
    definitions.data_format = format;

    const auto grid = ProjProjections().open(kGrid);
    LineReader lines(survey_file);
    std::ofstream data(data_file, std::ios::binary);
    std::string_view line;
    lines.next_line(line);
    for (int field = 0; field < 3; ++field) take_field(line);
    data << line_of(form == LoggerForm::clock ? "date;clock;east;north" : "date;clock;lat;lon", line);
    while (lines.next_line(line) == LineReader::Outcome::line) data << logger_line(line, form, *grid);
    close(data, data_file);
    write_beside(data_file, definitions);
}

std::vector<std::string> write_in_parts(const std::string& survey_file, std::int64_t part_lines,
                                        const std::string& folder)
{
    std::filesystem::create_directories(folder);
    LineReader lines(survey_file);
    std::string_view line;
    lines.next_line(line);
    const std::string names(line);

    std::vector<std::string> files;
    std::ofstream data;
    for (std::int64_t number = 0; lines.next_line(line) == LineReader::Outcome::line; ++number) {
        if (number % part_lines == 0) {
            if (!files.empty()) close(data, files.back());
            const std::string part = "part" + two_digits(static_cast<int>(files.size()) + 1) + ".csv";
            files.push_back((std::filesystem::path(folder) / part).string());
            data.open(files.back(), std::ios::binary);
            data << names << '\n';
        }
        data << line << '\n';
    }
    close(data, files.back());
    write_beside(files.front(), definitions_beside(survey_file));
    return files;
}

} // namespace tarvo::survey

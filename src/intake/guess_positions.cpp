#include "intake/guess_positions.h"

#include "definitions/field_slots.h"
#include "intake/guess_names.h"
#include "text/numbers.h"
#include "text/position_text.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

bool can_be_metres(const GuessColumn& column)
{
    return column.can_be_named && column.is_numeric() && !column.is_mostly_zero() &&
           !(column.filled == 0 && !column.texts.empty());
}

bool is_called_but_for_datum(const std::vector<std::string>& words, const std::vector<std::string>& wanted)
{
    return is_called(without_datum(words), wanted);
}

std::optional<std::size_t> metres_column(const std::vector<GuessColumn>& columns, FieldSlotIndex slot)
{
    for (const auto fits : {is_called, is_called_but_for_datum, mentions}) {
        for (const std::string_view name : names_of_slot(slot)) {
            for (std::size_t column = 0; column < columns.size(); ++column) {
                if (can_be_metres(columns[column]) && fits(columns[column].words, words_of(name))) return column;
            }
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> degrees_column(const std::vector<GuessColumn>& columns,
                                          const std::vector<std::string_view>& names)
{
    for (const auto fits : {is_called, mentions}) {
        for (const std::string_view name : names) {
            for (std::size_t column = 0; column < columns.size(); ++column) {
                if (columns[column].can_be_named && fits(columns[column].words, words_of(name))) return column;
            }
        }
    }
    return std::nullopt;
}

// Numbers within the range of degrees with enough decimals for a place, and all from one region.
bool look_like_degrees(const GuessColumn& column)
{
    constexpr double kWidestSurvey = 5; // degrees
    constexpr std::size_t kLeastDecimals = 4;
    if (!column.can_be_named || column.numbers.empty() || column.numbers.size() != column.filled) return false;
    std::size_t placed = 0;
    double lowest = 360;
    double highest = -360;
    for (const std::string_view text : column.texts) {
        const double value = numeric_value(text).value_or(0);
        if (value == 0) continue;
        const std::size_t point = text.find('.');
        if (std::abs(value) > 360 || point == std::string_view::npos || text.size() - point - 1 < kLeastDecimals)
            return false;
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
        ++placed;
    }
    return placed > 0 && highest - lowest < kWidestSurvey;
}

struct ColumnPair {
    std::size_t longitude = 0;
    std::size_t latitude = 0;
};

// Two neighbours that look like degrees, one of them beyond the range of latitudes. `open` tells of a pair within it.
std::optional<ColumnPair> degrees_by_content(const std::vector<GuessColumn>& columns, std::string& open)
{
    for (std::size_t column = 0; column + 1 < columns.size(); ++column) {
        const GuessColumn& first = columns[column];
        const GuessColumn& second = columns[column + 1];
        if (!look_like_degrees(first) || !look_like_degrees(second)) continue;
        const auto is_beyond_latitudes = [](const GuessColumn& one) {
            return one.highest() > 90 || one.lowest() < -90;
        };
        if (is_beyond_latitudes(first) && !is_beyond_latitudes(second)) return ColumnPair{column, column + 1};
        if (is_beyond_latitudes(second) && !is_beyond_latitudes(first)) return ColumnPair{column + 1, column};
        open = "columns " + first.name + " and " + second.name + " look like degrees: which is the longitude?";
        return std::nullopt;
    }
    return std::nullopt;
}

// The fixes that a form reads of two columns.
std::vector<GeoPosition> fixes_of(const std::vector<GuessColumn>& columns, const ColumnPair& pair, DegreesReader read)
{
    const auto text_at = [&columns](std::size_t column, std::size_t row) {
        return column < columns.size() ? columns[column].texts[row] : std::string_view();
    };
    std::vector<GeoPosition> fixes;
    for (std::size_t row = 0; row < columns[pair.longitude].texts.size(); ++row) {
        const auto longitude = read(text_at(pair.longitude, row), text_at(pair.longitude + 1, row), GeoAxis::longitude);
        const auto latitude = read(text_at(pair.latitude, row), text_at(pair.latitude + 1, row), GeoAxis::latitude);
        if (const std::optional<GeoPosition> fix = geo_position(longitude, latitude)) fixes.push_back(*fix);
    }
    return fixes;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// "UTM 35N" for the median of the first fixes.
std::string utm_zone_of(std::vector<GeoPosition> fixes)
{
    constexpr std::size_t kMostFixes = 100;
    fixes.resize(std::min(fixes.size(), kMostFixes));
    std::vector<double> longitudes;
    std::vector<double> latitudes;
    for (const GeoPosition& fix : fixes) {
        longitudes.push_back(fix.longitude);
        latitudes.push_back(fix.latitude);
    }
    const int zone = std::clamp(static_cast<int>(std::floor((median(longitudes) + 180) / 6)) + 1, 1, 60);
    return "UTM " + std::to_string(zone) + (median(latitudes) < 0 ? "S" : "N");
}

std::optional<PositionGuess> guess_metres(const std::vector<GuessColumn>& columns)
{
    const std::optional<std::size_t> east = metres_column(columns, kEast);
    const std::optional<std::size_t> north = metres_column(columns, kNorth);
    if (!east || !north || *east == *north) return std::nullopt;
    PositionGuess guess;
    guess.east = *east;
    guess.north = *north;
    guess.reason = "named like metres of a grid, and numbers";
    return guess;
}

std::optional<PositionGuess> guess_degrees(const std::vector<GuessColumn>& columns, std::string& open)
{
    const auto longitude = degrees_column(columns, {"LONGITUDE", "LON", "LONG", "LNG"});
    const auto latitude = degrees_column(columns, {"LATITUDE", "LAT"});
    std::optional<ColumnPair> pair;
    if (longitude && latitude && *longitude != *latitude) pair = ColumnPair{*longitude, *latitude};
    const bool is_named = pair.has_value();
    if (!pair) pair = degrees_by_content(columns, open);
    if (!pair) return std::nullopt;

    const std::vector<GeoPosition> degrees = fixes_of(columns, *pair, read_degrees);
    const std::vector<GeoPosition> nmea = fixes_of(columns, *pair, read_nmea_degrees);
    if (degrees.empty() && nmea.empty()) {
        open = "columns " + columns[pair->longitude].name + " and " + columns[pair->latitude].name +
               " hold no degrees in a form that is known";
        return std::nullopt;
    }
    const bool is_nmea = nmea.size() > degrees.size();
    PositionGuess guess;
    guess.east = pair->longitude;
    guess.north = pair->latitude;
    guess.form = is_nmea ? PositionForm::nmea : PositionForm::degrees;
    guess.survey_grid = utm_zone_of(is_nmea ? nmea : degrees);
    guess.reason = is_named ? "named like degrees, and within their range" : "numbers within the range of degrees";
    return guess;
}

} // namespace

std::optional<PositionGuess> guess_positions(const std::vector<GuessColumn>& columns, std::string& open)
{
    if (std::optional<PositionGuess> metres = guess_metres(columns)) return metres;
    return guess_degrees(columns, open);
}

} // namespace tarvo

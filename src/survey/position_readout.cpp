#include "survey/position_readout.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>

namespace tarvo {

namespace {

std::string decimal_text(double degrees, char positive, char negative)
{
    constexpr int kDecimals = 6; // a tenth of a metre
    return format_fixed(std::abs(degrees), kDecimals) + ' ' + (degrees < 0 ? negative : positive);
}

// Rounded as a whole, so that there are never 60 minutes.
std::string minutes_text(double degrees, int degree_digits, char positive, char negative)
{
    constexpr std::int64_t kPerMinute = 10'000;
    const std::int64_t parts = std::llround(std::abs(degrees) * 60 * kPerMinute);
    const auto padded = [](std::int64_t number, int digits) {
        const std::string text = std::to_string(number);
        const auto missing = static_cast<std::ptrdiff_t>(digits) - std::ssize(text);
        return std::string(static_cast<std::size_t>(std::max<std::ptrdiff_t>(missing, 0)), '0') + text;
    };
    const std::int64_t minutes = parts / kPerMinute;
    return padded(minutes / 60, degree_digits) + "\u00b0 " + padded(minutes % 60, 2) + '.' +
           padded(parts % kPerMinute, 4) + "' " + (degrees < 0 ? negative : positive);
}

} // namespace

void PositionReadout::open_grid(const SurveyState& survey)
{
    const std::string name = survey.projections == nullptr ? std::string() : survey_grid_text(survey);
    if (name == grid_name_) return;
    grid_name_ = name;
    grid_.reset();
    if (name.empty()) return;
    try {
        grid_ = survey.projections->open(name);
    } catch (const std::exception&) {
        // The definitions' check tells what is wrong with the grid.
    }
}

PositionTexts PositionReadout::texts(const SurveyState& survey, const GridPlace& place)
{
    PositionTexts texts;
    if (!place.is_known() || !is_in_world(place.easting) || !is_in_world(place.northing)) return texts;
    texts.grid = format_fixed(place.easting, 2) + ' ' + format_fixed(place.northing, 2);
    open_grid(survey);
    if (grid_ == nullptr) return texts;
    const GeographicPlace there = grid_->to_geographic({place.easting, place.northing});
    if (!there.is_known()) return texts;
    texts.decimal_degrees = decimal_text(there.latitude, 'N', 'S') + ", " + decimal_text(there.longitude, 'E', 'W');
    texts.degrees_and_minutes =
        minutes_text(there.latitude, 2, 'N', 'S') + ", " + minutes_text(there.longitude, 3, 'E', 'W');
    return texts;
}

} // namespace tarvo

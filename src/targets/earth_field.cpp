#include "targets/earth_field.h"

#include "processing/angles.h"
#include "processing/track_table.h"
#include "targets/igrf.h"

#include <cmath>
#include <cstdint>

namespace tarvo {

namespace {

constexpr double kFirstRealDay = 29221; // 1980-01-01 as a date-time: what is before counts from some start of a clock

struct ModelField {
    double inclination = 90;
    double declination = 0; // from grid north
    std::string source;
};

std::string side_text(double degrees, const char* positive, const char* negative)
{
    return format_fixed(std::abs(degrees), 2) + ' ' + (degrees < 0 ? negative : positive);
}

// By the IGRF in the middle of the survey at the time of its middle record; an empty source: it cannot be used.
ModelField model_field(const FitSurvey& survey, const Projection* grid, std::string& why_not)
{
    const TrackTable track = track_table(survey.store());
    const std::optional<PositionExtent> extent = position_extent(track);
    const double time = track.count > 0 ? track.time[(track.count + 1) / 2] : 0;
    if (grid == nullptr) {
        why_not = "no Survey Grid is given";
    } else if (time < kFirstRealDay) {
        why_not = "the data have no date";
    } else if (!extent) {
        why_not = "the data have no position";
    }
    if (!why_not.empty()) return {};
    const GridCoordinates middle = {(extent->x_min + extent->x_max) / 2, (extent->y_min + extent->y_max) / 2};
    const GeographicPlace place = grid->to_geographic(middle);
    const double convergence = grid_convergence(*grid, middle);
    if (!place.is_known() || !is_valid_channel(convergence)) {
        why_not = "the Survey Grid has no place for it";
        return {};
    }
    const double year = decimal_year(time);
    const GeomagneticField field = igrf_field({place.latitude, place.longitude, 0}, year);
    ModelField model;
    model.inclination = std::atan2(field.down, std::hypot(field.north, field.east)) / kRadiansPerDegree;
    model.declination = std::remainder(std::atan2(field.east, field.north) / kRadiansPerDegree - convergence, 360.0);
    model.source = "IGRF-14 at " + side_text(place.latitude, "N", "S") + ' ' + side_text(place.longitude, "E", "W") +
                   ", " + format_fixed(year, 2);
    return model;
}

} // namespace

GridVector field_unit(double inclination, double declination)
{
    const double down = inclination * kRadiansPerDegree;
    const double turned = declination * kRadiansPerDegree;
    return {std::cos(down) * std::sin(turned), std::cos(down) * std::cos(turned), -std::sin(down)};
}

double grid_convergence(const Projection& grid, const GridCoordinates& place)
{
    constexpr double kStep = 50; // metres: differences are then good to a thousandth of a degree
    const GeographicPlace south = grid.to_geographic({place.easting, place.northing - kStep});
    const GeographicPlace north = grid.to_geographic({place.easting, place.northing + kStep});
    if (!south.is_known() || !north.is_known()) return kNull;
    // metres a degree differ along the meridian and the parallel (Snyder 1987, USGS Professional Paper 1395, p. 24)
    constexpr double kEccentricity = 0.00669437999; // squared, of WGS 84
    const double latitude = (south.latitude + north.latitude) / 2 * kRadiansPerDegree;
    const double flatter = 1 - kEccentricity * std::sin(latitude) * std::sin(latitude);
    const double along = (north.latitude - south.latitude) * (1 - kEccentricity) / flatter;
    const double across = std::remainder(north.longitude - south.longitude, 360.0) * std::cos(latitude);
    return std::atan2(across, along) / kRadiansPerDegree;
}

EarthField earth_field(const FitSurvey& survey, const TargetSettings& typed, const Projection* grid)
{
    EarthField field;
    std::string why_not;
    const ModelField model = model_field(survey, grid, why_not);
    field.inclination = typed.FieldInclination.value_or(model.inclination);
    field.declination = typed.FieldDeclination.value_or(model.declination);
    if (typed.FieldInclination && (typed.FieldDeclination || model.source.empty())) {
        field.source = "typed";
    } else if (!model.source.empty()) {
        field.source = model.source;
        if (typed.FieldInclination) field.source += ", inclination typed";
        if (typed.FieldDeclination) field.source += ", declination typed";
    } else {
        field.is_assumed = true;
        field.source = "taken as straight down, since " + why_not;
    }
    field.direction.unit = field_unit(field.inclination, field.declination);
    if (is_valid_sensor(survey.median_field())) field.direction.strength = std::abs(survey.median_field());
    return field;
}

} // namespace tarvo

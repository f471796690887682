#pragma once

#include "text/numbers.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// A place on the WGS 84 ellipsoid, degrees. kNull: not known.
struct GeographicPlace {
    double longitude = kNull; // -180..180, east positive
    double latitude = kNull;  // -90..90, north positive

    bool is_known() const { return is_valid_channel(longitude) && is_valid_channel(latitude); }
};

// A place in a survey grid, metres. kNull: not known.
struct GridCoordinates {
    double easting = kNull;
    double northing = kNull;

    bool is_known() const { return is_valid_channel(easting) && is_valid_channel(northing); }
};

// One survey grid. Not to be used from two threads at once: every thread opens its own.
class Projection {
public:
    virtual ~Projection() = default;
    virtual const std::string& name() const = 0; // in full, as in "WGS 84 / UTM zone 35N"

    // What has no image (beyond the poles, outside the grid's world, null) is not known.
    virtual GridCoordinates to_grid(const GeographicPlace& place) const = 0;
    virtual GeographicPlace to_geographic(const GridCoordinates& place) const = 0;
};

struct GridCode {
    std::string code; // as in "EPSG:32635"
    std::string name; // as in "WGS 84 / UTM zone 35N"
};

// The survey grids that the program knows.
class Projections {
public:
    virtual ~Projections() = default;

    // survey_grid: "UTM 35N", a code ("EPSG:32635") or any other text of a coordinate system. Throws std::runtime_error
    // that says why for one that is not known, is not projected or does not count in metres.
    virtual std::unique_ptr<Projection> open(std::string_view survey_grid) const = 0;

    // Grids in metres whose code or name holds every word, upper and lower case alike, best first.
    virtual std::vector<GridCode> search(std::string_view words, std::size_t most) const = 0;
};

} // namespace tarvo

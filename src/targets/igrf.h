#pragma once

namespace tarvo {

// The Earth's field along the geodetic directions, nT.
struct GeomagneticField {
    double north = 0;
    double east = 0;
    double down = 0;
};

// A place on the WGS 84 ellipsoid.
struct GeodeticPlace {
    double latitude = 0;  // degrees
    double longitude = 0; // degrees
    double height = 0;    // metres above the ellipsoid
};

// The main field by the International Geomagnetic Reference Field, 14th generation. year: with its fraction, held
// within 1900 to 2030; linear between the epochs, after 2025 by the predicted change.
GeomagneticField igrf_field(const GeodeticPlace& place, double year);

// The year with its fraction of a date-time, days since 1899-12-30.
double decimal_year(double date_time);

} // namespace tarvo

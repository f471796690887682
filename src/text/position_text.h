#pragma once

#include <optional>
#include <string_view>

namespace tarvo {

enum class GeoAxis { longitude, latitude };

struct GeoPosition {
    double longitude = 0; // degrees, -180 to 180, east positive
    double latitude = 0;  // degrees, north positive
};

// The degrees that a field says, of WGS 84; nullopt for what is none or out of range. next_field: that of the next
// column, which counts when it is a letter N, S, E or W and nothing else. Letters may be in any case, one for a field
// at most, of its own axis and without a minus. Longitudes from 180 to 360 become negative.

// Decimal degrees; or degrees, minutes and seconds with marks or blanks between them, decimals in the last part alone.
std::optional<double> read_degrees(std::string_view field, std::string_view next_field, GeoAxis axis);

// dddmm.mmmm, degrees and minutes without a mark, with the letter behind it or in the next field.
std::optional<double> read_nmea_degrees(std::string_view field, std::string_view next_field, GeoAxis axis);

using DegreesReader = std::optional<double> (*)(std::string_view field, std::string_view next_field, GeoAxis axis);

// Both axes together: one that is none makes both none, and so does 0 beside 0, which receivers write without a fix.
std::optional<GeoPosition> geo_position(std::optional<double> longitude, std::optional<double> latitude);

} // namespace tarvo

#pragma once

#include "ports/projection.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

struct MapProperty {
    std::string name;
    std::string value; // a number's shortest text, or any text; empty: null
    bool is_text = false;
};

// A named place for programs that show maps.
struct MapFeature {
    std::string name;
    GeographicPlace place;
    std::vector<MapProperty> properties;
    std::string description = {}; // a sentence for people, which GeoJSON has no place for; empty: none
};

// A GeoJSON FeatureCollection (RFC 7946): points by longitude and latitude with the properties, the name first. What
// has no place has a null geometry. Bytes that are not UTF-8 become U+FFFD.
std::string geojson_text(std::span<const MapFeature> features);

// The same as KML 2.2; what has no place is left out of it. Characters that XML cannot hold become U+FFFD, too.
// document: its name; empty: none.
std::string kml_text(std::span<const MapFeature> features, std::string_view document = {});

} // namespace tarvo

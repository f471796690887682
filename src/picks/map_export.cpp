#include "picks/map_export.h"

#include "text/numbers.h"
#include "text/quoted.h"

namespace tarvo {

namespace {

constexpr int kDegreeDecimals = 9; // a tenth of a millimetre

std::string coordinates(const GeographicPlace& place, const char* between)
{
    return format_fixed(place.longitude, kDegreeDecimals) + between + format_fixed(place.latitude, kDegreeDecimals);
}

std::string json_value(const MapProperty& property)
{
    if (property.is_text) return json_quoted(property.value);
    return property.value.empty() ? "null" : property.value;
}

std::string json_feature(const MapFeature& feature)
{
    std::string text = R"({"type": "Feature", "geometry": )";
    text += feature.place.is_known() ? R"({"type": "Point", "coordinates": [)" + coordinates(feature.place, ", ") + "]}"
                                     : "null";
    text += R"(, "properties": {"name": )" + json_quoted(feature.name);
    for (const MapProperty& property : feature.properties) {
        text += ", " + json_quoted(property.name) + ": " + json_value(property);
    }
    return text + "}}";
}

std::string placemark(const MapFeature& feature)
{
    std::string text = "<Placemark><name>" + markup_escaped(feature.name) + "</name>";
    if (!feature.description.empty()) text += "<description>" + markup_escaped(feature.description) + "</description>";
    text += "<ExtendedData>";
    for (const MapProperty& property : feature.properties) {
        text += "<Data name=\"" + markup_escaped(property.name) + "\"><value>" + markup_escaped(property.value) +
                "</value></Data>";
    }
    return text + "</ExtendedData><Point><coordinates>" + coordinates(feature.place, ",") +
           "</coordinates></Point></Placemark>\n";
}

} // namespace

std::string geojson_text(std::span<const MapFeature> features)
{
    std::string text = R"({"type": "FeatureCollection", "features": [)";
    for (std::size_t at = 0; at < features.size(); ++at) text += (at == 0 ? "\n" : ",\n") + json_feature(features[at]);
    return text + "\n]}\n";
}

std::string kml_text(std::span<const MapFeature> features, std::string_view document)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>\n";
    if (!document.empty()) text += "<name>" + markup_escaped(document) + "</name>\n";
    for (const MapFeature& feature : features) {
        if (feature.place.is_known()) text += placemark(feature);
    }
    return text + "</Document></kml>\n";
}

} // namespace tarvo

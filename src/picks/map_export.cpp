#include "picks/map_export.h"

#include "text/numbers.h"

#include <algorithm>
#include <string_view>

namespace tarvo {

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD"; // U+FFFD
constexpr int kDegreeDecimals = 9;              // a tenth of a millimetre

// Bytes of the well-formed UTF-8 character that the text begins with; 0: it begins with none. The bounds of the second
// byte are those of Unicode's table of well-formed byte sequences.
std::size_t utf8_length(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < lowest || byte(1) > highest) return 0;
    for (std::size_t at = 2; at < length; ++at) {
        if ((byte(at) & 0xC0) != 0x80) return 0;
    }
    return length;
}

// A text written character by character; write_ascii gives the text of a character below 128.
std::string escaped(std::string_view text, std::string (*write_ascii)(unsigned char))
{
    std::string written;
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        const auto first = static_cast<unsigned char>(text.front());
        if (length == 0) {
            written += kReplacement;
        } else if (first < 0x80) {
            written += write_ascii(first);
        } else {
            written += text.substr(0, length);
        }
        text.remove_prefix(std::max(length, std::size_t{1}));
    }
    return written;
}

std::string json_character(unsigned char c)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    if (c < 0x20) return std::string("\\u00") + kDigits[c / 16] + kDigits[c % 16];
    const auto plain = static_cast<char>(c);
    return c == '"' || c == '\\' ? std::string{'\\', plain} : std::string{plain};
}

std::string xml_character(unsigned char c)
{
    switch (c) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\t':
    case '\n':
    case '\r': return "&#" + std::to_string(c) + ";";
    default: return c < 0x20 ? kReplacement : std::string{static_cast<char>(c)};
    }
}

std::string json_quoted(std::string_view text)
{
    return '"' + escaped(text, json_character) + '"';
}
std::string xml_text(std::string_view text)
{
    return escaped(text, xml_character);
}

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
    std::string text = "<Placemark><name>" + xml_text(feature.name) + "</name><ExtendedData>";
    for (const MapProperty& property : feature.properties) {
        text += "<Data name=\"" + xml_text(property.name) + "\"><value>" + xml_text(property.value) + "</value></Data>";
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

std::string kml_text(std::span<const MapFeature> features)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>\n";
    for (const MapFeature& feature : features) {
        if (feature.place.is_known()) text += placemark(feature);
    }
    return text + "</Document></kml>\n";
}

} // namespace tarvo

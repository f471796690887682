#include "picks/pick_export.h"

#include "picks/pick_times.h"
#include "processing/fixed_time.h"
#include "text/numbers.h"

#include <algorithm>
#include <string_view>

namespace tarvo {

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD"; // U+FFFD

std::string csv_quoted(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string number_or(double value, const char* when_null)
{
    return is_valid_channel(value) ? format_shortest(value) : when_null;
}

std::int32_t sample_or_none(const Pick& pick)
{
    return pick.sample_index >= 1 ? pick.sample_index : -1;
}

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

std::string json_quoted(std::string_view text)
{
    std::string quoted = "\"";
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        const auto c = static_cast<unsigned char>(text.front());
        if (length == 0) {
            quoted += kReplacement;
        } else if (c < 0x20) {
            constexpr std::string_view kDigits = "0123456789abcdef";
            quoted += std::string("\\u00") + kDigits[c / 16] + kDigits[c % 16];
        } else {
            if (c == '"' || c == '\\') quoted += '\\';
            quoted += text.substr(0, length);
        }
        text.remove_prefix(std::max(length, std::size_t{1}));
    }
    return quoted + '"';
}

std::string csv_line(const Pick& pick)
{
    return csv_quoted(pick.name) + ',' + std::to_string(pick.type) + ',' +
           format_fixed(seconds_since_1970(pick.time), 4) + ',' + number_or(pick.location[1], "") + ',' +
           number_or(pick.location[2], "") + ',' + number_or(pick.location[3], "") + ',' +
           std::to_string(sample_or_none(pick)) + '\n';
}

std::string json_geometry(const Pick& pick)
{
    if (!is_valid_channel(pick.location[1]) || !is_valid_channel(pick.location[2])) return "null";
    return "{\"type\": \"Point\", \"coordinates\": [" + format_shortest(pick.location[1]) + ", " +
           format_shortest(pick.location[2]) + "]}";
}

std::string json_feature(const Pick& pick)
{
    return "{\"type\": \"Feature\", \"geometry\": " + json_geometry(pick) +
           ", \"properties\": {\"name\": " + json_quoted(pick.name) + ", \"type\": " + std::to_string(pick.type) +
           ", \"time\": \"" + iso_date_and_time(pick.time) +
           "\", \"distance\": " + number_or(pick.location[3], "null") +
           ", \"sample\": " + std::to_string(sample_or_none(pick)) + "}}";
}

} // namespace

std::string pick_csv_text(const PickList& picks)
{
    std::string text = "name,type,time,x,y,distance,sample\n";
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) text += csv_line(pick_at(picks, pick));
    return text;
}

std::string pick_geojson_text(const PickList& picks)
{
    std::string text = "{\"type\": \"FeatureCollection\", \"features\": [";
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        text += (pick == 1 ? "\n" : ",\n") + json_feature(pick_at(picks, pick));
    }
    return text + "\n]}\n";
}

} // namespace tarvo

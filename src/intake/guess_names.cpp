#include "intake/guess_names.h"

#include "definitions/field_slots.h"
#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

bool is_upper(char c)
{
    return c >= 'A' && c <= 'Z';
}
bool is_lower(char c)
{
    return c >= 'a' && c <= 'z';
}
// True where a new word begins although no separator stands before it: "fishDepth", "UTCTime", "mag1", "1x".
bool begins_word(std::string_view name, std::size_t at)
{
    if (at == 0) return false;
    const char before = name[at - 1];
    const char here = name[at];
    if (is_digit(before) != is_digit(here)) return true;
    if (is_lower(before) && is_upper(here)) return true;
    return is_upper(before) && is_upper(here) && at + 1 < name.size() && is_lower(name[at + 1]);
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) text += word;
    return text;
}

std::vector<std::string> sorted(std::vector<std::string> words)
{
    std::sort(words.begin(), words.end());
    return words;
}

bool has_one_of(const std::vector<std::string>& words, std::initializer_list<std::string_view> wanted)
{
    return std::any_of(wanted.begin(), wanted.end(), [&words](std::string_view word) { return has_word(words, word); });
}

bool is_datum_word(const std::string& word)
{
    constexpr std::string_view kDatums[] = {"NAD", "WGS",   "ETRS",   "GDA",    "MGA",    "UTM",  "ED",
                                            "RGF", "OSGB",  "NZTM",   "SWEREF", "SIRGAS", "PSAD", "ZONE",
                                            "M",   "METER", "METERS", "METRE",  "METRES"};
    return is_digit(word.front()) || std::find(std::begin(kDatums), std::end(kDatums), word) != std::end(kDatums);
}

} // namespace

std::vector<std::string> words_of(std::string_view name)
{
    std::vector<std::string> words;
    bool in_word = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        if (!is_upper(c) && !is_lower(c) && !is_digit(c)) {
            in_word = false;
            continue;
        }
        if (!in_word || begins_word(name, at)) words.emplace_back();
        words.back() += upper_case(std::string_view(&c, 1));
        in_word = true;
    }
    return words;
}

bool has_word(const std::vector<std::string>& words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool is_called(const std::vector<std::string>& words, const std::vector<std::string>& wanted)
{
    return joined(words) == joined(wanted) || sorted(words) == sorted(wanted);
}

bool mentions(const std::vector<std::string>& words, const std::vector<std::string>& wanted)
{
    return std::all_of(wanted.begin(), wanted.end(),
                       [&words](const std::string& word) { return word.size() >= 3 && has_word(words, word); });
}

std::vector<std::string> without_datum(const std::vector<std::string>& words)
{
    std::vector<std::string> rest;
    for (std::size_t at = 0; at < words.size(); ++at) {
        const bool is_hemisphere = at > 1 && (words[at] == "N" || words[at] == "S") && is_digit(words[at - 1].front());
        if (!is_datum_word(words[at]) && !is_hemisphere) rest.push_back(words[at]);
    }
    return rest;
}

std::vector<std::string_view> names_of_slot(FieldSlotIndex slot)
{
    switch (slot) { // a new slot fails to compile here until it is said how loggers call it
    case kTime: return {"TIME", "UTC TIME", "GPS TIME", "TIMESTAMP", "DATE TIME", "SECONDS", "SEC", "UTC", "T"};
    case kEast: return {"EAST", "EASTING", "X", "UTM E", "UTM X", "X COORD", "GRID E", "E"};
    case kNorth: return {"NORTH", "NORTHING", "Y", "UTM N", "UTM Y", "Y COORD", "GRID N", "N"};
    case kDepth: return {"DEPTH", "FISH DEPTH", "SENSOR DEPTH", "MAG DEPTH"};
    case kElevation: return {"ELEVATION", "ALTITUDE", "ALT", "ELEV", "HEIGHT", "Z"};
    case kDem: return {"DEM", "DTM", "TERRAIN", "GROUND", "SEABED", "BATHYMETRY", "TOPOGRAPHY"};
    case kHeading: return {"HEADING", "HDG", "BEARING", "COURSE", "COG", "YAW", "AZIMUTH"};
    case kPitch: return {"PITCH"};
    case kRoll: return {"ROLL"};
    case kLine:
        return {"LINE",     "LINE NUMBER", "LINE NO", "LINE ID",       "PROFILE",
                "TRANSECT", "TRIAL",       "RUN",     "SURVEY NUMBER", "SURVEY LINE"};
    }
    return {};
}

const std::vector<std::string>& total_field_stems()
{
    static const std::vector<std::string> stems = {"TMI",           "MAGTMI",     "TOTALFIELD",
                                                   "TOTALMAG",      "MAGTOTAL",   "MAGFIELD",
                                                   "MAGNETIC",      "MAG",        "FIELD",
                                                   "MAGNETICFIELD", "TF",         "BTOTAL",
                                                   "MAGNETOMETER",  "SENSOR",     "TOTALFIELDANOMALY",
                                                   "TMIANOMALY",    "MAGANOMALY", "MAGNETICANOMALY",
                                                   "ANOMALY"};
    return stems;
}

const std::vector<std::string>& component_stems()
{
    static const std::vector<std::string> stems = {"B",        "T", "MAG", "TMI",      "FIELD",    "BFIELD",
                                                   "MAGFIELD", "F", "FG",  "FLUXGATE", "MAGNETIC", "MAGNETOMETER",
                                                   "H",        "M"};
    return stems;
}

std::optional<SensorName> sensor_name_of(std::string_view column_name)
{
    constexpr std::size_t kMostDigits = 4; // more is no sensor number
    std::string letters;
    std::string digits;
    for (const std::string& word : words_of(column_name)) {
        (is_digit(word.front()) ? digits : letters) += word;
    }
    if (letters.ends_with("NT")) letters.resize(letters.size() - 2); // the unit
    if (digits.size() > kMostDigits) return std::nullopt;
    const int number = digits.empty() ? -1 : std::stoi(digits);
    for (const std::string& stem : total_field_stems()) {
        if (letters == stem) return SensorName{stem, 0, number};
    }
    for (const std::string& stem : component_stems()) {
        for (int component = 1; component <= 3; ++component) {
            const char axis = "?XYZ"[component];
            if (letters == stem + axis || letters == axis + stem) return SensorName{stem, component, number};
        }
    }
    return std::nullopt;
}

int field_rank_of(const std::vector<std::string>& words)
{
    if (has_word(words, "TMI") || (has_word(words, "TOTAL") && has_one_of(words, {"FIELD", "MAG", "INTENSITY"})))
        return 1;
    const bool is_magnetic = std::any_of(words.begin(), words.end(), [](const std::string& word) {
        return word == "MAG" || word == "MAGNETIC" || word == "MAGNETOMETER" || word == "MAGFIELD";
    });
    if (is_magnetic) return 2;
    return has_one_of(words, {"NT", "FIELD", "ANOMALY", "GAMMA"}) ? 3 : 0;
}

bool is_beside_a_field(const std::vector<std::string>& words)
{
    return has_one_of(words, {"BASE",   "DIURNAL", "VALID", "QUALITY",     "IGRF",        "INC",     "DEC",
                              "SIGNAL", "STATUS",  "FLAG",  "DECLINATION", "INCLINATION", "TEMP",    "TEMPERATURE",
                              "LOCK",   "HEADING", "GRAD",  "GRADIENT",    "STD",         "NOISE",   "COMPASS",
                              "X",      "Y",       "Z",     "LAT",         "LON",         "TIME",    "DATE",
                              "COUNT",  "COUNTER", "DEPTH", "ALTITUDE",    "HEIGHT",      "VOLTAGE", "NUMBER"});
}

} // namespace tarvo

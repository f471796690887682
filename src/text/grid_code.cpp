#include "text/grid_code.h"

#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

// "UTM 35N" in any spelling ("utm35 n") as the code of that zone on WGS 84; empty when it is no such text.
std::string utm_code(std::string_view text)
{
    std::string letters;
    for (const char letter : upper_case(text)) {
        if (letter != ' ' && letter != '\t') letters += letter;
    }
    if (letters.size() < 5 || letters.size() > 6 || !letters.starts_with("UTM")) return {};
    const char hemisphere = letters.back();
    const std::string digits = letters.substr(3, letters.size() - 4);
    const bool is_number = std::all_of(digits.begin(), digits.end(), [](char d) { return d >= '0' && d <= '9'; });
    if ((hemisphere != 'N' && hemisphere != 'S') || !is_number) return {};
    const int zone = std::stoi(digits);
    if (zone < 1 || zone > 60) return {};
    return "EPSG:" + std::to_string((hemisphere == 'N' ? 32600 : 32700) + zone);
}

} // namespace

std::string grid_code(std::string_view survey_grid)
{
    std::string utm = utm_code(survey_grid);
    if (!utm.empty()) return utm;
    std::string text(survey_grid);
    if (text.starts_with("+") && text.find("+type=crs") == std::string::npos) text += " +type=crs";
    return text;
}

} // namespace tarvo

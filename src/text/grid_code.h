#pragma once

#include <string>
#include <string_view>

namespace tarvo {

// The name of a survey grid as libraries of coordinate systems take it: "EPSG:32635" for "UTM 35N", a bare "+proj=..."
// as a system and not as an operation, everything else as it is.
std::string grid_code(std::string_view survey_grid);

} // namespace tarvo

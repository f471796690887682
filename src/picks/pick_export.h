#pragma once

#include "picks/map_export.h"
#include "picks/pick_list.h"

#include <string>
#include <vector>

namespace tarvo {

// The picks as CSV, lines ended by LF: name,type,time,x,y,distance,sample. A name with a comma or a quote is quoted;
// times are seconds since 1970 with four decimals, positions the shortest texts that read back to the same value and
// empty when null; the sample is -1 for a pick that is not on the track.
std::string pick_csv_text(const PickList& picks);

// The picks for maps, with the properties type, time (ISO 8601 without a zone), easting and northing in the survey's
// grid, distance and sample.
std::vector<MapFeature> pick_features(const PickList& picks, const Projection& projection);

} // namespace tarvo

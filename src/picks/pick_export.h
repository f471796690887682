#pragma once

#include "picks/pick_list.h"

#include <string>

namespace tarvo {

// The picks as CSV, lines ended by LF: name,type,time,x,y,distance,sample. A name with a comma or a quote is quoted;
// times are seconds since 1970 with four decimals, positions the shortest texts that read back to the same value and
// empty when null; the sample is -1 for a pick that is not on the track.
std::string pick_csv_text(const PickList& picks);

// The picks as a GeoJSON FeatureCollection: points in the survey's own grid, metres, as they stand, with the
// properties name, type, time (ISO 8601 without a zone), distance and sample. A pick without a position has a null
// geometry. Bytes of a name that are not UTF-8 become U+FFFD.
std::string pick_geojson_text(const PickList& picks);

} // namespace tarvo

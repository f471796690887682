#pragma once

#include "processing/base_station.h"

#include <string>

namespace tarvo {

struct BaseStationReading {
    std::string refusal; // why there is none; empty when it was read
    BaseStation base;
};

// Reads the readings of a base station: IAGA-2002 when the first line of the file says so, else text with the columns
// of the definitions file beside it (NAME.def), of which time and the total field of sensor 1 count. Times that run
// back are refused; readings of one time count as one.
BaseStationReading read_base_station(const std::string& file_name);

} // namespace tarvo

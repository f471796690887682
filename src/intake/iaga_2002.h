#pragma once

#include "processing/base_station.h"
#include "text/line_reader.h"

#include <string_view>

namespace tarvo {

// The exchange format of the observatories: header lines of 70 characters that end with "|", the last of them naming
// the columns ("DATE TIME DOY BOUH BOUD BOUZ BOUF"), then lines of date, time, day of the year and four elements. The
// column of the total field is the one whose name ends in F; 88888 (not recorded) and 99999 (missing) stand for nulls.
bool is_iaga_2002(std::string_view first_line);

// Takes all readings of a file whose first line has been read. Throws std::runtime_error, naming file, line and what
// was expected.
void read_iaga_2002(LineReader& file, BaseStation& base);

} // namespace tarvo

#pragma once

#include "survey_model.h"

#include <string>

namespace tarvo::survey {

enum class Components { total_field = 1, three = 3 };
enum class LineColumn { written, left_out };
enum class HeadingCount { from_east, from_north };
enum class PickFile { written, left_out };

// What a generated survey's files hold.
struct SurveyFiles {
    std::string data_file; // its definitions and picks get their names beside it
    Plan plan;
    Components components = Components::total_field; // three: along the fish's u, v and w directions
    LineColumn line_column = LineColumn::written;
    HeadingCount heading = HeadingCount::from_east; // from_north: bearings, clockwise
    PickFile picks = PickFile::left_out;
    double bad_share = 0; // of all fields but the time: 0 to 1
};

// Writes NAME.csv and NAME.def, and on request NAME_pick.dat with one pick per source, at the track's nearest point.
// Columns: time, east, north, depth, altitude (of the fish above the seabed), heading, pitch, roll, line, sensors.
// Throws std::invalid_argument for a plan that cannot be run, std::runtime_error for a file that cannot be written.
void write_survey(const SurveyFiles& files);

} // namespace tarvo::survey

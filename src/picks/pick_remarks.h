#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tarvo {

// What the operator wrote about picks, by full name. It is kept beside the pick file as CSV with the columns name and
// remark.
using PickRemarks = std::map<std::string, std::string>;

// "line7_pick.dat" and "line7.dat" have "line7_remarks.csv"; empty for an empty name.
std::string remarks_file_name_for(std::string_view pick_file_name);

// Throws std::runtime_error with file, line and what was expected. A file that is not there holds none.
PickRemarks read_pick_remarks(const std::string& path);

std::string pick_remarks_text(const PickRemarks& remarks);

// Gives a pick's remark to its new name.
void rename_remark(PickRemarks& remarks, const std::string& from, const std::string& to);

} // namespace tarvo

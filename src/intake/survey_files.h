#pragma once

#include <span>
#include <string>
#include <vector>

namespace tarvo {

// The data files of one survey, by name, from what was chosen, dropped or named together: a folder stands for the files
// in it that have its commonest extension, those that the program itself writes left out. A file named twice is there
// once. What does not exist stays in the list. Throws std::runtime_error for a folder without data files or one that
// cannot be read.
std::vector<std::string> survey_files_of(std::span<const std::string> chosen);

} // namespace tarvo

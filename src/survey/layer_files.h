#pragma once

#include <string>
#include <vector>

namespace tarvo {

// What a file chooser offers for layers.
extern const char* const kLayerFileFilter;

// Whether a file is one of layers and not of a survey's data: by its extension, and a text that could be either by how
// it begins.
bool is_layer_file(const std::string& file_name);

// The layer files in the folder of a survey's data file, by name, at most 20; pictures only with the world file that
// places them.
std::vector<std::string> layer_files_beside(const std::string& data_file_name);

} // namespace tarvo

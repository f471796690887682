#pragma once

#include "display/picture.h"

#include <string>

namespace tarvo {

// The bytes of a PNG file: 8 bits each of red, green and blue, no transparency. Throws std::runtime_error for an empty
// picture and when the encoder fails.
std::string png_bytes(const Picture& picture);

// Replaces the file as a whole. Throws std::runtime_error when that is not possible.
void write_png_file(const std::string& file_name, const Picture& picture);

} // namespace tarvo

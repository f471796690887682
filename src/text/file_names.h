#pragma once

#include <string>
#include <string_view>

namespace tarvo {

// The name without its extension: what stands before the last "." of its last part; the whole name when that has none.
std::string_view without_extension(std::string_view file_name);

// The name after the last folder separator ("/" or "\").
std::string_view last_part(std::string_view file_name);

// Whether a file, a folder or anything else has this name; one that cannot be reached has not.
bool is_there(const std::string& file_name);

} // namespace tarvo

#include "text/file_names.h"

#include <filesystem>
#include <system_error>

namespace tarvo {

std::string_view last_part(std::string_view file_name)
{
    const std::size_t separator = file_name.find_last_of("/\\");
    return separator == std::string_view::npos ? file_name : file_name.substr(separator + 1);
}

std::string_view without_extension(std::string_view file_name)
{
    const std::size_t dot = last_part(file_name).rfind('.');
    if (dot == std::string_view::npos) return file_name;
    return file_name.substr(0, file_name.size() - last_part(file_name).size() + dot);
}

bool is_there(const std::string& file_name)
{
    std::error_code ignored;
    return std::filesystem::exists(file_name, ignored);
}

} // namespace tarvo

#include "tools/common/program_module.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

// Empty: it is not there.
std::string module_file(const std::string& file_name)
{
    std::error_code unknown;
    const fs::path folder = fs::read_symlink("/proc/self/exe", unknown).parent_path();
    for (const fs::path& place : {folder, folder / ".." / TARVO_LIBDIR / "tarvo" / "modules"}) {
        if (fs::exists(place / file_name, unknown)) return (place / file_name).string();
    }
    return {};
}

std::string loader_reason()
{
    const char* const reason = dlerror();
    return reason == nullptr ? "it cannot be loaded" : reason;
}

} // namespace

bool has_program_module(const std::string& file_name)
{
    return !module_file(file_name).empty();
}

void* program_module_function(const std::string& file_name, const char* function)
{
    const std::string file = module_file(file_name);
    if (file.empty()) throw std::runtime_error("it is not installed");
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL); // for good: it may be at work at the end
    void* const found = module == nullptr ? nullptr : dlsym(module, function);
    if (found == nullptr) throw std::runtime_error(loader_reason());
    return found;
}

} // namespace tarvo

#include "tools/common/layer_module.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

constexpr const char* kModule = "tarvo_layers.so";
constexpr const char* kMakeReader = "tarvo_make_layer_reader_1"; // its number goes up with each change of the port

std::string module_file()
{
    std::error_code unknown;
    const fs::path folder = fs::read_symlink("/proc/self/exe", unknown).parent_path();
    for (const fs::path& place : {folder, folder / ".." / TARVO_LIBDIR / "tarvo"}) {
        if (fs::exists(place / kModule, unknown)) return (place / kModule).string();
    }
    return {};
}

[[noreturn]] void refuse(const std::string& reason)
{
    throw std::runtime_error(std::string("background layers need the package ") + kLayerPackage + ": " + reason);
}

std::string loader_reason()
{
    const char* const reason = dlerror();
    return reason == nullptr ? "it cannot be loaded" : reason;
}

} // namespace

bool has_layer_module()
{
    return !module_file().empty();
}

std::shared_ptr<LayerReader> load_layer_reader()
{
    const std::string file = module_file();
    if (file.empty()) refuse("it is not installed");
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL); // for good: its reader may be at work at the end
    if (module == nullptr) refuse(loader_reason());
    using MakeReader = LayerReader* (*)();
    const auto make_reader = reinterpret_cast<MakeReader>(dlsym(module, kMakeReader));
    if (make_reader == nullptr) refuse(loader_reason());
    return std::shared_ptr<LayerReader>(make_reader());
}

} // namespace tarvo

#include "tools/common/layer_module.h"

#include "tools/common/program_module.h"

#include <stdexcept>
#include <string>

namespace tarvo {

namespace {

constexpr const char* kLayerModule = "tarvo_layers.so";
constexpr const char* kMakeReader = "tarvo_make_layer_reader_1"; // its number goes up with each change of the port

} // namespace

bool has_layer_module()
{
    return has_program_module(kLayerModule);
}

std::shared_ptr<LayerReader> load_layer_reader()
{
    try {
        using MakeReader = LayerReader* (*)();
        return std::shared_ptr<LayerReader>(
            reinterpret_cast<MakeReader>(program_module_function(kLayerModule, kMakeReader))());
    } catch (const std::exception& reason) {
        throw std::runtime_error(std::string("background layers need the package ") + kLayerPackage + ": " +
                                 reason.what());
    }
}

} // namespace tarvo

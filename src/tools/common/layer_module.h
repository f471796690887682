#pragma once

#include "ports/layer_reader.h"

#include <memory>

namespace tarvo {

// The reader of background layers from the module tarvo_layers.so, which lies beside the program or among the installed
// libraries and is loaded by this call. Throws std::runtime_error that names the package when it is not there or does
// not fit the program.
std::shared_ptr<LayerReader> load_layer_reader();

// Without loading it.
bool has_layer_module();

inline constexpr const char* kLayerPackage = "tarvo-layers";

} // namespace tarvo

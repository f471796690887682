#include "layers/layer_file.h"

// What a program looks up in the module, once. The caller owns the reader.
extern "C" __attribute__((visibility("default"))) tarvo::LayerReader* tarvo_make_layer_reader_1()
{
    return new tarvo::GdalLayerReader;
}

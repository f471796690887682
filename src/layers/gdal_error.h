#pragma once

#include "ports/layer_reader.h"

#include <gdal_priv.h>

#include <atomic>
#include <string>

namespace tarvo {

// What GDAL last complained of on this thread, without the path that the caller names anyway; `otherwise` when it said
// nothing.
std::string gdal_reason(const std::string& otherwise);

// GDAL's progress callback: lets it go on until the flag (progress_data, a const std::atomic<bool>*) is true.
int go_on_until_stopped(double share, const char* text, void* progress_data);

// Throws LayerReadingStopped once the flag is true.
void check_stop(const std::atomic<bool>& stop);

struct CloseDataset {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using Dataset = std::unique_ptr<GDALDataset, CloseDataset>;

} // namespace tarvo

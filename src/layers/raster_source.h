#pragma once

#include "layers/coordinate_systems.h"
#include "layers/gdal_error.h"

#include <memory>

namespace tarvo {

// A file of pixels. Throws std::runtime_error when it has none, or no place.
std::unique_ptr<LayerSource> open_raster(Dataset dataset, const SurveyGrid& survey, const std::atomic<bool>& stop);

} // namespace tarvo

#pragma once

#include "layers/coordinate_systems.h"
#include "layers/gdal_error.h"

#include <memory>

namespace tarvo {

// A file of points, lines and polygons.
std::unique_ptr<LayerSource> open_shapes(Dataset dataset, const SurveyGrid& survey);

} // namespace tarvo

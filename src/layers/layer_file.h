#pragma once

#include "ports/layer_reader.h"

namespace tarvo {

// Readers of layer files by GDAL, for the formats that are listed in layer_file.cpp and no others.
class GdalLayerReader : public LayerReader {
public:
    GdalLayerReader();
    std::unique_ptr<LayerSource> open(const std::string& path, const std::string& survey_grid,
                                      const std::atomic<bool>& stop) override;
};

} // namespace tarvo

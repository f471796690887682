#pragma once

#include "ports/projection.h"

namespace tarvo {

// Survey grids by the PROJ library and the database that comes with it. Nothing is fetched from a network. It holds
// nothing, so that threads may share one; what it opens has a context of its own.
class ProjProjections : public Projections {
public:
    std::unique_ptr<Projection> open(std::string_view survey_grid) const override;
    std::vector<GridCode> search(std::string_view words, std::size_t most) const override;
};

} // namespace tarvo

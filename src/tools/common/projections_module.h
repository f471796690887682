#pragma once

#include "ports/projection.h"

namespace tarvo {

// Survey grids from the module tarvo_projections.so, which is loaded at the first call: most surveys are in metres, and
// the libraries behind it take longer to load than a small survey. Where it cannot be, a grid is refused with the
// reason. Threads may share one.
class LoadedProjections : public Projections {
public:
    std::unique_ptr<Projection> open(std::string_view survey_grid) const override;
    std::vector<GridCode> search(std::string_view words, std::size_t most) const override;
};

} // namespace tarvo

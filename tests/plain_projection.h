#pragma once

#include "ports/projection.h"

#include <stdexcept>

namespace tarvo {

// A grid that is easy to work out by hand: a degree is 1000 m; beyond the 80th parallel there is none.
class PlainProjection : public Projection {
public:
    const std::string& name() const override { return name_; }
    GridCoordinates to_grid(const GeographicPlace& place) const override
    {
        if (!place.is_known() || place.latitude > 80) return {};
        return {place.longitude * 1000, place.latitude * 1000};
    }
    GeographicPlace to_geographic(const GridCoordinates& place) const override
    {
        return {place.easting / 1000, place.northing / 1000};
    }

private:
    std::string name_ = "plain";
};

class PlainProjections : public Projections {
public:
    std::unique_ptr<Projection> open(std::string_view survey_grid) const override
    {
        if (survey_grid != "plain") throw std::runtime_error("no such grid");
        return std::make_unique<PlainProjection>();
    }
    std::vector<GridCode> search(std::string_view, std::size_t) const override { return {}; }
};

} // namespace tarvo

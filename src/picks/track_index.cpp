#include "picks/track_index.h"

#include "text/numbers.h"

#include <algorithm>
#include <span>

namespace tarvo {

namespace {

constexpr std::int32_t kPointsPerNode = 32;
constexpr double kSmallestSpan = 1;         // metres
constexpr double kMarginPerSpan = 1 / 20.0; // on each side

void widen(double& low, double& high)
{
    const double missing = kSmallestSpan - (high - low);
    if (missing > 0) {
        low -= missing / 2;
        high += missing / 2;
    }
    const double margin = (high - low) * kMarginPerSpan;
    low -= margin;
    high += margin;
}

} // namespace

std::optional<PlanBox> track_index_box(const TrackTable& track)
{
    const std::optional<PositionExtent> extent = position_extent(track);
    if (!extent) return std::nullopt;
    PlanBox box = {extent->x_min, extent->y_min, extent->x_max, extent->y_max};
    widen(box.x_min, box.x_max);
    widen(box.y_min, box.y_max);
    return box;
}

bool build_track_index(const TrackTable& track, cQuadTree& tree, const std::function<void()>& pause)
{
    tree.DeleteQuadtree();
    const std::optional<PlanBox> box = track_index_box(track);
    if (!box || !tree.InitialiseQuadtree(box->x_min, box->y_min, box->x_max, box->y_max, kPointsPerNode)) return false;
    const std::size_t rows = static_cast<std::size_t>(track.count) + 1;
    tree.insert_points(std::span(track.easting, rows), std::span(track.northing, rows), pause); // a null lies in no box
    return true;
}

} // namespace tarvo

#pragma once

#include "picks/quadtree.h"
#include "processing/track_table.h"

#include <functional>
#include <optional>

namespace tarvo {

// The box for an index of the track: the extent of all valid positions, each span widened evenly to at least 1 m, so
// that a line run due north has one too, and then by a twentieth of itself on each side. nullopt: no valid position.
std::optional<PlanBox> track_index_box(const TrackTable& track);

// Fills the tree with the track's positions, each under its record's number; records without a position are left out.
// False: there is nothing to index and the tree is empty.
// pause: called now and then on the way, where it is given.
bool build_track_index(const TrackTable& track, cQuadTree& tree, const std::function<void()>& pause = nullptr);

} // namespace tarvo

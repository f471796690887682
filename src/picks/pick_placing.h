#pragma once

#include "definitions/operator.h"
#include "picks/pick_list.h"
#include "picks/quadtree.h"
#include "processing/track_table.h"

#include <vector>

namespace tarvo {

// Where the track heads at a record: the steps to the next record. Both 0: not known.
struct TrackDirection {
    double x = 0; // metres
    double y = 0;

    bool operator==(const TrackDirection&) const = default;
};

// Gives every pick the sample that `index` finds nearest to its position, -1 where it finds none: such a pick keeps its
// place in the list. Returns the track's direction at each pick, from 1; element 0 is unused. Without an index, a track
// or a pick nothing is done and nothing returned.
std::vector<TrackDirection> locate_pick_list_on_track(PickList& picks, const cQuadTree& index, const TrackTable& track,
                                                      Operator& op);

} // namespace tarvo

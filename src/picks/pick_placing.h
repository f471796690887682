#pragma once

#include "picks/pick_display.h"
#include "picks/pick_list.h"
#include "picks/quadtree.h"
#include "ports/operator.h"
#include "processing/track_table.h"

#include <cstdint>
#include <string>

namespace tarvo {

// Where the track heads at a record, for what is drawn across or beside it: the steps to the next record, metres. Both
// 0: not known, as at the end of the track or beside a record without a position.
struct TrackDirection {
    double x = 0;
    double y = 0;

    bool operator==(const TrackDirection&) const = default;
};
TrackDirection track_direction(const TrackTable& track, std::int32_t record);

// Gives every pick the sample that `index` finds nearest to its position, -1 where it finds none: such a pick keeps its
// place in the list. Without an index, a track or a pick nothing is done.
void locate_pick_list_on_track(PickList& picks, const cQuadTree& index, const TrackTable& track, Operator& op);

// Metres from the place where a pick was marked to the sample that it is laid on; 0 for one that is not on the track.
double distance_from_track(const PickList& picks, std::int32_t pick, const TrackTable& track);

// How many picks lie farther from their samples than that many metres.
std::int32_t picks_beyond(const PickList& picks, const TrackTable& track, double tolerance);

// How many are on no sample of the track.
std::int32_t picks_without_sample(const PickList& picks);

// The names of the picks on a sample, a comma between them, the first few of many; empty: none.
std::string names_on_sample(const PickList& picks, std::int32_t sample_index);
// Of those less than so many metres from a place.
std::string names_within(const PickList& picks, double x, double y, double metres);

// Time, place and sample of a pick become those of the location.
void place_pick(PickList& picks, std::int32_t pick, const PickLocation& location);

} // namespace tarvo

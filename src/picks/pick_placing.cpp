#include "picks/pick_placing.h"

#include "text/numbers.h"

#include <exception>

namespace tarvo {

TrackDirection track_direction(const TrackTable& track, std::int32_t record)
{
    if (record < 1 || record >= track.count) return {};
    for (const std::int32_t end : {record, record + 1}) {
        if (!has_position(track, end)) return {};
    }
    return {track.easting[record + 1] - track.easting[record], track.northing[record + 1] - track.northing[record]};
}

void locate_pick_list_on_track(PickList& picks, const cQuadTree& index, const TrackTable& track, Operator& op)
{
    if (!index.is_initialised() || picks.number_of_picks < 1 || track.count < 1) return;
    try {
        for (std::size_t pick = 1; pick <= static_cast<std::size_t>(picks.number_of_picks); ++pick) {
            const std::array<double, 4>& location = picks.pick_locations[pick];
            picks.pick_sample_index[pick] = index.find_nearest_point(location[1], location[2]).sample_index;
        }
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while locating the pick list on the track: ") + fault.what());
    }
}

} // namespace tarvo

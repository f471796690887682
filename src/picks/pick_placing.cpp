#include "picks/pick_placing.h"

#include "text/numbers.h"

#include <exception>

namespace tarvo {

namespace {

TrackDirection direction_at(const TrackTable& track, std::int32_t record)
{
    const std::int32_t next = record + 1;
    if (record < 1 || next > track.count) return {};
    if (!is_valid_channel(track.easting[next]) || !is_valid_channel(track.northing[next])) return {};
    return {track.easting[next] - track.easting[record], track.northing[next] - track.northing[record]};
}

} // namespace

std::vector<TrackDirection> locate_pick_list_on_track(PickList& picks, const cQuadTree& index, const TrackTable& track,
                                                      Operator& op)
{
    std::vector<TrackDirection> directions;
    if (!index.is_initialised() || picks.number_of_picks < 1 || track.count < 1) return directions;
    try {
        directions.resize(static_cast<std::size_t>(picks.number_of_picks) + 1);
        for (std::size_t pick = 1; pick < directions.size(); ++pick) {
            const std::array<double, 4>& location = picks.pick_locations[pick];
            const std::int32_t sample = index.find_nearest_point(location[1], location[2]).sample_index;
            picks.pick_sample_index[pick] = sample;
            directions[pick] = direction_at(track, sample);
        }
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while locating the pick list on the track: ") + fault.what());
    }
    return directions;
}

} // namespace tarvo

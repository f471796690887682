#include "picks/pick_placing.h"

#include "text/numbers.h"

#include <cmath>
#include <exception>

namespace tarvo {

namespace {

// Of the picks for which it holds, the first few of many.
template <typename Predicate>
std::string names_where(const PickList& picks, const Predicate& holds)
{
    constexpr std::int32_t kMostNames = 4;
    std::string names;
    std::int32_t count = 0;
    for (std::size_t pick = 1; pick <= static_cast<std::size_t>(picks.number_of_picks); ++pick) {
        if (!holds(pick)) continue;
        if (++count > kMostNames) return names + " and more";
        names += (count > 1 ? ", " : "") + picks.pick_names[pick];
    }
    return names;
}

} // namespace

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

double distance_from_track(const PickList& picks, std::int32_t pick, const TrackTable& track)
{
    const auto at = static_cast<std::size_t>(pick);
    const std::int32_t record = picks.pick_sample_index[at];
    if (record < 1 || record > track.count || !has_position(track, record)) return 0;
    const std::array<double, 4>& location = picks.pick_locations[at];
    return std::hypot(location[1] - track.easting[record], location[2] - track.northing[record]);
}

std::int32_t picks_beyond(const PickList& picks, const TrackTable& track, double tolerance)
{
    std::int32_t count = 0;
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        if (distance_from_track(picks, pick, track) > tolerance) ++count;
    }
    return count;
}

std::int32_t picks_without_sample(const PickList& picks)
{
    std::int32_t count = 0;
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        if (picks.pick_sample_index[static_cast<std::size_t>(pick)] < 1) ++count;
    }
    return count;
}

void place_pick(PickList& picks, std::int32_t pick, const PickLocation& location)
{
    const auto at = static_cast<std::size_t>(pick);
    picks.pick_sample_index[at] = location.sample_index;
    picks.pick_times[at] = location.time;
    picks.pick_locations[at] = {0, location.x, location.y, location.distance};
}

std::string names_on_sample(const PickList& picks, std::int32_t sample_index)
{
    return names_where(
        picks, [&](std::size_t pick) { return sample_index >= 1 && picks.pick_sample_index[pick] == sample_index; });
}

std::string names_within(const PickList& picks, double x, double y, double metres)
{
    return names_where(picks, [&](std::size_t pick) {
        const std::array<double, 4>& place = picks.pick_locations[pick];
        return std::hypot(place[1] - x, place[2] - y) < metres;
    });
}

} // namespace tarvo

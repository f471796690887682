#include "display/track_search.h"

#include "ports/guarded_operation.h"

#include <algorithm>
#include <stdexcept>

namespace tarvo {

namespace {

std::int32_t stepped_index(const double* column, std::int32_t count, double value, std::int32_t step)
{
    const bool goes_forward = step >= 0;
    const double* const first = column + 1;
    const double* const end = first + count;
    const auto row_of = [column](const double* place) { return place - column; };

    // The row just before the value on the side the search comes from, and the one behind it that may be equal.
    std::ptrdiff_t bound = 0;
    std::ptrdiff_t candidate = 0;
    if (goes_forward) {
        candidate = row_of(std::lower_bound(first, end, value));
        bound = candidate - 1;
    } else {
        bound = row_of(std::upper_bound(first, end, value));
        candidate = bound - 1;
    }
    const auto is_row = [count](std::ptrdiff_t row) { return row >= 1 && row <= count; };

    std::ptrdiff_t index = candidate;
    if (!is_row(candidate) || column[candidate] != value) {
        index = bound + step;
        const bool is_still_before = is_row(index) && (goes_forward ? column[index] < value : column[index] > value);
        if (is_still_before) index += step;
    }
    return static_cast<std::int32_t>(std::clamp<std::ptrdiff_t>(index, 1, count));
}

} // namespace

std::int32_t calculate_track_index(const double* column, std::int32_t count, double value, std::int32_t step,
                                   Operator& op)
{
    std::int32_t index = 0;
    if (count < 1) return index;
    run_guarded(op, "An error occurred while calculating the track index: ", [&] {
        if (column == nullptr) throw std::invalid_argument("the track table has no such column");
        index = stepped_index(column, count, value, step);
    });
    return index;
}

std::int32_t calculate_track_index_from_distance(const TrackTable& track, double distance, std::int32_t step,
                                                 Operator& op)
{
    std::int32_t index = 0;
    if (track.count < 1) return index;
    run_guarded(op, "An error occurred while calculating the track index from the distance: ", [&] {
        if (track.distance == nullptr) throw std::invalid_argument("the track table has no distances");
        index = stepped_index(track.distance, track.count, distance, step);
    });
    return index;
}

SectionLimits calculate_section_limits(const TrackTable& track, std::int32_t record, float axis_length, Operator& op)
{
    if (record < 1 || record > track.count || track.distance == nullptr) return {};
    const double reach = static_cast<double>(axis_length) / 2;
    const double distance = track.distance[record];
    return {calculate_track_index_from_distance(track, distance - reach, 1, op),
            calculate_track_index_from_distance(track, distance + reach, -1, op)};
}

} // namespace tarvo

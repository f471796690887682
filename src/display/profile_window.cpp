#include "display/profile_window.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

void add_point(ProfileCurve& curve, double distance, double value)
{
    curve.distance.push_back(distance);
    curve.value.push_back(is_in_world(value) ? value : kNoValue);
}

// The group's least and greatest value in the order in which they come; of one record its value.
void add_group(const TrackTable& track, const double* values, const RecordSpan& group, ProfileCurve& curve)
{
    std::int32_t least = 0;
    std::int32_t greatest = 0;
    for (std::int32_t record = group.first; record <= group.last; ++record) {
        if (!is_in_world(values[record])) continue;
        if (least == 0 || values[record] < values[least]) least = record;
        if (greatest == 0 || values[record] > values[greatest]) greatest = record;
    }
    if (least == 0) {
        add_point(curve, track.distance[group.first], kNull);
        return;
    }
    const auto [earlier, later] = std::minmax(least, greatest);
    add_point(curve, track.distance[earlier], values[earlier]);
    if (later != earlier) add_point(curve, track.distance[later], values[later]);
}

// The last record of a record's survey line; `last` for one that is in none yet.
std::int32_t end_of_line(const SurveyLines& lines, std::int32_t record, std::int32_t last)
{
    if (lines.CurrentLine < 1) return last;
    const std::int32_t end = lines.last_record(line_of_record(lines, record));
    return end < record ? last : end;
}

} // namespace

DistanceRange distance_range_about(const TrackTable& track, std::int32_t record, float axis_length)
{
    if (record < 1 || record > track.count || track.distance == nullptr) return {};
    const double reach = static_cast<double>(axis_length) / 2;
    return {track.distance[record] - reach, track.distance[record] + reach};
}

std::int32_t record_behind_newest(const TrackTable& track, float axis_length)
{
    if (track.count < 1) return 0;
    const double* const begin = track.distance + 1;
    const double middle = track.distance[track.count] - static_cast<double>(axis_length) / 2;
    return static_cast<std::int32_t>(std::upper_bound(begin, begin + track.count - 1, middle) - begin) + 1;
}

RecordSpan records_in(const TrackTable& track, std::int32_t value_count, const DistanceRange& range)
{
    const std::int32_t count = std::min(track.count, value_count);
    if (count < 1 || track.distance == nullptr) return {};
    const double* const begin = track.distance + 1;
    const double* const end = begin + count;
    const auto first = static_cast<std::int32_t>(std::lower_bound(begin, end, range.from) - begin);
    const auto last = static_cast<std::int32_t>(std::upper_bound(begin, end, range.to) - begin) + 1;
    return {std::max(first, 1), std::min(last, count)};
}

std::int32_t record_near(const TrackTable& track, double distance, double reach)
{
    const RecordSpan near = records_in(track, track.count, {distance, distance});
    std::int32_t nearest = 0;
    double least = reach;
    for (std::int32_t record = near.first; record <= near.last; ++record) {
        const double away = std::abs(track.distance[record] - distance);
        if (away > least || (nearest > 0 && away == least)) continue;
        nearest = record;
        least = away;
    }
    return nearest;
}

void profile_curve(const TrackTable& track, const SurveyLines& lines, const double* values, std::int32_t value_count,
                   const DistanceRange& range, int most_points, ProfileCurve& curve)
{
    curve.distance.clear();
    curve.value.clear();
    const RecordSpan shown = records_in(track, values == nullptr ? 0 : value_count, range);
    const std::int32_t count = shown.last - shown.first + 1;
    // Two points stand for a group.
    const std::int32_t group_size = count <= most_points ? 1 : (2 * count + most_points - 1) / most_points;
    for (RecordSpan group{shown.first, 0}; group.first <= shown.last; group.first = group.last + 1) {
        const std::int32_t line_end = end_of_line(lines, group.first, shown.last);
        group.last = std::min({group.first + group_size - 1, line_end, shown.last});
        add_group(track, values, group, curve);
        if (group.last == line_end && group.last < shown.last) add_point(curve, track.distance[group.last], kNull);
    }
}

std::vector<DistanceRange> line_end_parts(const TrackTable& track, const SurveyLines& lines, double metres,
                                          const DistanceRange& range)
{
    std::vector<DistanceRange> parts;
    const auto add = [&](double from, double to) {
        const DistanceRange part = {std::max(from, range.from), std::min(to, range.to)};
        if (part.length() > 0) parts.push_back(part);
    };
    const RecordSpan shown = records_in(track, track.count, range);
    if (shown.last < shown.first || !lines.has_line()) return parts;
    for (std::int32_t line = line_of_record(lines, shown.first); line <= lines.CurrentLine; ++line) {
        const std::int32_t last = std::min(lines.last_record(line), track.count);
        if (lines.first_record(line) > shown.last) break;
        const double from = track.distance[lines.first_record(line)];
        const double to = track.distance[last];
        add(from, std::min(from + metres, to));
        add(std::max(to - metres, from + metres), to);
    }
    return parts;
}

DistanceRange line_stretch(const TrackTable& track, const SurveyLines& lines, std::int32_t record)
{
    if (record < 1 || record > track.count || !lines.has_line()) return {};
    const std::int32_t line = line_of_record(lines, record);
    return {track.distance[lines.first_record(line)], track.distance[std::min(lines.last_record(line), track.count)]};
}

std::vector<ProfilePick> picks_in_stretch(const TrackTable& track, const PickMarks& picks, const DistanceRange& range)
{
    std::vector<ProfilePick> found;
    for (std::size_t element = 1; element < picks.records.size(); ++element) {
        const std::int32_t record = picks.records[element];
        if (record < 1 || record > track.count) continue;
        const double distance = track.distance[record];
        if (distance < range.from || distance > range.to) continue;
        found.push_back({static_cast<std::int32_t>(element), distance});
    }
    return found;
}

void ValueExtent::include(double value)
{
    if (std::isnan(value)) return;
    least = std::min(least, value);
    greatest = std::max(greatest, value);
}

void ValueExtent::include(const ValueExtent& other)
{
    least = std::min(least, other.least);
    greatest = std::max(greatest, other.greatest);
}

ValueExtent value_extent(const ProfileCurve& curve)
{
    ValueExtent extent;
    for (const double value : curve.value) extent.include(value);
    return extent;
}

} // namespace tarvo

#pragma once

#include "display/track_scene.h"
#include "processing/survey_lines.h"
#include "processing/track_table.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace tarvo {

// A stretch of the distance along the track, metres.
struct DistanceRange {
    double from = 0;
    double to = 0;

    double length() const { return to - from; }
    double middle() const { return (from + to) / 2; }
    bool operator==(const DistanceRange&) const = default;
};

// The stretch that bars and graphs show about a record: axis_length long with the record in its middle. Empty when the
// track has no such record.
DistanceRange distance_range_about(const TrackTable& track, std::int32_t record, float axis_length);

// The record that is in the middle when the newest one has come to the end of the stretch, as it does while a run goes
// on; 0 without records.
std::int32_t record_behind_newest(const TrackTable& track, float axis_length);

// Records first to last; none where last is below first.
struct RecordSpan {
    std::int32_t first = 1;
    std::int32_t last = 0;
};

// The records of a stretch and one to either side, of the first value_count.
RecordSpan records_in(const TrackTable& track, std::int32_t value_count, const DistanceRange& range);

// The record nearest to a distance along the track, the first of two, if one lies within `reach` metres of it; 0: none.
std::int32_t record_near(const TrackTable& track, double distance, double reach);

// A curve of one quantity against the distance along the track.
struct ProfileCurve {
    std::vector<double> distance;
    std::vector<double> value; // NaN where the record has none: the curve is broken there
};

// The curve of a column of values (by record, from 1; null: no values) over a stretch and one record to either side,
// broken where a survey line ends. Where the stretch holds more than most_points records, every group of neighbours is
// drawn by its least and its greatest value, so that no peak is lost.
void profile_curve(const TrackTable& track, const SurveyLines& lines, const double* values, std::int32_t value_count,
                   const DistanceRange& range, int most_points, ProfileCurve& curve);

// The parts of a stretch that lie within so many metres of an end of their survey line, in the order of the track.
std::vector<DistanceRange> line_end_parts(const TrackTable& track, const SurveyLines& lines, double metres,
                                          const DistanceRange& range);

// The stretch of a record's survey line; empty where it is in none.
DistanceRange line_stretch(const TrackTable& track, const SurveyLines& lines, std::int32_t record);

// A pick that lies in a stretch.
struct ProfilePick {
    std::int32_t pick = 0;
    double distance = 0; // along the track, metres

    bool operator==(const ProfilePick&) const = default;
};

// The picks on the track whose samples lie in a stretch, its ends included, in the order of the list.
std::vector<ProfilePick> picks_in_stretch(const TrackTable& track, const PickMarks& picks, const DistanceRange& range);

// Values from the least to the greatest; empty before the first.
struct ValueExtent {
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();

    void include(double value); // a NaN counts for nothing
    void include(const ValueExtent& other);
    bool is_empty() const { return !(least <= greatest); }
    double middle() const { return is_empty() ? 0 : (least + greatest) / 2; }
    bool operator==(const ValueExtent&) const = default;
};

ValueExtent value_extent(const ProfileCurve& curve);

} // namespace tarvo

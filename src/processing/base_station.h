#pragma once

#include "processing/track_table.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// Readings further apart than this say nothing of the time between them.
inline constexpr double kLongestBaseGap = 120.0; // seconds

// The field at a place that stays, read while the survey goes on: what changes there is the day's, not the ground's.
struct BaseReading {
    double time = 0;  // seconds since 1970-01-01 00:00:00
    double field = 0; // total field, nT

    bool operator==(const BaseReading&) const = default;
};
struct BaseStation {
    std::string file_name;
    std::vector<BaseReading> readings; // valid ones alone, their times rising
    double last_time = -1e300;         // of the last reading that was added, a null one included
    std::int64_t nulls = 0;            // readings of the file without a field
    std::int64_t repeated = 0;         // readings with the time of the one before
};

// Adds a reading; one without a field, or with the time of the one before, is only counted. Throws std::runtime_error
// when its time lies before that of the reading before.
void add_base_reading(BaseStation& base, double time, double field);

// Reads a base station at many times; fast where they mostly rise.
class BaseCursor {
public:
    explicit BaseCursor(const BaseStation& base) : base_(&base) {}

    // The field at this time, linear between the readings on either side; kNull before the first, after the last and
    // in a gap of over kLongestBaseGap. Record times are held to about a microsecond: a millisecond beyond a reading
    // counts as the reading.
    double field_at(double time);
    double field_at_date(double date_time); // days since 1899-12-30

private:
    const BaseStation* base_;
    std::size_t next_ = 0; // the first reading after the time last asked for
};

// seconds since 1970, the bounds included.
struct TimeSpan {
    double from = 0;
    double to = 0;
};
std::optional<TimeSpan> time_span(const BaseStation& base);
std::optional<TimeSpan> time_span(const TrackTable& track);
std::string time_span_text(const TimeSpan& span); // "2026-03-01 10:00:00 to 2026-03-01 12:30:00"

// Where the base station says nothing between its first and its last reading.
std::vector<TimeSpan> base_gaps(const BaseStation& base);

// The level that deviations of the base count from: the median of its field at the times of the stored records;
// nullopt when it has a field at none of them.
std::optional<double> base_level_over(const BaseStation& base, const TrackTable& track);

// The median of all its readings, for a survey that still goes on; 0 without any.
double base_level(const BaseStation& base);

} // namespace tarvo

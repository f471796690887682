#include "processing/base_station.h"

#include "processing/fixed_time.h"
#include "processing/median.h"
#include "text/numbers.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>

namespace tarvo {

namespace {

constexpr double kTimeTolerance = 1e-3; // seconds

std::string two_digits(std::int64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string time_text(double time)
{
    using namespace std::chrono;
    constexpr double kLargest = 1e11; // some thousand years: what a calendar date is known for
    const auto whole = static_cast<std::int64_t>(std::floor(std::clamp(time, -kLargest, kLargest)));
    const sys_days day = floor<days>(sys_seconds(seconds(whole)));
    const year_month_day date(day);
    const std::int64_t second = whole - std::int64_t{day.time_since_epoch().count()} * 86400;
    return std::to_string(static_cast<int>(date.year())) + '-' + two_digits(static_cast<unsigned>(date.month())) + '-' +
           two_digits(static_cast<unsigned>(date.day())) + ' ' + two_digits(second / 3600) + ':' +
           two_digits(second / 60 % 60) + ':' + two_digits(second % 60);
}

} // namespace

void add_base_reading(BaseStation& base, double time, double field)
{
    if (time < base.last_time) {
        throw std::runtime_error(base.file_name + ": times that rise were expected, found " + time_text(time) +
                                 " behind " + time_text(base.last_time));
    }
    const bool is_repeated = time == base.last_time;
    base.last_time = time;
    if (is_repeated) {
        ++base.repeated;
    } else if (is_valid_sensor(field)) {
        base.readings.push_back({time, field});
    } else {
        ++base.nulls;
    }
}

double BaseCursor::field_at(double time)
{
    const std::vector<BaseReading>& readings = base_->readings;
    if (readings.empty()) return kNull;
    const bool is_behind = next_ > 0 && readings[next_ - 1].time > time;
    const bool is_far_ahead = next_ + 1 < readings.size() && readings[next_ + 1].time <= time;
    if (is_behind || is_far_ahead) {
        const auto after = [](double wanted, const BaseReading& reading) { return wanted < reading.time; };
        next_ = static_cast<std::size_t>(std::upper_bound(readings.begin(), readings.end(), time, after) -
                                         readings.begin());
    } else if (next_ < readings.size() && readings[next_].time <= time) {
        ++next_;
    }
    const BaseReading* const before = next_ > 0 ? &readings[next_ - 1] : nullptr;
    const BaseReading* const after = next_ < readings.size() ? &readings[next_] : nullptr;
    if (before != nullptr && after != nullptr && after->time - before->time <= kLongestBaseGap + kTimeTolerance) {
        const double share = (time - before->time) / (after->time - before->time);
        return before->field + (after->field - before->field) * share;
    }
    if (before != nullptr && time - before->time <= kTimeTolerance) return before->field;
    if (after != nullptr && after->time - time <= kTimeTolerance) return after->field;
    return kNull;
}

double BaseCursor::field_at_date(double date_time)
{
    return field_at(seconds_since_1970(date_time));
}

std::optional<TimeSpan> time_span(const BaseStation& base)
{
    if (base.readings.empty()) return std::nullopt;
    return TimeSpan{base.readings.front().time, base.readings.back().time};
}

std::optional<TimeSpan> time_span(const TrackTable& track)
{
    if (track.count < 1) return std::nullopt;
    const auto [least, greatest] = std::minmax_element(track.time + 1, track.time + track.count + 1);
    return TimeSpan{seconds_since_1970(*least), seconds_since_1970(*greatest)};
}

std::string time_span_text(const TimeSpan& span)
{
    return time_text(span.from) + " to " + time_text(span.to);
}

std::vector<TimeSpan> base_gaps(const BaseStation& base)
{
    std::vector<TimeSpan> gaps;
    for (std::size_t i = 1; i < base.readings.size(); ++i) {
        const TimeSpan between = {base.readings[i - 1].time, base.readings[i].time};
        if (between.to - between.from > kLongestBaseGap + kTimeTolerance) gaps.push_back(between);
    }
    return gaps;
}

std::optional<double> base_level_over(const BaseStation& base, const TrackTable& track)
{
    BaseCursor cursor(base);
    std::vector<double> fields;
    for (std::int32_t record = 1; record <= track.count; ++record) {
        const double field = cursor.field_at_date(track.time[record]);
        if (is_valid_sensor(field)) fields.push_back(field);
    }
    return median(fields);
}

double base_level(const BaseStation& base)
{
    std::vector<double> fields;
    for (const BaseReading& reading : base.readings) fields.push_back(reading.field);
    return median(fields).value_or(0.0);
}

} // namespace tarvo

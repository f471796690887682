#include "live/live_watch.h"

#include "processing/altitude.h"
#include "processing/fixed_time.h"
#include "text/numbers.h"

#include <utility>

namespace tarvo {

namespace {

constexpr auto kCalm = std::chrono::seconds(2); // then what was wrong is over
constexpr std::size_t kMostNotices = 10'000;    // the oldest go first

const char* const kSilence = "Silence";

// Metres a second over what was stored of the line in the last few seconds, so that single fixes do not ring; kNull
// where that is too short.
double mean_speed(const SampleStore& store, const SurveyLines& lines, std::int32_t record)
{
    constexpr double kSpan = 5; // seconds
    const double from = store.record_time[record] - kSpan / kSecondsPerDay;
    const std::int32_t first_of_line = lines.first_record(line_of_record(lines, record));
    std::int32_t first = record;
    while (first > first_of_line && store.record_time[first] > from) --first;
    const double seconds = (store.record_time[record] - store.record_time[first]) * kSecondsPerDay;
    if (!(seconds >= kSpan / 2)) return kNull;
    return (store.distance[record] - store.distance[first]) / seconds;
}

} // namespace

std::vector<WatchNotice> LiveWatch::look(const LiveStatus& status, const SurveyState& survey,
                                         const WatchSettings& limits, LiveClock::time_point now,
                                         const std::string& time)
{
    Found found;
    const bool is_live = status.state == LiveStatus::State::live;
    const std::int32_t records = survey.processing.store.RecordCount;
    const bool has_samples = is_live && records > records_seen_;
    if (!is_live || records < records_seen_) records_seen_ = is_live ? 0 : records;
    if (is_live) find_in_samples(survey, limits, found);
    const double silence = status.last_line_age.value_or(status.run_age);
    if (is_live && limits.AlarmSilence > 0 && silence >= limits.AlarmSilence) {
        found[kSilence] = "No data for " + format_shortest(limits.AlarmSilence) + " s";
    }

    std::vector<WatchNotice> notices;
    for (const auto& [what, text] : found) {
        const auto [occurrence, is_new] = standing_.try_emplace(what, Occurrence{text, now});
        occurrence->second.last_seen = now;
        if (is_new) notices.push_back({time, text, true});
    }
    for (auto occurrence = standing_.begin(); occurrence != standing_.end();) {
        const bool is_judged = !is_live || has_samples || occurrence->first == kSilence;
        if (!is_judged) occurrence->second.last_seen = now;
        if (is_live && now - occurrence->second.last_seen < kCalm) {
            ++occurrence;
            continue;
        }
        notices.push_back({time, "Over: " + occurrence->second.text, false});
        occurrence = standing_.erase(occurrence);
    }
    log_.insert(log_.end(), notices.begin(), notices.end());
    if (log_.size() > kMostNotices) log_.erase(log_.begin(), log_.end() - kMostNotices);
    return notices;
}

// A value that is missing is no alarm: many sensors leave some out.
void LiveWatch::find_in_samples(const SurveyState& survey, const WatchSettings& limits, Found& found)
{
    const SampleStore& store = survey.processing.store;
    const bool has_speed = limits.speed.are_set() && survey.processing.plan.has_time;
    for (std::int32_t record = records_seen_ + 1; record <= store.RecordCount; ++record) {
        for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
            const double field = store.sensors[sensor].averages[0][record];
            if (!is_valid_sensor(field) || !limits.field.leave_out(field)) continue;
            const std::string name = "Sensor " + std::to_string(sensor);
            found.try_emplace(name, name + " is out of its limits: " + readable_number(field, 2) + " nT");
        }
        const auto judge = [&](const char* what, const char* text, double value, const ValueLimits& allowed,
                               const char* unit) {
            if (!is_valid_channel(value) || !allowed.leave_out(value)) return;
            found.try_emplace(what, text + readable_number(value, 2) + unit);
        };
        judge("Altitude", "The altitude is out of its limits: ", altitude(store, record), limits.altitude, " m");
        if (has_speed) {
            judge("Speed", "The speed is out of its limits: ", mean_speed(store, survey.processing.lines, record),
                  limits.speed, " m/s");
        }
    }
    records_seen_ = store.RecordCount;
}

std::string LiveWatch::standing_text() const
{
    std::string text;
    for (const auto& [what, occurrence] : standing_) text += (text.empty() ? "" : "\n") + occurrence.text;
    return text;
}

} // namespace tarvo

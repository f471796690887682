#pragma once

#include "live/live_requests.h"
#include "survey/watch_settings.h"

#include <map>
#include <string>
#include <vector>

namespace tarvo {

// Something worth the operator's attention has begun, or is over.
struct WatchNotice {
    std::string time; // of the clock on the wall
    std::string text;
    bool is_alarm = false; // begun

    bool operator==(const WatchNotice&) const = default;
};

// Watches a live run: no data for a while, sensors, altitude and speed out of their limits. What lasts is told once;
// what comes back within two seconds has lasted.
class LiveWatch {
public:
    // What has begun and ended since the last look, over all samples stored since. To be called some times a second.
    // time: of the clock on the wall.
    std::vector<WatchNotice> look(const LiveStatus& status, const SurveyState& survey, const WatchSettings& limits,
                                  LiveClock::time_point now, const std::string& time);

    std::string standing_text() const;                           // alarms that last, between line feeds
    const std::vector<WatchNotice>& log() const { return log_; } // of the session, the oldest first

private:
    struct Occurrence {
        std::string text;
        LiveClock::time_point last_seen;
    };
    using Found = std::map<std::string, std::string>; // what, and the words for it

    void find_in_samples(const SurveyState& survey, const WatchSettings& limits, Found& found);

    std::map<std::string, Occurrence> standing_; // by what is wrong
    std::vector<WatchNotice> log_;
    std::int32_t records_seen_ = 0;
};

} // namespace tarvo

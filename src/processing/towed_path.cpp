#include "processing/towed_path.h"

#include "processing/fixed_time.h"

#include <cmath>

namespace tarvo {

namespace {

constexpr auto kLongestGap = static_cast<std::int64_t>(10 * kFixedTimeUnits);
constexpr double kAlongTolerance = 1e-6; // metres: sums of steps are not exact

double lerp(double from, double to, double share)
{
    return from + (to - from) * share;
}

} // namespace

void TowedPath::begin_anew()
{
    fixes_.clear();
    seen_ = 0;
    last_time_.reset();
}

PathPlace TowedPath::place_of_fish(std::int64_t time, const PathPlace& position)
{
    const bool runs_back = last_time_ && time < *last_time_;
    const bool is_broken = !fixes_.empty() && elapsed_time(fixes_.back().time, time) > kLongestGap;
    if (runs_back || is_broken) begin_anew();
    last_time_ = time;
    if (position.is_known()) append(time, position);

    const std::int64_t seen = elapsed_time(latency_, time);
    if (fixes_.empty() || seen < fixes_.front().time || seen > fixes_.back().time) return {};
    const double distance = distance_along(seen) - layback_;
    if (distance < fixes_.front().along - kAlongTolerance) return {};
    return place_along(distance);
}

void TowedPath::append(std::int64_t time, const PathPlace& place)
{
    Fix fix{time, place, 0};
    if (!fixes_.empty()) {
        const Fix& last = fixes_.back();
        fix.along = last.along + std::hypot(place.east - last.place.east, place.north - last.place.north);
    }
    fixes_.push_back(fix);
}

// Of the boat at a time between the first and the last fix.
double TowedPath::distance_along(std::int64_t time)
{
    while (seen_ + 1 < fixes_.size() && fixes_[seen_ + 1].time <= time) ++seen_;
    const Fix& before = fixes_[seen_];
    if (before.time == time || seen_ + 1 == fixes_.size()) return before.along;
    const Fix& after = fixes_[seen_ + 1];
    const double share = static_cast<double>(time - before.time) / static_cast<double>(after.time - before.time);
    return lerp(before.along, after.along, share);
}

// Neither the boat nor the fish goes back along the way, so what lies before the fish is let go.
PathPlace TowedPath::place_along(double distance)
{
    while (seen_ > 0 && fixes_[1].along <= distance) {
        fixes_.pop_front();
        --seen_;
    }
    const Fix& before = fixes_.front();
    if (before.along >= distance || fixes_.size() == 1) return before.place;
    const Fix& after = fixes_[1];
    if (after.along <= distance) return after.place;
    const double share = (distance - before.along) / (after.along - before.along);
    return {lerp(before.place.east, after.place.east, share), lerp(before.place.north, after.place.north, share)};
}

} // namespace tarvo

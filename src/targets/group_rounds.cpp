#include "targets/group_rounds.h"

#include "targets/group_steps.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <numeric>
#include <optional>
#include <thread>

namespace tarvo {

namespace {

constexpr int kStepsOfFirstRound = 40;
constexpr int kStepsOfLaterRounds = 8; // from where the round before has come to

// Sets of members that are too near to each other to be fitted one after the other; most hold one alone. A crowd is cut
// into sets that can be worked on.
std::vector<std::vector<std::size_t>> crowded_sets(const std::vector<GroupMember>& members)
{
    constexpr double kCrowded = 3; // altitudes
    constexpr std::size_t kMost = 12;
    std::vector<bool> is_taken(members.size(), false);
    std::vector<std::vector<std::size_t>> sets;
    for (std::size_t first = 0; first < members.size(); ++first) {
        if (is_taken[first]) continue;
        is_taken[first] = true;
        std::vector<std::size_t> set = {first};
        for (std::size_t at = 0; at < set.size(); ++at) {
            const GroupMember& here = members[set[at]];
            for (std::size_t other = first + 1; other < members.size() && set.size() < kMost; ++other) {
                const double reach = kCrowded * here.task->ground.altitude;
                if (is_taken[other] || plan_length(members[other].apart - here.apart) > reach) continue;
                is_taken[other] = true;
                set.push_back(other);
            }
        }
        sets.push_back(std::move(set));
    }
    return sets;
}

// Whether a model of one set bends the readings of another, or of itself.
bool feels(const std::vector<GroupMember>& members, const std::vector<std::size_t>& set,
           const std::vector<std::size_t>& others)
{
    for (const std::size_t at : set) {
        for (const std::size_t other : others) {
            const double distance = length(members[at].apart - members[other].apart);
            if (is_felt(members[other].fitted->dipole.moment, distance, members[at].task->radius)) return true;
        }
    }
    return false;
}

// A set and all members that its searches may leave open, to be worked on apart from the others, whose models stay as
// they are in the members' fields.
struct Crowd {
    std::vector<GroupMember> members;
    std::vector<std::size_t> set; // of these members
};

Crowd crowd_of(const std::vector<GroupMember>& members, const std::vector<std::size_t>& set)
{
    constexpr double kNear = kAltitudesOfOpenNeighbours + 4; // altitudes: fitted places lie off their picks
    Crowd crowd;
    std::vector<std::size_t> numbers(members.size(), members.size()); // in the crowd
    for (std::size_t at = 0; at < members.size(); ++at) {
        const bool is_near = std::any_of(set.begin(), set.end(), [&](std::size_t chosen) {
            const double away = plan_length(members[at].apart - members[chosen].apart);
            return away <= kNear * members[chosen].task->ground.altitude;
        });
        if (!is_near) continue;
        numbers[at] = crowd.members.size();
        crowd.members.push_back(members[at]);
    }
    for (const std::size_t at : set) crowd.set.push_back(numbers[at]);
    return crowd;
}

// A new search of a set, in its order, by the readings within so many altitudes.
struct Attempt {
    std::vector<std::size_t> set;
    double altitudes = 0;
};

struct Outcome {
    std::vector<GroupMember> members; // of the crowd
    double square_sum = 0;            // of the set, nT squared
};

// nullopt: stopped.
std::optional<Outcome> outcome_of(const Attempt& attempt, std::vector<GroupMember> members,
                                  const std::function<bool()>& stopped)
{
    clear_models(members, attempt.set);
    for (const std::size_t at : attempt.set) {
        if (stopped()) return std::nullopt;
        search(members, at, attempt.altitudes);
    }
    settle(members, attempt.set, kStepsOfFirstRound);
    const double sum = square_sum_of(members, attempt.set);
    return Outcome{std::move(members), sum};
}

// Two attempts side by side, the second on a thread of its own where there is a processor for it. Only the caller's
// thread asks `stopped`. A first one that leaves no more than `enough` needs no second.
std::array<std::optional<Outcome>, 2> outcomes_of(const std::array<Attempt, 2>& attempts,
                                                  const std::vector<GroupMember>& members, double enough,
                                                  const std::function<bool()>& stopped)
{
    constexpr std::chrono::milliseconds kLook(10);
    const bool is_alone = std::thread::hardware_concurrency() < 2;
    std::atomic<bool> stop_second = false;
    std::future<std::optional<Outcome>> second = std::async(is_alone ? std::launch::deferred : std::launch::async, [&] {
        return outcome_of(attempts[1], members, [&] { return stop_second || (is_alone && stopped()); });
    });
    std::optional<Outcome> first = outcome_of(attempts[0], members, stopped);
    if (!first || first->square_sum <= enough) stop_second = true;
    while (second.wait_for(kLook) == std::future_status::timeout) {
        if (stopped()) stop_second = true;
    }
    return {std::move(first), second.get()};
}

// Tries a crowd again from other starts: the first search of a member did not know its later neighbours. Keeps what
// makes the whole set fit best. What is half done when it is stopped counts for nothing.
void search_again(std::vector<GroupMember>& members, const std::vector<std::size_t>& set, const FitWatch& watch)
{
    constexpr double kBetter = 0.98;
    constexpr double kNearAltitudes = 1.5; // fewer readings see fewer neighbours
    constexpr double kLeastNoise = 0.01;   // nT
    constexpr double kExplained = 3;       // times the noise: what is left is no fault of the places
    double noise = 0;
    for (const std::size_t at : set) {
        const FitTask& task = *members[at].task;
        const double deviation = std::max(task.noise, kLeastNoise);
        noise += deviation * deviation * static_cast<double>(task.readings.count());
    }
    const double enough = kExplained * kExplained * noise;
    double least = square_sum_of(members, set);
    if (least <= enough) return;
    const Crowd crowd = crowd_of(members, set);
    const std::vector<std::size_t> backwards(crowd.set.rbegin(), crowd.set.rend());
    std::vector<std::size_t> turned = backwards;
    std::rotate(turned.begin(), turned.begin() + 1, turned.end());
    const std::vector<std::size_t> turned_back(turned.rbegin(), turned.rend());
    const std::array<std::array<Attempt, 2>, 2> pairs = {
        {{{{crowd.set, kNearAltitudes}, {backwards, kAltitudesOfReadings}}},
         {{{turned, kNearAltitudes}, {turned_back, kAltitudesOfReadings}}}}};
    std::vector<GroupMember> best;
    for (const std::array<Attempt, 2>& pair : pairs) {
        if (least <= enough) break;
        for (std::optional<Outcome>& outcome :
             outcomes_of(pair, crowd.members, enough, [&watch] { return watch.stop && watch.stop(); })) {
            if (!outcome || least <= enough || !(outcome->square_sum < kBetter * least)) continue;
            least = outcome->square_sum;
            best = std::move(outcome->members);
        }
    }
    if (best.empty()) return;
    for (std::size_t at = 0; at < set.size(); ++at) {
        GroupMember& found = best[crowd.set[at]];
        members[set[at]].others = std::move(found.others);
        take_model(members, set[at], *found.fitted);
    }
}

// How a set moves from round to round.
struct SetProgress {
    bool is_settled = false;
    bool is_given_up = false;  // it moves on and on: its readings do not tell its members apart
    std::vector<double> moved; // metres, by round
};

bool moves_on(const std::vector<double>& moved)
{
    constexpr std::size_t kRounds = 3; // in which the way is to become half as long
    return moved.size() > kRounds && moved.back() > moved[moved.size() - 1 - kRounds] / 2;
}

} // namespace

bool fit_in_rounds(std::vector<GroupMember>& members, const FitWatch& watch)
{
    constexpr int kMostRounds = 20;
    constexpr int kRoundsOfSearch = 2;
    constexpr double kStays = 0.001; // metres
    const auto stopped = [&watch] { return watch.stop && watch.stop(); };
    std::vector<std::size_t> order(members.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&members](std::size_t one, std::size_t other) {
        return members[one].strength > members[other].strength;
    });
    for (const std::size_t at : order) {
        if (stopped()) return false;
        search(members, at, kAltitudesOfReadings);
    }
    const std::vector<std::vector<std::size_t>> sets = crowded_sets(members);
    std::vector<SetProgress> progress(sets.size());
    for (int round = 0; round < kMostRounds; ++round) {
        bool all_stayed = true;
        for (std::size_t set = 0; set < sets.size(); ++set) {
            SetProgress& here = progress[set];
            if (stopped()) return false;
            if (here.is_settled || here.is_given_up) continue;
            double moved = settle(members, sets[set], round == 0 ? kStepsOfFirstRound : kStepsOfLaterRounds);
            if (round < kRoundsOfSearch && sets[set].size() > 1) search_again(members, sets[set], watch);
            if (stopped()) return false;
            if (exchange_models(members, sets[set]) || round < kRoundsOfSearch) {
                moved = std::max(moved, 2 * kStays);
            } else {
                here.moved.push_back(moved);
                here.is_given_up = moved > kStays && moves_on(here.moved);
            }
            here.is_settled = true;
            if (moved <= kStays) continue;
            all_stayed = false;
            for (std::size_t other = 0; other < sets.size(); ++other) {
                if (feels(members, sets[other], sets[set])) progress[other].is_settled = false;
            }
        }
        if (all_stayed) break;
    }
    return true;
}

} // namespace tarvo

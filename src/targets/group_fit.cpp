#include "targets/group_fit.h"

#include "processing/altitude.h"
#include "targets/group_members.h"
#include "targets/projected_fit.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <future>
#include <numeric>
#include <thread>

namespace tarvo {

namespace {

constexpr double kAltitudesOfReadings = 3;
constexpr double kLeastRadius = 5; // metres
constexpr double kGreatestRadius = 60;

constexpr double kAltitudesOfOpenNeighbours = 4;
constexpr double kAltitudesOfNeighbours = 15; // a strong one bends a weak one's readings by nanoteslas from there

constexpr int kStepsOfFirstRound = 40;
constexpr int kStepsOfLaterRounds = 8; // from where the round before has come to

enum class OpenPlaces { no, yes };

// The deviation of the readings' noise, nT, by their second differences along the segments.
double noise_of(const FitReadings& readings)
{
    std::vector<double> steps;
    for (const FitSegment& segment : readings.segments) {
        for (std::size_t at = segment.first + 2; at < segment.first + segment.count; ++at) {
            steps.push_back(std::abs(readings.field[at] - 2 * readings.field[at - 1] + readings.field[at - 2]));
        }
    }
    return steps.empty() ? 0 : 1.4826 * median_or_null(std::move(steps)) / std::sqrt(6.0);
}

double peak_near_pick(const FitTask& task)
{
    const double reach = task.ground.altitude;
    const double middle = median_or_null(task.readings.field);
    double peak = 0;
    for (std::size_t reading = 0; reading < task.readings.count(); ++reading) {
        if (plan_length(task.readings.place[reading]) > reach) continue;
        peak = std::max(peak, std::abs(task.readings.field[reading] - middle));
    }
    return peak;
}

// Neighbours that a fit of one member leaves open: those that have a place already.
std::vector<OpenNeighbour> open_neighbours(const std::vector<GroupMember>& members, const GroupMember& member,
                                           OpenPlaces places)
{
    std::vector<OpenNeighbour> neighbours;
    const GridVector here = member.fitted ? member.fitted->dipole.place : GridVector{};
    for (const GroupMember& other : members) {
        if (&other == &member || !other.fitted) continue;
        const GridVector place = other.apart - member.apart + other.fitted->dipole.place;
        if (plan_length(place - here) > kAltitudesOfOpenNeighbours * member.task->ground.altitude) continue;
        neighbours.push_back({{place, other.fitted->dipole.moment}, places == OpenPlaces::yes});
    }
    return neighbours;
}

// The readings of a task that lie within some distance of its pick, in plan, and their values.
FitReadings readings_within(const FitReadings& all, double radius, std::vector<double>& values)
{
    FitReadings near;
    near.origin = all.origin;
    near.way_weight = all.way_weight;
    std::vector<double> kept;
    for (const FitSegment& segment : all.segments) {
        FitSegment part{segment.line, segment.sensor, near.count(), 0};
        for (std::size_t at = segment.first; at < segment.first + segment.count; ++at) {
            if (plan_length(all.place[at]) > radius) continue;
            near.place.push_back(all.place[at]);
            near.field.push_back(all.field[at]);
            near.distance.push_back(all.distance[at]);
            near.record.push_back(all.record[at]);
            near.way.push_back(all.way[at]);
            kept.push_back(values[at]);
            ++part.count;
        }
        if (part.count > 0) near.segments.push_back(part);
    }
    values = std::move(kept);
    return near;
}

// Searches the neighbourhood of the member's pick, by the readings within so many altitudes of it.
void search(std::vector<GroupMember>& members, std::size_t at, double altitudes)
{
    GroupMember& member = members[at];
    const FitTask& task = *member.task;
    std::vector<double> values = values_less(task, member.fields, member.own);
    const std::vector<OpenNeighbour> neighbours = open_neighbours(members, member, OpenPlaces::no);
    constexpr std::size_t kEnough = 20; // readings
    const double radius = altitudes * task.ground.altitude;
    std::vector<FittedPlace> found;
    if (radius < task.radius) {
        const FitReadings near = readings_within(task.readings, radius, values);
        if (near.count() < kEnough) {
            search(members, at, 2 * altitudes);
            return;
        }
        ProjectedFit fit(near, task.ground.earth, values, neighbours);
        found = searched_places(fit, near, values, task.ground, neighbours);
    } else {
        ProjectedFit fit(task.readings, task.ground.earth, values, neighbours);
        found = searched_places(fit, task.readings, values, task.ground, neighbours);
    }
    member.others.assign(found.begin() + 1, found.end());
    take_model(members, at, found.front());
}

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

// The sum of squares over the windows of a set.
double square_sum_of(const std::vector<GroupMember>& members, const std::vector<std::size_t>& set)
{
    double sum = 0;
    for (const std::size_t at : set) {
        const FitTask& task = *members[at].task;
        std::vector<double> left = values_less(task, members[at].fields, {});
        Baselines(task.readings).take_out(left);
        for (const double value : left) sum += value * value;
    }
    return sum;
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

// Brings the members of a set to the places that suit them all, or so many steps towards them. Returns how far the one
// that moved most moved, metres.
double settle(std::vector<GroupMember>& members, const std::vector<std::size_t>& set, int most_steps)
{
    std::vector<GridVector> before;
    before.reserve(set.size());
    for (const std::size_t at : set) before.push_back(members[at].fitted->dipole.place);
    if (set.size() > 1) {
        fit_jointly(members, set, most_steps);
    } else {
        GroupMember& member = members[set.front()];
        const FitTask& task = *member.task;
        ProjectedFit fit(task.readings, task.ground.earth, values_less(task, member.fields, member.own));
        const FitBounds bounds = fit_bounds(task.readings, task.ground);
        take_model(members, set.front(), fit.refined(before.front(), bounds, most_steps));
    }
    double moved = 0;
    for (std::size_t at = 0; at < set.size(); ++at) {
        GroupMember& member = members[set[at]];
        member.moved = length(member.fitted->dipole.place - before[at]);
        moved = std::max(moved, member.moved);
    }
    return moved;
}

// Forgets the members' models.
void clear_models(std::vector<GroupMember>& members, const std::vector<std::size_t>& set)
{
    for (const std::size_t at : set) {
        take_model(members, at, FittedPlace{});
        members[at].fitted.reset();
    }
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

// Gives the models of a set to the picks that they lie nearest to: all together they explain the same. True: some were
// exchanged.
bool exchange(std::vector<GroupMember>& members, const std::vector<std::size_t>& set)
{
    const auto off_pick = [](const GroupMember& member, const GridVector& place) {
        const FitTask& task = *member.task;
        const double off =
            plan_length(place + task.readings.origin - GridVector{task.ground.pick_east, task.ground.pick_north, 0});
        return off * off; // so that it counts which of them lies further along, and not how far aside they are
    };
    bool were_exchanged = false;
    for (const std::size_t one : set) {
        for (const std::size_t other : set) {
            if (one >= other) continue;
            const GroupMember& a = members[one];
            const GroupMember& b = members[other];
            FittedPlace for_a = *b.fitted;
            FittedPlace for_b = *a.fitted;
            for_a.dipole.place = for_a.dipole.place + b.apart - a.apart;
            for_b.dipole.place = for_b.dipole.place + a.apart - b.apart;
            const double now = off_pick(a, a.fitted->dipole.place) + off_pick(b, b.fitted->dipole.place);
            const double exchanged = off_pick(a, for_a.dipole.place) + off_pick(b, for_b.dipole.place);
            const double altitude = a.task->ground.altitude;
            if (exchanged > now - altitude * altitude) continue; // picks side by side do not tell which is whose
            const FitBounds bounds_of_a = fit_bounds(a.task->readings, a.task->ground);
            const FitBounds bounds_of_b = fit_bounds(b.task->readings, b.task->ground);
            if (held_within(for_a.dipole.place, bounds_of_a) != for_a.dipole.place ||
                held_within(for_b.dipole.place, bounds_of_b) != for_b.dipole.place) {
                continue;
            }
            for_a.at_bound = touches_bound(for_a.dipole.place, bounds_of_a);
            for_b.at_bound = touches_bound(for_b.dipole.place, bounds_of_b);
            take_model(members, one, for_a);
            take_model(members, other, for_b);
            were_exchanged = true;
        }
    }
    return were_exchanged;
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

// False: stopped.
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
            if (exchange(members, sets[set]) || round < kRoundsOfSearch) {
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

DipoleFit final_fit(const std::vector<GroupMember>& members, GroupMember& member)
{
    const FitTask& task = *member.task;
    ProjectedFit fit(task.readings, task.ground.earth, values_less(task, member.fields, member.own),
                     open_neighbours(members, member, OpenPlaces::yes));
    const FitBounds bounds = fit_bounds(task.readings, task.ground);
    FittedPlace best = fit.at(member.fitted->dipole.place);
    best.at_bound = member.fitted->at_bound;
    for (FittedPlace& other : member.others) other = fit.refined(other.dipole.place, bounds, 5);
    return described_fit(fit, task.readings, task.ground, best, member.others);
}

} // namespace

namespace {

// A source so near to a window is not seen as smooth there.
bool is_near(double distance, double radius)
{
    return distance < 3 * radius;
}

} // namespace

bool is_felt(const GridVector& moment, double distance, double radius)
{
    constexpr double kCounts = 0.01; // nT
    if (is_near(distance, radius)) return true;
    const double away = distance - radius;
    const double part = radius / away;
    return 200 * length(moment) / (away * away * away) * 6 * part * part > kCounts;
}

std::vector<double> values_less(const FitTask& task, const std::vector<GridVector>& all,
                                const std::vector<GridVector>& own)
{
    std::vector<double> values = task.readings.field;
    for (std::size_t reading = 0; reading < values.size(); ++reading) {
        const GridVector others = own.empty() ? all[reading] : all[reading] - own[reading];
        values[reading] -=
            dot(task.ground.earth, others) + beyond_linear(all[reading], task.ground.earth, task.ground.strength);
    }
    return values;
}

void take_model(std::vector<GroupMember>& members, std::size_t changed, const FittedPlace& fitted)
{
    GroupMember& source = members[changed];
    for (GroupMember& member : members) {
        const GridVector shift = source.apart - member.apart;
        const FitReadings& readings = member.task->readings;
        if (&member == &source) {
            for (std::size_t at = 0; at < member.own.size(); ++at) {
                member.fields[at] = member.fields[at] - member.own[at];
                member.own[at] = {};
            }
            add_dipole_field(readings, fitted.dipole, 1, member.own);
            for (std::size_t at = 0; at < member.own.size(); ++at) {
                member.fields[at] = member.fields[at] + member.own[at];
            }
            continue;
        }
        const double distance = length(shift);
        const auto seen = [&](const Dipole& dipole) {
            const bool counts = is_felt(dipole.moment, distance, member.task->radius);
            return Dipole{dipole.place + shift, counts ? dipole.moment : GridVector{}};
        };
        const Dipole after = seen(fitted.dipole);
        const Dipole before = source.fitted ? seen(source.fitted->dipole) : Dipole{after.place, {}};
        if (before.moment == GridVector{} && after.moment == GridVector{}) continue;
        if (is_near(distance, member.task->radius)) {
            if (source.fitted) add_dipole_field(readings, before, -1, member.fields);
            add_dipole_field(readings, after, 1, member.fields);
        } else {
            add_far_change(readings, before, after, member.fields);
        }
    }
    source.fitted = fitted;
}

namespace {

std::vector<double> altitudes_near(const FitSurvey& survey, std::int32_t record)
{
    constexpr std::int32_t kAround = 5; // records on each side
    std::vector<double> altitudes;
    const std::int32_t last = std::min(record + kAround, survey.store().RecordCount);
    for (std::int32_t near = std::max(record - kAround, 1); near <= last; ++near) {
        const double here = altitude(survey.store(), near);
        if (is_valid_channel(here) && here > 0) altitudes.push_back(here);
    }
    return altitudes;
}

bool has_altitude_near(const FitSurvey& survey, std::int32_t record)
{
    return !altitudes_near(survey, record).empty();
}

} // namespace

double altitude_near(const FitSurvey& survey, std::int32_t record)
{
    std::vector<double> altitudes = altitudes_near(survey, record);
    return altitudes.empty() ? kAltitudeWhenUnknown : median_or_null(std::move(altitudes));
}

double fit_radius(const FitSurvey& survey, const FitPlace& place)
{
    const double usual = kAltitudesOfReadings * altitude_near(survey, place.record);
    return place.radius.value_or(std::clamp(usual, kLeastRadius, kGreatestRadius));
}

FitTask fit_task(const FitSurvey& survey, const FitPlace& place, const FieldDirection& field)
{
    FitTask task;
    task.place = place;
    FitGround& ground = task.ground;
    ground.earth = field.unit;
    ground.strength = field.strength;
    ground.altitude = altitude_near(survey, place.record);
    ground.has_altitude = has_altitude_near(survey, place.record);
    ground.pick_east = place.east;
    ground.pick_north = place.north;
    task.radius = fit_radius(survey, place);
    const FitSelection selection{place.east, place.north, task.radius, place.lines_left_out, place.sensors_left_out};
    task.readings = survey.readings(selection, {place.east, place.north, 0});

    std::vector<double> heights;
    std::vector<double> seabeds;
    for (std::size_t reading = 0; reading < task.readings.count(); ++reading) {
        if (plan_length(task.readings.place[reading]) > ground.altitude) continue;
        heights.push_back(task.readings.place[reading].up);
        const double seabed = survey.seabed_height(task.readings.record[reading]);
        if (is_valid_channel(seabed)) seabeds.push_back(seabed);
    }
    if (heights.empty()) {
        for (const GridVector& reading : task.readings.place) heights.push_back(reading.up);
    }
    task.noise = noise_of(task.readings);
    if (!heights.empty()) ground.sensors = median_or_null(std::move(heights));
    ground.seabed = median_or_null(std::move(seabeds));
    return task;
}

std::vector<std::vector<std::size_t>> fit_groups(const FitSurvey& survey, const std::vector<FitPlace>& places)
{
    std::vector<double> reach;
    reach.reserve(places.size());
    for (const FitPlace& place : places) reach.push_back(kAltitudesOfNeighbours * altitude_near(survey, place.record));
    std::vector<bool> is_taken(places.size(), false);
    std::vector<std::vector<std::size_t>> groups;
    for (std::size_t first = 0; first < places.size(); ++first) {
        if (is_taken[first]) continue;
        is_taken[first] = true;
        std::vector<std::size_t> group = {first};
        for (std::size_t at = 0; at < group.size(); ++at) {
            const FitPlace& here = places[group[at]];
            for (std::size_t other = first + 1; other < places.size(); ++other) {
                if (is_taken[other]) continue;
                const double apart = std::hypot(here.east - places[other].east, here.north - places[other].north);
                if (apart > std::max(reach[group[at]], reach[other])) continue;
                is_taken[other] = true;
                group.push_back(other);
            }
        }
        std::sort(group.begin(), group.end());
        groups.push_back(std::move(group));
    }
    return groups;
}

std::vector<DipoleFit> fit_together(const std::vector<FitTask>& tasks, const FitWatch& watch)
{
    std::vector<DipoleFit> fits(tasks.size());
    std::vector<GroupMember> members;
    std::vector<std::size_t> numbers; // of the tasks that can be fitted
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        fits[task].refusal = too_few_readings(tasks[task].readings, tasks[task].ground);
        if (!fits[task].refusal.empty()) continue;
        GroupMember member;
        member.task = &tasks[task];
        member.apart = tasks[task].readings.origin - tasks.front().readings.origin;
        member.fields.resize(tasks[task].readings.count());
        member.own.resize(tasks[task].readings.count());
        member.strength = peak_near_pick(tasks[task]);
        members.push_back(std::move(member));
        numbers.push_back(task);
    }
    if (!fit_in_rounds(members, watch)) return {};
    for (std::size_t at = 0; at < members.size(); ++at) fits[numbers[at]] = final_fit(members, members[at]);
    share_backgrounds(fits);
    std::vector<double> altitudes;
    for (const FitTask& task : tasks) altitudes.push_back(task.ground.altitude);
    doubt_shared_places(fits, altitudes);
    for (std::size_t at = 0; at < tasks.size(); ++at) doubt_loose_place(fits[at], altitudes[at]);
    return fits;
}

std::vector<DipoleFit> fit_places(const FitSurvey& survey, const std::vector<FitPlace>& places,
                                  const FieldDirection& field, const FitWatch& watch)
{
    std::vector<DipoleFit> fits(places.size());
    std::size_t done = 0;
    for (const std::vector<std::size_t>& group : fit_groups(survey, places)) {
        std::vector<FitTask> tasks;
        tasks.reserve(group.size());
        for (const std::size_t place : group) tasks.push_back(fit_task(survey, places[place], field));
        std::vector<DipoleFit> fitted = fit_together(tasks, watch);
        if (fitted.empty()) return {};
        for (std::size_t at = 0; at < group.size(); ++at) fits[group[at]] = std::move(fitted[at]);
        done += group.size();
        if (watch.progress) watch.progress(done, places.size());
    }
    return fits;
}

} // namespace tarvo

#include "targets/group_fit.h"

#include "targets/projected_fit.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <thread>

namespace tarvo {

namespace {

constexpr double kAltitudesOfReadings = 3;
constexpr double kLeastRadius = 5; // metres
constexpr double kGreatestRadius = 60;
constexpr double kAltitudesOfNeighbours = 15; // a strong one bends a weak one's readings by nanoteslas from there

// One target of a group while it is worked on.
struct Member {
    const FitTask* task = nullptr;
    GridVector apart;               // metres, from the first task's origin to this one's
    std::vector<GridVector> fields; // nT, by reading: of all models of the group
    std::vector<GridVector> own;    // of this one
    std::optional<FittedPlace> fitted;
    std::vector<FittedPlace> others; // the search found them beside the fitted one
    double strength = 0;             // nT: how far the readings stand out near the pick
    double r2 = 0;
    bool is_settled = false; // nothing moved since it was fitted
};

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

// What the member's dipole has to explain: the readings less the others' models and less what the total field has
// beyond the part that is linear in all of them.
std::vector<double> values_for(const Member& member)
{
    const FitTask& task = *member.task;
    std::vector<double> values = task.readings.field;
    for (std::size_t reading = 0; reading < values.size(); ++reading) {
        const GridVector& all = member.fields[reading];
        values[reading] -= dot(task.ground.earth, all - member.own[reading]) +
                           beyond_linear(all, task.ground.earth, task.ground.strength);
    }
    return values;
}

// Whether a model at that distance bends the readings of a window by an amount that counts.
bool is_felt(const GridVector& moment, double distance, double radius)
{
    constexpr double kCounts = 0.01; // nT
    if (distance < 3 * radius) return true;
    const double away = distance - radius;
    const double part = radius / away;
    return 200 * length(moment) / (away * away * away) * 6 * part * part > kCounts;
}

// The member's model changes: all that feel it see the new one.
void take_model(std::vector<Member>& members, std::size_t changed, const FittedPlace& fitted)
{
    Member& source = members[changed];
    for (Member& member : members) {
        const GridVector shift = source.apart - member.apart;
        const double radius = member.task->radius;
        const auto add = [&](const Dipole& dipole, double factor) {
            if (!is_felt(dipole.moment, length(shift), radius)) return;
            add_dipole_field(member.task->readings, {dipole.place + shift, dipole.moment}, factor, member.fields);
        };
        if (&member == &source) {
            for (std::size_t at = 0; at < member.own.size(); ++at) {
                member.fields[at] = member.fields[at] - member.own[at];
                member.own[at] = {};
            }
            add_dipole_field(member.task->readings, fitted.dipole, 1, member.own);
            for (std::size_t at = 0; at < member.own.size(); ++at) {
                member.fields[at] = member.fields[at] + member.own[at];
            }
            continue;
        }
        if (source.fitted) add(source.fitted->dipole, -1);
        add(fitted.dipole, 1);
    }
    source.fitted = fitted;
}

// Whether a search over the whole neighbourhood is due, and not only a step from the last place.
bool needs_search(const Member& member, int round)
{
    constexpr double kPoorMatch = 0.9;
    constexpr int kLastSearch = 3;
    return !member.fitted || (round < kLastSearch && member.r2 < kPoorMatch);
}

// Neighbours whose moments a fit leaves open.
std::vector<GridVector> open_neighbours(const std::vector<Member>& members, const Member& member)
{
    static const double REACH = std::getenv("REACH") ? std::atof(std::getenv("REACH")) : 4;
    static const int GUESS = std::getenv("GUESS") ? std::atoi(std::getenv("GUESS")) : 0;
    std::vector<GridVector> places;
    for (const Member& other : members) {
        if (&other == &member) continue;
        if (!other.fitted && !GUESS) continue;
        const GridVector shift = other.apart - member.apart;
        GridVector place = shift;
        if (other.fitted)
            place = shift + other.fitted->dipole.place;
        else
            place.up = is_valid_channel(other.task->ground.seabed) ? other.task->ground.seabed
                                                                   : other.task->ground.sensors - 5;
        if (plan_length(place) > REACH * member.task->ground.altitude) continue;
        places.push_back(place);
    }
    return places;
}

// Fits one member anew. Returns how far its place moved, metres.
double refit(std::vector<Member>& members, std::size_t at, int round)
{
    constexpr int kStepsOfRound = 30;
    Member& member = members[at];
    const FitTask& task = *member.task;
    const std::vector<double> values = values_for(member);
    const std::vector<GridVector> neighbours = open_neighbours(members, member);
    ProjectedFit fit(task.readings, task.ground.earth, values, neighbours);
    FittedPlace best;
    if (needs_search(member, round)) {
        std::vector<FittedPlace> found = searched_places(fit, task.readings, values, task.ground, neighbours);
        best = found.front();
        member.others.assign(found.begin() + 1, found.end());
    } else {
        best = fit.refined(member.fitted->dipole.place, fit_bounds(task.readings, task.ground), kStepsOfRound);
    }
    member.r2 = 1 - best.square_sum / fit.signal();
    const double moved = member.fitted ? length(best.dipole.place - member.fitted->dipole.place) : task.radius;
    take_model(members, at, best);
    return moved;
}

// True: every one stayed where it was. False: stopped.
bool fit_in_rounds(std::vector<Member>& members, const FitWatch& watch)
{
    constexpr int kMostRounds = 20;
    constexpr double kStays = 0.001; // metres
    std::vector<std::size_t> order(members.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&members](std::size_t one, std::size_t other) {
        return members[one].strength > members[other].strength;
    });
    for (int round = 0; round < kMostRounds; ++round) {
        bool all_stayed = true;
        for (const std::size_t at : order) {
            if (watch.stop && watch.stop()) return false;
            if (members[at].is_settled) continue;
            const double moved = refit(members, at, round);
            members[at].is_settled = round > 0;
            if (moved <= kStays) continue;
            all_stayed = false;
            members[at].is_settled = false;
            for (Member& member : members) {
                const double distance = length(member.apart - members[at].apart);
                const GridVector& moment = members[at].fitted->dipole.moment;
                if (is_felt(moment, distance, member.task->radius)) member.is_settled = false;
            }
        }
        if (all_stayed) break;
    }
    return true;
}

DipoleFit final_fit(const std::vector<Member>& members, Member& member)
{
    const FitTask& task = *member.task;
    ProjectedFit fit(task.readings, task.ground.earth, values_for(member), open_neighbours(members, member));
    const FitBounds bounds = fit_bounds(task.readings, task.ground);
    FittedPlace best = fit.at(member.fitted->dipole.place);
    best.at_bound = member.fitted->at_bound;
    for (FittedPlace& other : member.others) other = fit.refined(other.dipole.place, bounds, 5);
    return described_fit(fit, task.readings, task.ground, best, member.others);
}

} // namespace

double altitude_near(const FitSurvey& survey, std::int32_t record)
{
    constexpr std::int32_t kAround = 5; // records on each side
    std::vector<double> altitudes;
    const std::int32_t last = std::min(record + kAround, survey.store().RecordCount);
    for (std::int32_t near = std::max(record - kAround, 1); near <= last; ++near) {
        const double altitude = survey.altitude(near);
        if (is_valid_channel(altitude) && altitude > 0) altitudes.push_back(altitude);
    }
    return altitudes.empty() ? kAltitudeWhenUnknown : median_or_null(std::move(altitudes));
}

FitTask fit_task(const FitSurvey& survey, const FitPlace& place, const FieldDirection& field)
{
    FitTask task;
    task.place = place;
    FitGround& ground = task.ground;
    ground.earth = field.unit;
    ground.strength = field.strength;
    ground.altitude = altitude_near(survey, place.record);
    ground.pick_east = place.east;
    ground.pick_north = place.north;
    task.radius =
        place.radius.value_or(std::clamp(kAltitudesOfReadings * ground.altitude, kLeastRadius, kGreatestRadius));
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
    if (!heights.empty()) ground.sensors = median_or_null(std::move(heights));
    ground.seabed = median_or_null(std::move(seabeds));
    return task;
}

std::vector<std::vector<std::size_t>> fit_groups(const FitSurvey& survey, const std::vector<FitPlace>& places)
{
    std::vector<double> reach;
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
    std::vector<Member> members;
    std::vector<std::size_t> numbers; // of the tasks that can be fitted
    for (std::size_t task = 0; task < tasks.size(); ++task) {
        fits[task].refusal = too_few_readings(tasks[task].readings, tasks[task].ground);
        if (!fits[task].refusal.empty()) continue;
        Member member;
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
    return fits;
}

std::vector<DipoleFit> fit_places(const FitSurvey& survey, const std::vector<FitPlace>& places,
                                  const FieldDirection& field, const FitWatch& watch)
{
    std::vector<DipoleFit> fits(places.size());
    std::size_t done = 0;
    for (const std::vector<std::size_t>& group : fit_groups(survey, places)) {
        std::vector<FitTask> tasks;
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

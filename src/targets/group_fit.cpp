#include "targets/group_fit.h"

#include "processing/altitude.h"
#include "targets/group_members.h"
#include "targets/group_rounds.h"
#include "targets/group_steps.h"
#include "targets/projected_fit.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

constexpr double kLeastRadius = 5; // metres
constexpr double kGreatestRadius = 60;

constexpr double kAltitudesOfNeighbours = 15; // a strong one bends a weak one's readings by nanoteslas from there

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
    for (std::size_t at = 0; at < members.size(); ++at) {
        if (watch.stop && watch.stop()) return {};
        fits[numbers[at]] = final_fit(members, members[at]);
    }
    share_backgrounds(fits);
    std::vector<double> altitudes;
    altitudes.reserve(tasks.size());
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
        for (const std::size_t place : group) {
            if (watch.stop && watch.stop()) return {};
            tasks.push_back(fit_task(survey, places[place], field));
        }
        std::vector<DipoleFit> fitted = fit_together(tasks, watch);
        if (fitted.empty()) return {};
        for (std::size_t at = 0; at < group.size(); ++at) fits[group[at]] = std::move(fitted[at]);
        done += group.size();
        if (watch.progress) watch.progress(done, places.size());
    }
    return fits;
}

} // namespace tarvo

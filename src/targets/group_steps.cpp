#include "targets/group_steps.h"

#include "targets/baselines.h"
#include "targets/column_sums.h"

#include <algorithm>

namespace tarvo {

namespace {

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

} // namespace

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

void clear_models(std::vector<GroupMember>& members, const std::vector<std::size_t>& set)
{
    for (const std::size_t at : set) {
        take_model(members, at, FittedPlace{});
        members[at].fitted.reset();
    }
}

bool exchange_models(std::vector<GroupMember>& members, const std::vector<std::size_t>& set)
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

} // namespace tarvo

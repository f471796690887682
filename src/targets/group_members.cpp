#include "targets/group_members.h"

namespace tarvo {

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

} // namespace tarvo

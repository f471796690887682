#pragma once

#include "targets/dipole_model.h"
#include "targets/earth_field.h"
#include "targets/group_fit.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace tarvo {

// Straight lines over dipoles, one reading every 0.25 m, 5 m above the ground.
struct MadeUpLines {
    std::vector<double> across = {-6, 0, 6}; // metres, of each line
    int sensors = 1;                         // 1 m apart across the line
    double turned = 0;                       // degrees that the lines run anticlockwise of east
    GridVector shift = {};                   // of all places
    bool reversed = false;                   // the lines come in the other order
    double reach = 15;                       // metres on each side of the middle
};

inline GridVector turned_by(const GridVector& v, double degrees)
{
    const double angle = degrees * 3.14159265358979323846 / 180;
    return {v.east * std::cos(angle) - v.north * std::sin(angle), v.east * std::sin(angle) + v.north * std::cos(angle),
            v.up};
}

// The fit of a pick at the lines' middle. The total field is that of the Earth and all dipoles, to the last digit; each
// line and sensor has an offset and a slope of its own. Heights count from the ground.
inline FitTask task_over(const std::vector<Dipole>& dipoles, const MadeUpLines& lines, const GridVector& pick = {})
{
    FitTask task;
    task.ground.earth = turned_by(field_unit(65, 4), lines.turned);
    task.ground.strength = 50'000;
    task.ground.seabed = lines.shift.up;
    task.ground.sensors = lines.shift.up + 5;
    const GridVector middle = turned_by(pick, lines.turned) + lines.shift;
    task.ground.pick_east = middle.east;
    task.ground.pick_north = middle.north;
    task.radius = lines.reach;
    FitReadings& readings = task.readings;
    readings.origin = {middle.east, middle.north, 0};
    double run = 0;
    for (std::size_t count = 0; count < lines.across.size(); ++count) {
        const std::size_t line = lines.reversed ? lines.across.size() - 1 - count : count;
        for (int sensor = 1; sensor <= lines.sensors; ++sensor) {
            readings.segments.push_back({static_cast<std::int32_t>(line + 1), sensor, readings.count(), 0});
            for (double along = -lines.reach; along <= lines.reach; along += 0.25) {
                const GridVector place = {pick.east + along, lines.across[line] + (sensor - 1), 5};
                GridVector field = task.ground.strength * field_unit(65, 4);
                for (const Dipole& dipole : dipoles) {
                    const GridVector d = place - dipole.place;
                    const double cube = 100 / (dot(d, d) * length(d));
                    field = field + cube * (3 * dot(dipole.moment, d) / dot(d, d) * d - dipole.moment);
                }
                readings.place.push_back(turned_by(place, lines.turned) + lines.shift - readings.origin);
                readings.field.push_back(length(field) + 3.0 * static_cast<double>(line) + 0.05 * along);
                readings.distance.push_back(run + along);
                readings.record.push_back(static_cast<std::int32_t>(run) + static_cast<std::int32_t>(along * 4));
                readings.way.push_back({});
                ++readings.segments.back().count;
            }
        }
        run += 1000;
    }
    return task;
}

} // namespace tarvo

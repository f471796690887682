#include "targets/fit_curves.h"

#include "targets/baselines.h"
#include "targets/dipole_model.h"
#include "targets/group_members.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

Dipole counted_from(const Dipole& dipole, const GridVector& origin)
{
    return {dipole.place - origin, dipole.moment};
}

// nT by reading: of the target itself, and of all that bend its readings.
struct ModelFields {
    std::vector<GridVector> own;
    std::vector<GridVector> all;
};

ModelFields model_fields(const FitTask& task, const FittedTargets& targets, std::size_t target)
{
    const FitReadings& readings = task.readings;
    ModelFields fields;
    fields.own.resize(readings.count());
    fields.all.resize(readings.count());
    for (std::size_t other = 0; other < targets.fits.size(); ++other) {
        const DipoleFit& fit = targets.fits[other];
        if (!fit.is_fitted()) continue;
        const Dipole dipole = counted_from(fit.dipole, readings.origin);
        if (other != target && !is_felt(dipole.moment, plan_length(dipole.place), task.radius)) continue;
        add_dipole_field(readings, dipole, 1, fields.all);
        if (other == target) add_dipole_field(readings, dipole, 1, fields.own);
    }
    return fields;
}

// Where a pass is nearest to a place in plan, as a distance along the track.
double passing_distance(const FitReadings& readings, const FitSegment& segment, const GridVector& place)
{
    double least = std::numeric_limits<double>::infinity();
    double passing = 0;
    for (std::size_t at = segment.first; at < segment.first + segment.count; ++at) {
        const double away = plan_length(readings.place[at] - place);
        if (away >= least) continue;
        least = away;
        passing = readings.distance[at];
    }
    return passing;
}

} // namespace

std::vector<FitCurve> fit_curves(const FitSurvey& survey, const FittedTargets& targets, std::size_t target)
{
    const FitTask task = fit_task(survey, targets.places[target], targets.field);
    const FitReadings& readings = task.readings;
    const DipoleFit& fit = targets.fits[target];
    const ModelFields fields = model_fields(task, targets, target);
    std::vector<double> model(readings.count(), 0.0);
    for (std::size_t at = 0; at < model.size(); ++at) model[at] = dot(task.ground.earth, fields.own[at]);
    std::vector<double> left = values_less(task, fields.all, {});
    Baselines(readings).take_out(left);
    const GridVector place = fit.is_fitted() ? fit.dipole.place - readings.origin : GridVector{};

    std::vector<FitCurve> curves;
    for (const FitSegment& segment : readings.segments) {
        FitCurve curve{segment.line, segment.sensor, {}, {}, {}, {}};
        const double passing = passing_distance(readings, segment, place);
        for (std::size_t at = segment.first; at < segment.first + segment.count; ++at) {
            curve.place.push_back(readings.origin + readings.place[at]);
            curve.along.push_back(readings.distance[at] - passing);
            curve.measured.push_back(model[at] + left[at]);
            if (fit.is_fitted()) curve.model.push_back(model[at]);
        }
        curves.push_back(std::move(curve));
    }
    return curves;
}

ErrorEllipse error_ellipse(const DipoleFit& fit)
{
    const double ee = fit.error.east * fit.error.east;
    const double nn = fit.error.north * fit.error.north;
    const double en = fit.east_north_covariance;
    const double middle = (ee + nn) / 2;
    const double spread = std::hypot((ee - nn) / 2, en);
    return {std::sqrt(std::max(middle + spread, 0.0)), std::sqrt(std::max(middle - spread, 0.0)),
            0.5 * std::atan2(2 * en, ee - nn)};
}

} // namespace tarvo

#include "targets/group_fit.h"
#include "targets/made_up_readings.h"

#include <gtest/gtest.h>
#include <unsupported/Eigen/NonLinearOptimization>
#include <unsupported/Eigen/NumericalDiff>

#include <cmath>

namespace tarvo {

namespace {

// Place, moment, and a constant and a slope for each segment: all of them unknowns, nothing projected out.
struct WholeProblem {
    using Scalar = double;
    using InputType = Eigen::VectorXd;
    using ValueType = Eigen::VectorXd;
    using JacobianType = Eigen::MatrixXd;
    enum { InputsAtCompileTime = Eigen::Dynamic, ValuesAtCompileTime = Eigen::Dynamic };

    const FitTask& task;
    int inputs() const { return 6 + 2 * static_cast<int>(task.readings.segments.size()); }
    int values() const { return static_cast<int>(task.readings.count()); }

    int operator()(const Eigen::VectorXd& x, Eigen::VectorXd& left) const
    {
        const FitReadings& readings = task.readings;
        for (std::size_t segment = 0; segment < readings.segments.size(); ++segment) {
            const FitSegment& part = readings.segments[segment];
            const auto unknown = static_cast<Eigen::Index>(6 + 2 * segment);
            for (std::size_t at = part.first; at < part.first + part.count; ++at) {
                const GridVector d = readings.place[at] - GridVector{x[0], x[1], x[2]};
                const GridVector moment = {x[3], x[4], x[5]};
                const double cube = 100 / (dot(d, d) * length(d));
                const GridVector field = cube * (3 * dot(moment, d) / dot(d, d) * d - moment);
                const double total = length(task.ground.strength * task.ground.earth + field) - task.ground.strength;
                left[static_cast<Eigen::Index>(at)] =
                    total + x[unknown] + x[unknown + 1] * (readings.distance[at] - readings.distance[part.first]) -
                    (readings.field[at] - 50'000);
            }
        }
        return 0;
    }
};

} // namespace

TEST(LeastSquares, AGeneralLibraryFindsTheSamePlace)
{
    FitTask task = task_over({{{1.3, -2.1, -0.4}, {20, -35, -60}}}, {.sensors = 2});
    for (std::size_t at = 0; at < task.readings.count(); ++at) { // noise of about 1 nT
        task.readings.field[at] += std::sin(12.9898 * static_cast<double>(at * at));
    }
    const DipoleFit fit = fit_together({task}, {}).front();

    Eigen::NumericalDiff<WholeProblem, Eigen::Central> problem(WholeProblem{task});
    Eigen::VectorXd x = Eigen::VectorXd::Zero(problem.inputs());
    x.head<6>() << 0, 0, -1, 0, 0, -50;
    Eigen::LevenbergMarquardt<decltype(problem)> search(problem);
    search.parameters.maxfev = 5000;
    search.parameters.xtol = search.parameters.ftol = 1e-14;
    search.minimize(x);
    EXPECT_LT(length(fit.dipole.place - GridVector{x[0], x[1], x[2]}), 2e-4);
    EXPECT_LT(length(fit.dipole.moment - GridVector{x[3], x[4], x[5]}), 0.02);
    EXPECT_NEAR(fit.rms, search.fnorm / std::sqrt(static_cast<double>(task.readings.count())), 1e-5);
}

} // namespace tarvo

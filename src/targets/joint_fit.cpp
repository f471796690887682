#include "targets/group_members.h"

#include "targets/baselines.h"
#include "targets/column_sums.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvo {

namespace {

constexpr std::size_t kUnknowns = 6;    // of a member: moment, then place
constexpr double kReachOfColumns = 1.5; // altitudes beyond a window: places farther away do not steer it

// The readings of one member, and the members whose unknowns they steer.
struct Window {
    const GroupMember* member = nullptr;
    Baselines baselines;
    std::vector<GridVector> far;      // nT, by reading: of the members that are not chosen
    std::vector<std::size_t> felt;    // among the chosen, from 0
    std::vector<std::size_t> steered; // likewise
};

// The unknowns of all chosen members; places count from their own origins.
using Models = std::vector<Dipole>;

Dipole seen_from(const Dipole& dipole, const GroupMember& owner, const GroupMember& window)
{
    return {dipole.place + (owner.apart - window.apart), dipole.moment};
}

// A symmetric matrix and what it is to be solved for.
struct NormalEquations {
    std::size_t size = 0;
    std::vector<double> matrix; // row by row
    std::vector<double> right;

    double& at(std::size_t row, std::size_t column) { return matrix[row * size + column]; }
    double at(std::size_t row, std::size_t column) const { return matrix[row * size + column]; }
};

// By Cholesky, in place; false: not positive definite.
bool solve(NormalEquations& equations)
{
    const std::size_t size = equations.size;
    for (std::size_t column = 0; column < size; ++column) {
        for (std::size_t row = column; row < size; ++row) {
            double rest = equations.at(row, column);
            const double* const a = &equations.matrix[row * size];
            const double* const b = &equations.matrix[column * size];
            for (std::size_t at = 0; at < column; ++at) rest -= a[at] * b[at];
            if (row > column) {
                equations.at(row, column) = rest / equations.at(column, column);
            } else if (rest > 0) {
                equations.at(row, row) = std::sqrt(rest);
            } else {
                return false;
            }
        }
    }
    std::vector<double>& x = equations.right;
    for (std::size_t row = 0; row < size; ++row) {
        for (std::size_t at = 0; at < row; ++at) x[row] -= equations.at(row, at) * x[at];
        x[row] /= equations.at(row, row);
    }
    for (std::size_t row = size; row-- > 0;) {
        for (std::size_t at = row + 1; at < size; ++at) x[row] -= equations.at(at, row) * x[at];
        x[row] /= equations.at(row, row);
    }
    return true;
}

class JointFit {
public:
    JointFit(const std::vector<GroupMember>& members, std::span<const std::size_t> chosen)
        : members_(members), chosen_(chosen.begin(), chosen.end())
    {
        for (const std::size_t at : chosen_) {
            models_.push_back(members[at].fitted->dipole);
            bounds_.push_back(fit_bounds(members[at].task->readings, members[at].task->ground));
        }
        for (const std::size_t at : chosen_) windows_.push_back(window_of(members[at]));
        square_sum_ = evaluate(models_, residuals_);
    }

    double square_sum() const { return square_sum_; }
    const Models& models() const { return models_; }
    const FitBounds& bounds(std::size_t at) const { return bounds_[at]; }

    void run(int most_steps)
    {
        constexpr double kSmallestStep = 2e-6; // metres
        constexpr double kLargestDamping = 1e8;
        constexpr double kFalls = 1e-7; // of the sum: less moves no place by more than a hundredth of its deviation
        double damping = 1e-3;
        NormalEquations equations = linearised();
        for (int steps = 0; steps < most_steps && damping < kLargestDamping; ++steps) {
            double moved = 0;
            const std::optional<Models> wanted = stepped(equations, damping, moved);
            if (!wanted) {
                damping = std::max(10 * damping, 1e-9);
                continue;
            }
            if (moved < kSmallestStep) break;
            std::vector<std::vector<double>> residuals;
            const double sum = evaluate(*wanted, residuals);
            if (sum < square_sum_) {
                const bool is_done = square_sum_ - sum < kFalls * square_sum_;
                models_ = *wanted;
                residuals_ = std::move(residuals);
                square_sum_ = sum;
                if (is_done) break;
                damping = std::max(damping / 10, 1e-12);
                equations = linearised();
            } else {
                damping *= 8;
            }
        }
    }

private:
    const GroupMember& member(std::size_t at) const { return members_[chosen_[at]]; }

    Window window_of(const GroupMember& owner) const
    {
        const FitTask& task = *owner.task;
        Window window{&owner, Baselines(task.readings), owner.fields, {}, {}};
        for (std::size_t at = 0; at < chosen_.size(); ++at) {
            const GridVector shift = member(at).apart - owner.apart;
            if (&member(at) != &owner && !is_felt(models_[at].moment, length(shift), task.radius)) continue;
            window.felt.push_back(at);
            add_dipole_field(task.readings, seen_from(models_[at], member(at), owner), -1, window.far);
            const double reach = task.radius + kReachOfColumns * task.ground.altitude;
            if (plan_length(shift) < reach) window.steered.push_back(at);
        }
        return window;
    }

    double evaluate(const Models& models, std::vector<std::vector<double>>& residuals) const
    {
        double sum = 0;
        for (const Window& window : windows_) {
            const FitTask& task = *window.member->task;
            std::vector<GridVector> fields = window.far;
            for (const std::size_t at : window.felt) {
                add_dipole_field(task.readings, seen_from(models[at], member(at), *window.member), 1, fields);
            }
            residuals.push_back(values_less(task, fields, {}));
            window.baselines.take_out(residuals.back());
            sum += inner_product(residuals.back(), residuals.back());
        }
        return sum;
    }

    NormalEquations linearised() const
    {
        NormalEquations equations;
        equations.size = kUnknowns * chosen_.size();
        equations.matrix.assign(equations.size * equations.size, 0);
        equations.right.assign(equations.size, 0);
        for (std::size_t at = 0; at < windows_.size(); ++at) add_window(windows_[at], residuals_[at], equations);
        return equations;
    }

    void add_window(const Window& window, const std::vector<double>& residuals, NormalEquations& equations) const
    {
        const FitTask& task = *window.member->task;
        std::vector<std::vector<double>> columns;
        for (const std::size_t at : window.steered) {
            const Dipole dipole = seen_from(models_[at], member(at), *window.member);
            ModelColumns by_moment;
            ModelColumns by_place;
            anomaly_columns(task.readings, task.ground.earth, dipole.place, by_moment);
            place_columns(task.readings, task.ground.earth, dipole, by_place);
            for (ModelColumns* const both : {&by_moment, &by_place}) {
                for (std::vector<double>& column : *both) {
                    window.baselines.take_out(column);
                    columns.push_back(std::move(column));
                }
            }
        }
        const auto unknown = [&window](std::size_t column) {
            return kUnknowns * window.steered[column / kUnknowns] + column % kUnknowns;
        };
        for (std::size_t row = 0; row < columns.size(); ++row) {
            equations.right[unknown(row)] += inner_product(columns[row], residuals);
            for (std::size_t column = 0; column <= row; ++column) {
                const double sum = inner_product(columns[row], columns[column]);
                equations.at(unknown(row), unknown(column)) += sum;
                if (row != column) equations.at(unknown(column), unknown(row)) += sum;
            }
        }
    }

    // The models one step on; nullopt: the step needs more damping.
    std::optional<Models> stepped(NormalEquations equations, double damping, double& moved) const
    {
        for (std::size_t at = 0; at < chosen_.size(); ++at) {
            hold_at_bounds(at, equations);
            for (const std::size_t part : {kUnknowns * at, kUnknowns * at + 3}) {
                const double mean =
                    (equations.at(part, part) + equations.at(part + 1, part + 1) + equations.at(part + 2, part + 2)) /
                    3;
                for (std::size_t axis = part; axis < part + 3; ++axis) equations.at(axis, axis) += damping * mean;
            }
        }
        if (!solve(equations)) return std::nullopt;
        Models models = models_;
        for (std::size_t at = 0; at < chosen_.size(); ++at) {
            const double* const step = &equations.right[kUnknowns * at];
            models[at].moment = models[at].moment + GridVector{step[0], step[1], step[2]};
            models[at].place = held_within(models[at].place + GridVector{step[3], step[4], step[5]}, bounds_[at]);
            moved = std::max(moved, length(models[at].place - models_[at].place));
        }
        return models;
    }

    // A place on a bound that the step would leave stays there along that axis.
    void hold_at_bounds(std::size_t at, NormalEquations& equations) const
    {
        const GridVector& place = models_[at].place;
        const std::array<std::array<double, 3>, 3> axes = {
            {{place.east, bounds_[at].low.east, bounds_[at].high.east},
             {place.north, bounds_[at].low.north, bounds_[at].high.north},
             {place.up, bounds_[at].low.up, bounds_[at].high.up}}};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const std::size_t unknown = kUnknowns * at + 3 + axis;
            double& right = equations.right[unknown];
            const auto& [here, low, high] = axes[axis];
            if (!(here <= low && right < 0) && !(here >= high && right > 0)) continue;
            const double kept = equations.at(unknown, unknown);
            for (std::size_t other = 0; other < equations.size; ++other) {
                equations.at(unknown, other) = equations.at(other, unknown) = 0;
            }
            equations.at(unknown, unknown) = kept;
            right = 0;
        }
    }

    const std::vector<GroupMember>& members_;
    std::vector<std::size_t> chosen_;
    Models models_;
    std::vector<FitBounds> bounds_;
    std::vector<Window> windows_;
    std::vector<std::vector<double>> residuals_; // nT, by window
    double square_sum_ = 0;
};

} // namespace

double fit_jointly(std::vector<GroupMember>& members, std::span<const std::size_t> chosen, int most_steps)
{
    JointFit fit(members, chosen);
    fit.run(most_steps);
    for (std::size_t at = 0; at < chosen.size(); ++at) {
        const Dipole& dipole = fit.models()[at];
        take_model(members, chosen[at], {dipole, 0, touches_bound(dipole.place, fit.bounds(at))});
    }
    return fit.square_sum();
}

} // namespace tarvo

#include "targets/projected_fit.h"

#include "targets/column_sums.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>

namespace tarvo {

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;
using Triple = std::array<double, 3>;

constexpr double kExplained = 1e-8; // what little of a column neighbours and baselines leave is no anomaly of its own

Triple as_triple(const GridVector& v)
{
    return {v.east, v.north, v.up};
}

GridVector as_vector(const Triple& t)
{
    return {t[0], t[1], t[2]};
}

// Cholesky's lower triangle; nullopt: not positive definite.
std::optional<Matrix> lower_triangle(const Matrix& symmetric)
{
    Matrix lower = {};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column <= row; ++column) {
            double rest = symmetric[row][column];
            for (std::size_t at = 0; at < column; ++at) rest -= lower[row][at] * lower[column][at];
            if (row != column) {
                lower[row][column] = rest / lower[column][column];
            } else if (rest > 1e-14 * symmetric[row][row]) {
                lower[row][row] = std::sqrt(rest);
            } else {
                return std::nullopt;
            }
        }
    }
    return lower;
}

Triple solved(const Matrix& lower, Triple right)
{
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t at = 0; at < row; ++at) right[row] -= lower[row][at] * right[at];
        right[row] /= lower[row][row];
    }
    for (std::size_t row = 3; row-- > 0;) {
        for (std::size_t at = row + 1; at < 3; ++at) right[row] -= lower[at][row] * right[at];
        right[row] /= lower[row][row];
    }
    return right;
}

} // namespace

GridVector held_within(const GridVector& place, const FitBounds& bounds)
{
    return {std::clamp(place.east, bounds.low.east, bounds.high.east),
            std::clamp(place.north, bounds.low.north, bounds.high.north),
            std::clamp(place.up, bounds.low.up, bounds.high.up)};
}

bool touches_bound(const GridVector& place, const FitBounds& bounds)
{
    constexpr double kMargin = 1e-6;
    const Triple at = as_triple(place), low = as_triple(bounds.low), high = as_triple(bounds.high);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (at[axis] - low[axis] < kMargin || high[axis] - at[axis] < kMargin) return true;
    }
    return false;
}

ProjectedFit::ProjectedFit(const FitReadings& readings, const GridVector& earth, std::vector<double> values,
                           std::span<const OpenNeighbour> neighbours)
    : readings_(readings), earth_(earth), baselines_(readings), values_(std::move(values))
{
    open_neighbours(neighbours);
    without_baselines(values_);
    signal_ = inner_product(values_, values_);
}

void ProjectedFit::open_neighbours(std::span<const OpenNeighbour> neighbours)
{
    const auto open = [this](ModelColumns& columns) {
        for (std::vector<double>& column : columns) {
            const double before = inner_product(column, column);
            without_baselines(column);
            const double square = inner_product(column, column);
            if (!(square > 1e-4 * before)) continue; // nothing but what others before it explain
            const double scale = 1 / std::sqrt(square);
            for (double& value : column) value *= scale;
            neighbours_.push_back(std::move(column));
        }
    };
    ModelColumns columns;
    for (const OpenNeighbour& neighbour : neighbours) {
        anomaly_columns(readings_, earth_, neighbour.dipole.place, columns);
        open(columns);
        if (!neighbour.may_move) continue;
        place_columns(readings_, earth_, neighbour.dipole, columns);
        open(columns);
    }
}

void ProjectedFit::without_baselines(std::vector<double>& column) const
{
    baselines_.take_out(column);
    for (const std::vector<double>& neighbour : neighbours_)
        take_off(column, inner_product(neighbour, column), neighbour);
}

// Modified Gram and Schmidt.
void ProjectedFit::take_out_earlier(std::vector<double>& column, std::size_t earlier) const
{
    for (std::size_t at = 0; at < earlier; ++at) take_off(column, inner_product(basis_[at], column), basis_[at]);
}

FittedPlace ProjectedFit::at(const GridVector& place)
{
    anomaly_columns(readings_, earth_, place, basis_);
    left_ = values_;
    Matrix upper = {}; // the columns are basis x upper
    Triple along = {};
    for (std::size_t column = 0; column < 3; ++column) {
        std::vector<double>& values = basis_[column];
        const double before = inner_product(values, values);
        without_baselines(values);
        for (std::size_t earlier = 0; earlier < column; ++earlier) {
            upper[earlier][column] = inner_product(basis_[earlier], values);
            take_off(values, upper[earlier][column], basis_[earlier]);
        }
        const double square = inner_product(values, values);
        const bool counts = square > kExplained * before && square > 0;
        upper[column][column] = counts ? std::sqrt(square) : 0;
        for (double& value : values) value = counts ? value / upper[column][column] : 0;
        along[column] = inner_product(values, left_);
        take_off(left_, along[column], values);
    }
    Triple moment = {};
    for (std::size_t row = 3; row-- > 0;) {
        if (upper[row][row] == 0) continue;
        double rest = along[row];
        for (std::size_t column = row + 1; column < 3; ++column) rest -= upper[row][column] * moment[column];
        moment[row] = rest / upper[row][row];
    }
    return {{place, as_vector(moment)}, inner_product(left_, left_), false};
}

// By the normal equations, which are less exact and never need the residuals.
double ProjectedFit::square_sum_at(const GridVector& place)
{
    anomaly_columns(readings_, earth_, place, basis_);
    Triple before = {};
    Triple along = {}; // the values are free of baselines and neighbours already
    Matrix normal = {};
    for (std::size_t row = 0; row < 3; ++row) {
        before[row] = inner_product(basis_[row], basis_[row]);
        baselines_.take_out(basis_[row]);
        along[row] = inner_product(basis_[row], values_);
        for (std::size_t column = 0; column <= row; ++column) {
            normal[row][column] = inner_product(basis_[row], basis_[column]);
        }
    }
    for (const std::vector<double>& neighbour : neighbours_) {
        Triple shared = {};
        for (std::size_t row = 0; row < 3; ++row) shared[row] = inner_product(neighbour, basis_[row]);
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column <= row; ++column) normal[row][column] -= shared[row] * shared[column];
        }
    }
    double sum = signal_;
    Matrix lower = {}; // Cholesky's, without the columns that do not count
    Triple explained = {};
    for (std::size_t column = 0; column < 3; ++column) {
        double square = normal[column][column];
        for (std::size_t at = 0; at < column; ++at) square -= lower[column][at] * lower[column][at];
        if (!(square > kExplained * before[column])) continue;
        const double scale = 1 / std::sqrt(square);
        for (std::size_t row = column + 1; row < 3; ++row) {
            double rest = normal[row][column];
            for (std::size_t at = 0; at < column; ++at) rest -= lower[row][at] * lower[column][at];
            lower[row][column] = rest * scale;
        }
        double rest = along[column];
        for (std::size_t at = 0; at < column; ++at) rest -= lower[column][at] * explained[at];
        explained[column] = rest * scale;
        sum -= explained[column] * explained[column];
    }
    return sum;
}

// What one step of the search sees at the place that at() was asked for last.
ProjectedFit::Step ProjectedFit::linearised(const Dipole& dipole)
{
    place_columns(readings_, earth_, dipole, change_);
    Step step;
    for (std::vector<double>& column : change_) {
        without_baselines(column);
        take_out_earlier(column, 3);
    }
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column <= row; ++column) {
            step.normal[row][column] = step.normal[column][row] = inner_product(change_[row], change_[column]);
        }
        step.gradient[row] = inner_product(change_[row], left_);
    }
    return step;
}

FittedPlace ProjectedFit::refined(const GridVector& start, const FitBounds& bounds, int most_steps)
{
    constexpr double kSmallestStep = 1e-6; // metres
    constexpr double kLargestDamping = 1e12;
    FittedPlace best = at(held_within(start, bounds));
    double damping = 1e-3; // in parts of the mean curvature, alike along all axes: no axis is a special one
    Step step = linearised(best.dipole);
    for (int steps = 0; steps < most_steps && damping < kLargestDamping; ++steps) {
        Matrix normal = step.normal;
        Triple gradient = step.gradient;
        const double curvature = (normal[0][0] + normal[1][1] + normal[2][2]) / 3;
        if (!(curvature > 0)) break;
        const Triple here = as_triple(best.dipole.place);
        const Triple low = as_triple(bounds.low), high = as_triple(bounds.high);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            normal[axis][axis] += damping * curvature;
            const bool leaves =
                (here[axis] <= low[axis] && gradient[axis] < 0) || (here[axis] >= high[axis] && gradient[axis] > 0);
            if (!leaves) continue; // else it stays on the bound and the others are searched for
            for (std::size_t other = 0; other < 3; ++other) normal[axis][other] = normal[other][axis] = 0;
            normal[axis][axis] = curvature;
            gradient[axis] = 0;
        }
        const std::optional<Matrix> lower = lower_triangle(normal);
        if (!lower) {
            damping = std::max(damping * 10, 1e-9);
            continue;
        }
        const GridVector wanted = best.dipole.place + as_vector(solved(*lower, gradient));
        const GridVector place = held_within(wanted, bounds);
        const double moved = length(place - best.dipole.place);
        if (moved < kSmallestStep) break;
        const FittedPlace tried = at(place);
        if (tried.square_sum < best.square_sum) {
            best = tried;
            damping = std::max(damping / 10, 1e-12);
            step = linearised(best.dipole);
        } else {
            damping *= 8;
        }
    }
    best.at_bound = touches_bound(best.dipole.place, bounds);
    return best;
}

// The sum over records of the outer products of how far their residuals, of all sensors, move the place. What the
// sensors of a record have in common, as an error of the fish's position, counts once and not once a sensor (White
// 1980, Econometrica 48, 817-838; Liang and Zeger 1986, Biometrika 73, 13-22).
std::array<std::array<double, 3>, 3> ProjectedFit::record_spread(const Matrix& lower, double lag_correlation) const
{
    std::vector<std::size_t> order(left_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [this](std::size_t one, std::size_t other) {
        return std::pair(readings_.record[one], one) < std::pair(readings_.record[other], other);
    });
    Matrix spread = {};
    Triple pull = {};
    double records = 0;
    for (std::size_t at = 0; at < order.size(); ++at) {
        const std::size_t reading = order[at];
        for (std::size_t axis = 0; axis < 3; ++axis) pull[axis] += change_[axis][reading] * left_[reading];
        const bool ends = at + 1 == order.size() || readings_.record[order[at + 1]] != readings_.record[reading];
        if (!ends) continue;
        const Triple moves = solved(lower, pull);
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) spread[row][column] += moves[row] * moves[column];
        }
        pull = {};
        ++records;
    }
    // Residuals that hang together are worth fewer independent ones, of which the unknowns take their share.
    const double lag = std::clamp(lag_correlation, 0.0, 0.99);
    const double independent = records * (1 - lag) / (1 + lag);
    const auto unknowns = static_cast<double>(6 + 2 * readings_.segments.size() + neighbours_.size());
    const double scale = independent / std::max(independent - unknowns, independent / 4);
    for (auto& row : spread) {
        for (double& value : row) value *= scale;
    }
    return spread;
}

// Each as if it were alone.
CurvedBackgrounds ProjectedFit::curved_backgrounds(const Matrix& lower) const
{
    const double variance = inner_product(left_, left_) / static_cast<double>(left_.size());
    CurvedBackgrounds backgrounds;
    std::vector<double> column(left_.size());
    for (std::size_t curve = 0; curve < backgrounds.size(); ++curve) {
        for (std::size_t at = 0; at < column.size(); ++at) {
            const GridVector& place = readings_.place[at];
            const double first = curve == 2 ? place.north : place.east;
            column[at] = first * (curve == 0 ? place.east : place.north);
        }
        const double before = inner_product(column, column);
        without_baselines(column);
        take_out_earlier(column, 3);
        Triple along = {};
        for (std::size_t axis = 0; axis < 3; ++axis) along[axis] = inner_product(change_[axis], column);
        const Triple moves = solved(lower, along);
        for (std::size_t axis = 0; axis < 3; ++axis) take_off(column, moves[axis], change_[axis]);
        const double square = inner_product(column, column);
        if (!(square > 1e-12 * before)) continue;
        backgrounds[curve] = {inner_product(column, left_) / square, std::sqrt(variance / square), as_vector(moves)};
    }
    return backgrounds;
}

FitQuality ProjectedFit::quality(const FittedPlace& fitted)
{
    FitQuality quality;
    const FittedPlace here = at(fitted.dipole.place);
    quality.residuals = left_;
    const Step step = linearised(here.dipole);

    double products = 0;
    double squares = 0;
    for (const FitSegment& segment : readings_.segments) {
        for (std::size_t at = segment.first + 1; at < segment.first + segment.count; ++at) {
            products += left_[at] * left_[at - 1];
            squares += (left_[at] * left_[at] + left_[at - 1] * left_[at - 1]) / 2;
        }
    }
    if (squares > 0) quality.lag_correlation = products / squares;

    Matrix normal = step.normal;
    const double curvature = (normal[0][0] + normal[1][1] + normal[2][2]) / 3;
    // a direction that the readings say nothing about is unknown by at most kilometres
    for (std::size_t axis = 0; axis < 3; ++axis) normal[axis][axis] += 1e-12 * curvature;
    const std::optional<Matrix> lower = lower_triangle(normal);
    if (!lower) return quality;
    quality.place_covariance = record_spread(*lower, quality.lag_correlation);
    quality.background = curved_backgrounds(*lower);
    return quality;
}

} // namespace tarvo

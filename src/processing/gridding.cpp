#include "processing/gridding.h"

#include "text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>

namespace tarvo {

namespace {

constexpr double kMostCells = 25e6;
constexpr std::int32_t kMostRadiusCells = 50;
constexpr double kAutomaticRadius = 5;    // cells
constexpr double kRadiusTolerance = 1e-9; // cells
constexpr double kCellsAlongSide = 500;   // of an automatic cell, along the longer side
constexpr double kSmallestCell = 0.01;    // metres
constexpr std::int32_t kNowhere = -1;
constexpr const char* kNoDataText = "-99999"; // no residual, field or height comes near it

struct Extent {
    double x_min = std::numeric_limits<double>::max();
    double x_max = std::numeric_limits<double>::lowest();
    double y_min = std::numeric_limits<double>::max();
    double y_max = std::numeric_limits<double>::lowest();
    std::int64_t points = 0;
};

bool is_point(const GridPoints& points, std::int32_t record)
{
    return is_valid_channel(points.easting[record]) && is_valid_channel(points.northing[record]) &&
           is_valid_sensor(points.values[record]);
}

Extent extent_of(std::span<const GridPoints> all)
{
    Extent extent;
    for (const GridPoints& points : all) {
        for (std::int32_t record = 1; record <= points.count; ++record) {
            if (!is_point(points, record)) continue;
            extent.x_min = std::min(extent.x_min, points.easting[record]);
            extent.x_max = std::max(extent.x_max, points.easting[record]);
            extent.y_min = std::min(extent.y_min, points.northing[record]);
            extent.y_max = std::max(extent.y_max, points.northing[record]);
            ++extent.points;
        }
    }
    return extent;
}

// 1, 2 or 5 times a power of ten, the next from `least` up.
double round_length(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least) return factor * power;
    }
    return 10 * power;
}

double cell_side(const Extent& extent, double wanted)
{
    if (wanted > 0) return wanted;
    const double longer = std::max(extent.x_max - extent.x_min, extent.y_max - extent.y_min);
    return round_length(std::max(longer / kCellsAlongSide, kSmallestCell));
}

FieldGrid empty_grid(const Extent& extent, double cell)
{
    FieldGrid grid;
    grid.cell = cell;
    grid.x_min = std::floor(extent.x_min / cell) * cell;
    grid.y_max = (std::floor(extent.y_max / cell) + 1) * cell;
    const double y_min = std::floor(extent.y_min / cell) * cell;
    const double x_max = (std::floor(extent.x_max / cell) + 1) * cell;
    const double columns = std::nearbyint((x_max - grid.x_min) / cell);
    const double rows = std::nearbyint((grid.y_max - y_min) / cell);
    if (!(columns * rows <= kMostCells)) return grid;
    grid.columns = static_cast<std::int32_t>(columns);
    grid.rows = static_cast<std::int32_t>(rows);
    grid.values.assign(static_cast<std::size_t>(columns * rows), kNull);
    return grid;
}

std::int32_t cell_of(const FieldGrid& grid, double easting, double northing)
{
    const auto column = static_cast<std::int32_t>((easting - grid.x_min) / grid.cell);
    const auto row = static_cast<std::int32_t>((grid.y_max - northing) / grid.cell);
    return std::clamp(row, 0, grid.rows - 1) * grid.columns + std::clamp(column, 0, grid.columns - 1);
}

double median_between(std::vector<double>& values, std::size_t first, std::size_t end)
{
    double* const begin = values.data() + first;
    const std::size_t count = end - first;
    double* const middle = begin + count / 2;
    std::nth_element(begin, middle, begin + count);
    return count % 2 == 1 ? *middle : (*std::max_element(begin, middle) + *middle) / 2;
}

// The points' values sorted by their cells, and with them the medians.
void take_medians(FieldGrid& grid, std::span<const GridPoints> all, const std::function<void()>& pause)
{
    std::vector<std::int32_t> cells; // of all records, one array after the other
    std::vector<std::uint32_t> ends(grid.values.size() + 1, 0);
    for (const GridPoints& points : all) {
        for (std::int32_t record = 1; record <= points.count; ++record) {
            const bool counts = is_point(points, record);
            cells.push_back(counts ? cell_of(grid, points.easting[record], points.northing[record]) : kNowhere);
            if (counts) ++ends[static_cast<std::size_t>(cells.back())];
        }
        if (pause) pause();
    }
    std::uint32_t sum = 0;
    for (std::uint32_t& end : ends) { // counts become the places where the next value of a cell goes
        const std::uint32_t count = end;
        end = sum;
        sum += count;
    }
    std::vector<double> values(sum);
    std::size_t at = 0;
    for (const GridPoints& points : all) {
        for (std::int32_t record = 1; record <= points.count; ++record) {
            const std::int32_t cell = cells[at++];
            if (cell != kNowhere) values[ends[static_cast<std::size_t>(cell)]++] = points.values[record];
        }
        if (pause) pause();
    }
    std::size_t first = 0;
    for (std::size_t cell = 0; cell < grid.values.size(); ++cell) {
        const std::size_t end = ends[cell];
        if (end > first) grid.values[cell] = median_between(values, first, end);
        first = end;
    }
}

// One row of the disk around a cell: weights 1 / distance in cells, from column -reach to reach.
struct DiskRow {
    std::int32_t reach;
    std::vector<double> weights;
};

// Rows -radius to radius.
std::vector<DiskRow> disk_of(double radius)
{
    std::vector<DiskRow> disk;
    const auto rows = static_cast<std::int32_t>(radius);
    for (std::int32_t y = -rows; y <= rows; ++y) {
        DiskRow row = {static_cast<std::int32_t>(std::sqrt(radius * radius - 1.0 * y * y)), {}};
        for (std::int32_t x = -row.reach; x <= row.reach; ++x) {
            row.weights.push_back(x == 0 && y == 0 ? 0.0 : 1 / std::hypot(x, y));
        }
        disk.push_back(std::move(row));
    }
    return disk;
}

struct Sums {
    std::vector<double> weights;
    std::vector<double> values;
};

// Adds a cell's value to all cells in its disk.
void spread(const FieldGrid& grid, const std::vector<DiskRow>& disk, std::int32_t row, std::int32_t column, Sums& sums)
{
    const auto radius = static_cast<std::int32_t>(disk.size() / 2);
    const double value = grid.values[static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                                     static_cast<std::size_t>(column)];
    const std::int32_t last_row = std::min(grid.rows - 1, row + radius);
    for (std::int32_t y = std::max(0, row - radius); y <= last_row; ++y) {
        const DiskRow& part = disk[static_cast<std::size_t>(y - row + radius)];
        const std::int32_t from = std::max(0, column - part.reach);
        const std::int32_t count = std::min(grid.columns - 1, column + part.reach) - from + 1;
        const std::size_t start =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(grid.columns) + static_cast<std::size_t>(from);
        const double* const weights = part.weights.data() + (from - column + part.reach);
        double* const weight_sums = sums.weights.data() + start;
        double* const value_sums = sums.values.data() + start;
        for (std::int32_t i = 0; i < count; ++i) {
            weight_sums[i] += weights[i];
            value_sums[i] += weights[i] * value;
        }
    }
}

void fill_gaps(FieldGrid& grid, double radius, const std::function<void()>& pause)
{
    if (radius < 1) return;
    const std::vector<DiskRow> disk = disk_of(radius);
    Sums sums = {std::vector<double>(grid.values.size(), 0.0), std::vector<double>(grid.values.size(), 0.0)};
    std::size_t cell = 0;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t column = 0; column < grid.columns; ++column, ++cell) {
            if (is_valid_sensor(grid.values[cell])) spread(grid, disk, row, column, sums);
        }
        if (pause) pause();
    }
    for (cell = 0; cell < grid.values.size(); ++cell) {
        if (is_valid_sensor(grid.values[cell]) || !(sums.weights[cell] > 0)) continue;
        grid.values[cell] = sums.values[cell] / sums.weights[cell];
    }
}

std::string size_refusal(const Extent& extent, double cell)
{
    const double area = (extent.x_max - extent.x_min + cell) * (extent.y_max - extent.y_min + cell);
    return "A grid with cells of " + format_shortest(cell) + " m would have more than " +
           grouped_digits(format_fixed(kMostCells, 0)) + " of them here; take cells of at least " +
           format_shortest(round_length(std::sqrt(area / kMostCells))) + " m";
}

} // namespace

Gridding make_grid(std::span<const GridPoints> points, const GridSize& size, const std::function<void()>& pause)
{
    Gridding gridding;
    const Extent extent = extent_of(points);
    if (extent.points == 0) {
        gridding.refusal = "There is nothing to make a grid of: no record has both a position and a value";
        return gridding;
    }
    const double cell = cell_side(extent, size.cell);
    const double radius = size.fill_radius > 0 ? size.fill_radius / cell + kRadiusTolerance : kAutomaticRadius;
    if (radius > kMostRadiusCells + 2 * kRadiusTolerance) {
        gridding.refusal = "A grid is filled from at most " + std::to_string(kMostRadiusCells) +
                           " cells away: " + format_shortest(size.fill_radius) + " m is more than that with cells of " +
                           format_shortest(cell) + " m";
        return gridding;
    }
    gridding.grid = empty_grid(extent, cell);
    if (gridding.grid.is_empty()) {
        gridding.refusal = size_refusal(extent, cell);
        return gridding;
    }
    take_medians(gridding.grid, points, pause);
    fill_gaps(gridding.grid, radius, pause);
    return gridding;
}

void write_esri_grid(const FieldGrid& grid, const std::function<void(std::string_view)>& sink)
{
    constexpr std::size_t kBytesAtOnce = 1 << 16;
    std::string text = "ncols " + std::to_string(grid.columns) + "\nnrows " + std::to_string(grid.rows) +
                       "\nxllcorner " + format_shortest(grid.x_min) + "\nyllcorner " +
                       format_shortest(grid.y_max - grid.rows * grid.cell) + "\ncellsize " +
                       format_shortest(grid.cell) + "\nNODATA_value " + kNoDataText + '\n';
    std::size_t cell = 0;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t column = 0; column < grid.columns; ++column, ++cell) {
            if (column > 0) text += ' ';
            const double value = grid.values[cell];
            char digits[32];
            if (is_valid_sensor(value)) {
                text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
            } else {
                text += kNoDataText;
            }
        }
        text += '\n';
        if (text.size() < kBytesAtOnce) continue;
        sink(text);
        text.clear();
    }
    sink(text);
}

} // namespace tarvo

#include "processing/gridding.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace tarvo {
namespace {

struct Points {
    std::vector<double> easting = {0}; // element 0 unused
    std::vector<double> northing = {0};
    std::vector<double> values = {0};

    void add(double x, double y, double value)
    {
        easting.push_back(x);
        northing.push_back(y);
        values.push_back(value);
    }
    Gridding grid(const GridSize& size) const
    {
        const GridPoints points[] = {
            {easting.data(), northing.data(), values.data(), static_cast<std::int32_t>(values.size()) - 1}};
        return make_grid(points, size);
    }
};

std::string esri_text(const FieldGrid& grid)
{
    std::string text;
    write_esri_grid(grid, [&text](std::string_view part) { text += part; });
    return text;
}

TEST(Gridding, TakesMediansAndFillsByInverseDistance)
{
    Points points;
    points.add(0.5, 10.5, 4); // the lower left cell
    points.add(0, 10, 1);     // its corner belongs to it
    points.add(0.9, 10.9, 9);
    points.add(2.5, 10.1, 10);
    points.add(2.5, 10.9, 20); // two values: their mean
    points.add(0.5, 12.999, -3);
    points.add(1.5, kNull, 5); // no points
    points.add(1.5, 11.5, kNull);
    const Gridding gridding = points.grid({1, 1});
    ASSERT_EQ(gridding.refusal, "");
    // Between 4 and 15 their mean, between -3 and 4 theirs; the rest has no neighbour within a metre.
    EXPECT_EQ(esri_text(gridding.grid), "ncols 3\nnrows 3\nxllcorner 0\nyllcorner 10\ncellsize 1\nNODATA_value -99999\n"
                                        "-3 -3 -99999\n0.5 -99999 15\n4 9.5 15\n");
    const FieldGrid wide = points.grid({1, std::sqrt(5.0)}).grid; // a knight's move away is near enough
    const double far = 1 / std::sqrt(5.0);
    EXPECT_DOUBLE_EQ(wide.values[1], (-3 + far * (4 + 15)) / (1 + 2 * far));
    EXPECT_DOUBLE_EQ(wide.values[4], (-3 + 4 + 15) / 3.0); // all three at its corners
    EXPECT_DOUBLE_EQ(wide.values[2], (-3 + 15) / 2.0);     // both two cells away
    EXPECT_EQ(wide.values[8], 15);                         // points are not smoothed
}

TEST(Gridding, RefusesWhatCannotBeMade)
{
    Points none;
    EXPECT_EQ(none.grid({}).refusal, "There is nothing to make a grid of: no record has both a position and a value");
    Points far;
    far.add(0, 0, 1);
    EXPECT_EQ(far.grid({}).refusal, ""); // a single point: the smallest cells
    far.add(9999.5, 9999.5, 1);
    EXPECT_EQ(far.grid({1, 0}).refusal, "A grid with cells of 1 m would have more than 25,000,000 of them here; take "
                                        "cells of at least 5 m");
    EXPECT_EQ(far.grid({10, 501}).refusal,
              "A grid is filled from at most 50 cells away: 501 m is more than that with cells of 10 m");
    EXPECT_EQ(far.grid({10, 500}).refusal, "");
    EXPECT_EQ(far.grid({}).grid.cell, 20); // 10 km along 500 cells
}

} // namespace
} // namespace tarvo

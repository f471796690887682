#include "geo/proj_projections.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

namespace tarvo {
namespace {

constexpr double kDegree = 3.14159265358979323846 / 180;

// Metres from the equator to a latitude along a meridian of WGS 84, by Simpson's rule over the radius of curvature.
double meridian_arc(double latitude)
{
    constexpr double a = 6378137.0;
    constexpr double flattening = 1 / 298.257223563;
    constexpr double e2 = flattening * (2 - flattening);
    const auto radius = [](double phi) { return a * (1 - e2) / std::pow(1 - e2 * std::pow(std::sin(phi), 2), 1.5); };
    constexpr int steps = 2000;
    const double h = latitude * kDegree / steps;
    double sum = radius(0) + radius(latitude * kDegree);
    for (int step = 1; step < steps; ++step) sum += radius(step * h) * (step % 2 == 1 ? 4 : 2);
    return sum * h / 3;
}

TEST(Projections, TakeLongitudeAndLatitudeToMetresOfTheGridAndBack)
{
    struct Case {
        const char* label;
        const char* grid;
        double longitude, latitude, easting, northing, tolerance;
    };
    const Case cases[] = {
        {"on the central meridian", "UTM 32N", 9, 54, 500000, 0.9996 * meridian_arc(54), 1e-3},
        {"south counts from ten million", "EPSG:32732", 9, -54, 500000, 1e7 - 0.9996 * meridian_arc(54), 1e-3},
        {"a well-known tower in Toronto, published to the metre", " utm 17 n ", -(79 + 23 / 60.0 + 13.7 / 3600),
         43 + 38 / 60.0 + 33.24 / 3600, 630084, 4833438, 1},
        {"a text of PROJ's own", "+proj=tmerc +lon_0=10 +k=1 +x_0=500000 +datum=WGS84", 10, 50, 500000,
         meridian_arc(50), 1e-3},
        {"with a height system beside it", "EPSG:25832+5783", 9, 54, 500000, 0.9996 * meridian_arc(54), 1e-3},
    };
    const ProjProjections grids;
    for (const Case& c : cases) {
        const std::unique_ptr<Projection> grid = grids.open(c.grid);
        const GridCoordinates metres = grid->to_grid({c.longitude, c.latitude});
        EXPECT_NEAR(metres.easting, c.easting, c.tolerance) << c.label;
        EXPECT_NEAR(metres.northing, c.northing, c.tolerance) << c.label;
        const GeographicPlace back = grid->to_geographic(metres);
        EXPECT_NEAR(back.longitude, c.longitude, 1e-9) << c.label;
        EXPECT_NEAR(back.latitude, c.latitude, 1e-9) << c.label;
    }
    const std::unique_ptr<Projection> grid = grids.open("UTM 32N");
    EXPECT_EQ(grid->name(), "WGS 84 / UTM zone 32N");
    EXPECT_FALSE(grid->to_grid({kNull, 54}).is_known());
    EXPECT_FALSE(grid->to_grid({9, 95}).is_known()) << "beyond the pole";
    EXPECT_FALSE(grid->to_geographic({1e40, 0}).is_known());
    EXPECT_TRUE(grid->to_grid({9, 54}).is_known()) << "a place without an image spoils nothing behind it";
}

TEST(Projections, RefuseWhatIsNoGridInMetresWithTheReason)
{
    struct Case {
        const char* grid;
        const char* reason;
    };
    const Case cases[] = {
        {"", "no survey grid is given"},
        {"UTM 61N", "is not known"},
        {"UTM 0N", "is not known"},
        {"nonsense", "is not known"},
        {"EPSG:4326", "is not a projected one"},
        {"EPSG:2229", "does not count in metres"}, // California in US survey feet
    };
    for (const Case& c : cases) {
        try {
            ProjProjections().open(c.grid);
            ADD_FAILURE() << c.grid;
        } catch (const std::runtime_error& refusal) {
            EXPECT_NE(std::string(refusal.what()).find(c.reason), std::string::npos)
                << c.grid << ": " << refusal.what();
        }
    }
}

TEST(Projections, AreFoundByWordsOfTheirNamesAndNumbers)
{
    const ProjProjections grids;
    const std::vector<GridCode> etrs = grids.search("etrs89 utm 32", 5);
    ASSERT_FALSE(etrs.empty());
    EXPECT_EQ(etrs[0].code, "EPSG:25832");
    EXPECT_LE(etrs.size(), 5U);
    const std::vector<GridCode> number = grids.search("32635", 5);
    ASSERT_EQ(number.size(), 1U);
    EXPECT_EQ(number[0].name, "WGS 84 / UTM zone 35N");
    for (const GridCode& grid : grids.search("2229", 50)) EXPECT_NE(grid.code, "EPSG:2229") << "feet would be refused";
    EXPECT_TRUE(grids.search("  ", 5).empty());
}

} // namespace
} // namespace tarvo

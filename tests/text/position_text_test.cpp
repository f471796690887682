#include "text/position_text.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

constexpr GeoAxis kEastWest = GeoAxis::longitude;
constexpr GeoAxis kNorthSouth = GeoAxis::latitude;

TEST(PositionText, ReadsDegreesAndNmea)
{
    struct Case {
        DegreesReader read;
        const char* field;
        const char* next;
        GeoAxis axis;
        std::optional<double> expected;
    };
    const auto none = std::nullopt;
    constexpr double kDms = 56 + 51 / 60.0 + 44.25 / 3600.0;
    const Case cases[] = {
        {read_degrees, " 56.862286 ", "24.1", kNorthSouth, 56.862286},
        {read_degrees, "-139.139222332", "", kEastWest, -139.139222332},
        {read_degrees, "254.764", "", kEastWest, 254.764 - 360},
        {read_degrees, "360", "", kEastWest, 0.0},
        {read_degrees, "360.1", "", kEastWest, none},
        {read_degrees, "-180.1", "", kEastWest, none},
        {read_degrees, "181 W", "", kEastWest, none},
        {read_degrees, "90", "", kNorthSouth, 90.0},
        {read_degrees, "90.0001", "", kNorthSouth, none},
        {read_degrees, "90 00 01", "", kNorthSouth, none},
        {read_degrees, "56.5s", "", kNorthSouth, -56.5},
        {read_degrees, "S56.5", "", kNorthSouth, -56.5},
        {read_degrees, "E 24.5", "", kEastWest, 24.5},
        {read_degrees, "24.5", " w ", kEastWest, -24.5},
        {read_degrees, "24.5", "East", kEastWest, 24.5},
        {read_degrees, "24.5", "N", kEastWest, none},
        {read_degrees, "24.5N", "", kEastWest, none},
        {read_degrees, "E24.5E", "", kEastWest, none},
        {read_degrees, "24.5E", "E", kEastWest, none},
        {read_degrees, "-24.5E", "", kEastWest, none},
        {read_degrees, "-24.5", "E", kEastWest, none},
        {read_degrees, "+24.5E", "", kEastWest, 24.5},
        {read_degrees, "56 51 44.25", "", kNorthSouth, kDms},
        {read_degrees, "56:51:44.25", "", kNorthSouth, kDms},
        {read_degrees,
         "56\xC2\xB0"
         "51'44.25\"N",
         "", kNorthSouth, kDms},
        {read_degrees, "56\xB0 51\xE2\x80\xB2 44.25\xE2\x80\xB3 S", "", kNorthSouth, -kDms},
        {read_degrees, "56\xC2\xB0 51\xE2\x80\x99 44.25", "N", kNorthSouth, kDms}, // the last mark may be missing
        {read_degrees,
         "56\xC2\xB0"
         "30",
         "", kNorthSouth, 56.5},
        {read_degrees, "56.5\xC2\xB0", "", kNorthSouth, 56.5},
        {read_degrees, "-0 30", "", kNorthSouth, -0.5},
        {read_degrees, "56.5 30", "", kNorthSouth, none},
        {read_degrees, "56 30.5 10", "", kNorthSouth, none},
        {read_degrees, "56 60", "", kNorthSouth, none},
        {read_degrees, "56 30 60", "", kNorthSouth, none},
        {read_degrees, "56 30 10 5", "", kNorthSouth, none},
        {read_degrees, "56'30", "", kNorthSouth, none}, // degrees with the mark of minutes
        {read_degrees, "56-30", "", kNorthSouth, none},
        {read_degrees, "N", "", kNorthSouth, none},
        {read_degrees, "", "", kNorthSouth, none},
        {read_degrees, "abc", "", kNorthSouth, none},
        {read_nmea_degrees, "5651.737132", "N", kNorthSouth, 56 + 51.737132 / 60},
        {read_nmea_degrees, "02406.816782e", "", kEastWest, 24 + 6.816782 / 60},
        {read_nmea_degrees, "13908.35 W", "12", kEastWest, -(139 + 8.35 / 60)},
        {read_nmea_degrees, "51.5", "S", kNorthSouth, -51.5 / 60},
        {read_nmea_degrees, "5660.0", "N", kNorthSouth, none},
        {read_nmea_degrees, "9000.001", "N", kNorthSouth, none},
        {read_nmea_degrees, "5651.7", "", kNorthSouth, none},
        {read_nmea_degrees, "-5651.7", "N", kNorthSouth, none},
        {read_nmea_degrees, "5651.7", "E", kNorthSouth, none},
        {read_nmea_degrees, "5651.7N", "N", kNorthSouth, none},
        {read_nmea_degrees, "56 51.7", "N", kNorthSouth, none},
    };
    for (const Case& c : cases) {
        const std::optional<double> degrees = c.read(c.field, c.next, c.axis);
        ASSERT_EQ(degrees.has_value(), c.expected.has_value()) << c.field << " | " << c.next;
        EXPECT_NEAR(degrees.value_or(0), c.expected.value_or(0), 1e-12) << c.field << " | " << c.next;
    }
}

TEST(PositionText, OneNoneOrTwoZerosAreNoPosition)
{
    EXPECT_FALSE(geo_position(24.0, std::nullopt));
    EXPECT_FALSE(geo_position(std::nullopt, 56.0));
    EXPECT_FALSE(geo_position(0.0, -0.0));
    ASSERT_TRUE(geo_position(0.0, 51.5));
    EXPECT_EQ(geo_position(0.0, 51.5)->latitude, 51.5);
}

} // namespace
} // namespace tarvo

#include "targets/igrf.h"

#include <gtest/gtest.h>

namespace tarvo {

// Values of an independent calculator (NOAA's), as collected in the tests of fatiando/harmonica (BSD-3-Clause).
TEST(Igrf, AgreesWithPublishedValues)
{
    struct Case {
        const char* label;
        GeodeticPlace place;
        double date; // days since 1899-12-30
        GeomagneticField field;
    };
    const Case cases[] = {
        {"the first epoch", {-23.5, -43.7, 700}, 2, {24528.6, -3007.6, -6412.6}},      // 1900-01-01
        {"between epochs", {47.9, 106.9, 1300}, 22067, {23028.2, -1432.8, 54552.7}},   // 1960-05-31
        {"on an epoch", {-23.5, -43.7, 700}, 43831, {16085.4, -6690.6, -15201.8}},     // 2020-01-01
        {"after the last epoch", {9.0, 38.7, 2355}, 46236, {35675.0, 1368.9, 2067.7}}, // 2026-08-02
    };
    for (const Case& c : cases) {
        const GeomagneticField field = igrf_field(c.place, decimal_year(c.date));
        EXPECT_NEAR(field.north, c.field.north, 0.2) << c.label;
        EXPECT_NEAR(field.east, c.field.east, 0.2) << c.label;
        EXPECT_NEAR(field.down, c.field.down, 0.2) << c.label;
    }
}

} // namespace tarvo

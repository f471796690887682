#include "targets/igrf.h"

#include "processing/angles.h"
#include "processing/fixed_time.h"
#include "targets/igrf_table.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace tarvo {

namespace {

constexpr double kReferenceRadius = 6371.2; // kilometres, of the coefficients
constexpr double kEquatorRadius = 6378.137; // kilometres, of WGS 84
constexpr double kFlattening = 1 / 298.257223563;
constexpr double kLastYear = 2030;
constexpr std::size_t kOrders = kIgrfDegree + 1;

using Coefficients = std::array<std::array<double, kOrders>, kOrders>; // by degree and order

struct GaussCoefficients {
    Coefficients g = {};
    Coefficients h = {};
};

GaussCoefficients coefficients_of_year(double year)
{
    const double steps = (std::clamp(year, kIgrfFirstEpoch, kLastYear) - kIgrfFirstEpoch) / kIgrfYearsPerEpoch;
    const std::size_t epoch = std::min(static_cast<std::size_t>(steps), kIgrfEpochs - 1);
    const double part = steps - static_cast<double>(epoch);
    GaussCoefficients coefficients;
    for (const IgrfRow& row : kIgrfTable) {
        const double here = row.values[epoch];
        const double change =
            epoch + 1 < kIgrfEpochs ? row.values[epoch + 1] - here : row.values[kIgrfEpochs] * kIgrfYearsPerEpoch;
        Coefficients& kind = row.kind == 'g' ? coefficients.g : coefficients.h;
        kind[static_cast<std::size_t>(row.degree)][static_cast<std::size_t>(row.order)] = here + part * change;
    }
    return coefficients;
}

struct GeocentricPlace {
    double radius = 0;   // kilometres
    double latitude = 0; // radians
};

GeocentricPlace geocentric_place(const GeodeticPlace& place)
{
    const double latitude = place.latitude * kRadiansPerDegree;
    const double height = place.height / 1000;
    const double eccentricity = kFlattening * (2 - kFlattening); // squared
    const double sine = std::sin(latitude);
    const double normal = kEquatorRadius / std::sqrt(1 - eccentricity * sine * sine);
    const double outward = (normal + height) * std::cos(latitude);
    const double upward = (normal * (1 - eccentricity) + height) * sine;
    return {std::hypot(outward, upward), std::atan2(upward, outward)};
}

// Schmidt semi-normalised associated Legendre functions of the colatitude's cosine, and their derivatives by it.
struct LegendreFunctions {
    Coefficients value = {};
    Coefficients slope = {}; // per radian of colatitude
};

LegendreFunctions legendre_functions(double cosine, double sine)
{
    LegendreFunctions p;
    p.value[0][0] = 1;
    for (std::size_t n = 1; n <= kIgrfDegree; ++n) {
        const auto degree = static_cast<double>(n);
        const double diagonal = n == 1 ? 1 : std::sqrt(1 - 1 / (2 * degree));
        p.value[n][n] = diagonal * sine * p.value[n - 1][n - 1];
        p.slope[n][n] = diagonal * (sine * p.slope[n - 1][n - 1] + cosine * p.value[n - 1][n - 1]);
        for (std::size_t m = 0; m < n; ++m) {
            const auto order = static_cast<double>(m);
            const double scale = std::sqrt(degree * degree - order * order);
            const double before = n < 2 || m > n - 2 ? 0 : std::sqrt((degree - 1) * (degree - 1) - order * order);
            const double value_before = before == 0 ? 0 : p.value[n - 2][m];
            const double slope_before = before == 0 ? 0 : p.slope[n - 2][m];
            const double factor = 2 * degree - 1;
            p.value[n][m] = (factor * cosine * p.value[n - 1][m] - before * value_before) / scale;
            p.slope[n][m] =
                (factor * (cosine * p.slope[n - 1][m] - sine * p.value[n - 1][m]) - before * slope_before) / scale;
        }
    }
    return p;
}

} // namespace

GeomagneticField igrf_field(const GeodeticPlace& place, double year)
{
    constexpr double kLeastSine = 1e-10; // at the poles, where east has no direction
    const GaussCoefficients gauss = coefficients_of_year(year);
    const GeocentricPlace centric = geocentric_place(place);
    const double sine = std::max(std::cos(centric.latitude), kLeastSine); // of the colatitude
    const LegendreFunctions p = legendre_functions(std::sin(centric.latitude), sine);
    const double longitude = place.longitude * kRadiansPerDegree;

    GeomagneticField field; // along the directions of the sphere
    double power = kReferenceRadius / centric.radius;
    power *= power;
    for (std::size_t n = 1; n <= kIgrfDegree; ++n) {
        power *= kReferenceRadius / centric.radius;
        for (std::size_t m = 0; m <= n; ++m) {
            const auto order = static_cast<double>(m);
            const double cosine_m = std::cos(order * longitude);
            const double sine_m = std::sin(order * longitude);
            const double along = gauss.g[n][m] * cosine_m + gauss.h[n][m] * sine_m;
            const double across = gauss.g[n][m] * sine_m - gauss.h[n][m] * cosine_m;
            field.north += power * along * p.slope[n][m];
            field.east += power * order * across * p.value[n][m] / sine;
            field.down -= power * static_cast<double>(n + 1) * along * p.value[n][m];
        }
    }
    const double tilt = place.latitude * kRadiansPerDegree - centric.latitude;
    return {field.north * std::cos(tilt) + field.down * std::sin(tilt), field.east,
            field.down * std::cos(tilt) - field.north * std::sin(tilt)};
}

double decimal_year(double date_time)
{
    using namespace std::chrono;
    const double since_1970 = date_time - kDaysTo1970;
    const sys_days day{days(static_cast<int>(std::floor(since_1970)))};
    const std::chrono::year of_day = year_month_day(day).year();
    const sys_days first = of_day / January / 1;
    const sys_days next = (of_day + years(1)) / January / 1;
    const double passed = since_1970 - static_cast<double>(first.time_since_epoch().count());
    return static_cast<double>(static_cast<int>(of_day)) + passed / static_cast<double>((next - first).count());
}

} // namespace tarvo

#include "targets/dipole_fit.h"

#include "processing/angles.h"
#include "processing/median.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <set>

namespace tarvo {

namespace {

constexpr double kApartInAltitudes = 0.5; // places further from each other are different solutions

constexpr double kAsGood = 1.3;       // times the rms: nearly as well
constexpr double kOfBackground = 1.5; // of a background's size: what it may be in truth

double square(double value)
{
    return value * value;
}

// Adds what a background of such a size, squared, does to a place.
void add_moves(GridVector& variance, double size_squared, const GridVector& moves)
{
    variance.east += size_squared * square(moves.east);
    variance.north += size_squared * square(moves.north);
    variance.up += size_squared * square(moves.up);
}

// So many readings that a start can be judged; every so manieth of each segment.
constexpr std::size_t kReadingsOfSearch = 400;

struct SearchReadings {
    FitReadings readings;
    std::vector<double> values;
};

SearchReadings thinned(const FitReadings& all, const std::vector<double>& values)
{
    const std::size_t step = std::max(std::size_t{1}, all.count() / kReadingsOfSearch);
    SearchReadings thin;
    thin.readings.origin = all.origin;
    thin.readings.way_weight = step > 1 ? 0 : all.way_weight;
    for (const FitSegment& segment : all.segments) {
        FitSegment kept{segment.line, segment.sensor, thin.readings.count(), 0};
        for (std::size_t at = segment.first; at < segment.first + segment.count; at += step) {
            thin.readings.place.push_back(all.place[at]);
            thin.readings.way.push_back(all.way[at]);
            thin.readings.distance.push_back(all.distance[at]);
            thin.values.push_back(values[at]);
            ++kept.count;
        }
        thin.readings.segments.push_back(kept);
    }
    return thin;
}

bool lies_apart(const FittedPlace& place, const std::vector<FittedPlace>& others, double distance)
{
    return std::none_of(others.begin(), others.end(), [&](const FittedPlace& other) {
        return length(place.dipole.place - other.dipole.place) < distance;
    });
}

// The best of some places, so many at most, that lie apart.
std::vector<FittedPlace> best_apart(std::vector<FittedPlace> places, std::size_t most, double distance)
{
    std::stable_sort(places.begin(), places.end(), [](const FittedPlace& one, const FittedPlace& other) {
        return one.square_sum < other.square_sum;
    });
    std::vector<FittedPlace> best;
    for (const FittedPlace& place : places) {
        if (best.size() == most) break;
        if (lies_apart(place, best, distance)) best.push_back(place);
    }
    return best;
}

// 7 x 7 places within an altitude of the pick, at six depths that grow with the distance from the sensors.
std::vector<GridVector> starts(const FitReadings& readings, const FitGround& ground, const FitBounds& bounds)
{
    constexpr int kSteps = 3; // each way
    constexpr int kDepths = 6;
    const GridVector pick = GridVector{ground.pick_east, ground.pick_north, 0} - readings.origin;
    const double sensors = ground.sensors - readings.origin.up;
    const double shallowest = std::max(sensors - bounds.high.up, 0.1 * ground.altitude);
    const double deepest = std::max(sensors - bounds.low.up, 2 * shallowest);
    std::vector<GridVector> places;
    for (int depth = 0; depth < kDepths; ++depth) {
        const double below = shallowest * std::pow(deepest / shallowest, (depth + 0.5) / kDepths);
        for (int east = -kSteps; east <= kSteps; ++east) {
            for (int north = -kSteps; north <= kSteps; ++north) {
                const double step = ground.altitude / kSteps;
                places.push_back({pick.east + east * step, pick.north + north * step, sensors - below});
            }
        }
    }
    return places;
}

// The reading nearest to a place.
std::size_t nearest_reading(const FitReadings& readings, const GridVector& place)
{
    std::size_t nearest = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t reading = 0; reading < readings.count(); ++reading) {
        const GridVector apart = readings.place[reading] - place;
        if (const double distance = dot(apart, apart); distance < least) {
            least = distance;
            nearest = reading;
        }
    }
    return nearest;
}

// Where the readings leave the most that the fit does not explain, when that stands out of the noise: the mean of five
// neighbours on a segment, beside the median of all such means. Beside a strong source errors of the sensors' places
// leave nanoteslas, too. signal: rms of the readings' anomalies, nT.
std::optional<Misfit> largest_misfit(const FitReadings& readings, const std::vector<double>& residuals, double signal)
{
    constexpr double kOfSignal = 0.06;
    constexpr std::size_t kNeighbours = 5;
    constexpr double kLeastSize = 2; // nT
    constexpr double kOutOfNoise = 6 * 1.4826;
    std::vector<double> sizes;
    double largest = 0;
    std::size_t where = 0;
    for (const FitSegment& segment : readings.segments) {
        for (std::size_t at = segment.first; at + kNeighbours <= segment.first + segment.count; ++at) {
            double sum = 0;
            for (std::size_t next = 0; next < kNeighbours; ++next) sum += residuals[at + next];
            const double size = std::abs(sum) / kNeighbours;
            sizes.push_back(size);
            if (size > largest) {
                largest = size;
                where = at + kNeighbours / 2;
            }
        }
    }
    if (sizes.empty()) return std::nullopt;
    const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
    std::nth_element(sizes.begin(), middle, sizes.end());
    if (largest < std::max({kLeastSize, kOutOfNoise * *middle, kOfSignal * signal})) return std::nullopt;
    return Misfit{readings.origin + readings.place[where], largest};
}

// Across the pass that the readings lie on, level, of length 1.
GridVector across_pass(const FitReadings& readings)
{
    GridVector middle;
    for (const GridVector& reading : readings.place) middle = middle + reading;
    middle = 1 / static_cast<double>(readings.count()) * middle;
    double ee = 0;
    double en = 0;
    double nn = 0;
    for (const GridVector& reading : readings.place) {
        const GridVector apart = reading - middle;
        ee += apart.east * apart.east;
        en += apart.east * apart.north;
        nn += apart.north * apart.north;
    }
    const double direction = 0.5 * std::atan2(2 * en, ee - nn); // of the longest spread
    return {-std::sin(direction), std::cos(direction), 0};
}

// A straight pass of one sensor sees a source alike from all places on a circle around it: on each, some moment gives
// the same readings. So the place on the other side is given too, and the errors span the part of the circle that lies
// within the bounds.
void take_circle(DipoleFit& described, ProjectedFit& fit, const FitReadings& readings, const FitGround& ground,
                 const FittedPlace& best)
{
    constexpr int kMostSteps = 60;
    const FitBounds bounds = fit_bounds(readings, ground);
    const GridVector across = across_pass(readings);
    const GridVector& nearest = readings.place[nearest_reading(readings, best.dipole.place)];
    const double aside = dot(across, best.dipole.place - nearest);
    const double radius = std::hypot(aside, nearest.up - best.dipole.place.up);
    const GridVector mirrored = best.dipole.place - 2 * aside * across;
    described.other_place = readings.origin + fit.refined(mirrored, bounds, kMostSteps).dipole.place;

    const double widest = radius + std::abs(aside);
    const double highest = std::min(bounds.high.up, nearest.up);
    const double lowest = std::max(bounds.low.up, nearest.up - radius);
    const double height = std::max(highest - best.dipole.place.up, best.dipole.place.up - lowest);
    described.error.east = std::max(described.error.east, std::abs(across.east) * widest);
    described.error.north = std::max(described.error.north, std::abs(across.north) * widest);
    described.error.up = std::max(described.error.up, height);
    described.east_north_covariance = across.east * across.north * widest * widest;
}

// Whether a place far off in the direction that is known the least, at some height, leaves as little as the best one:
// a valley so long is no ellipse, and its far end may be another least.
bool is_in_long_valley(ProjectedFit& fit, const FitReadings& readings, const FitGround& ground, const FittedPlace& best,
                       const FitQuality& quality)
{
    constexpr int kSteps = 6; // each way, along the valley
    constexpr int kHeights = 4;
    constexpr double kStep = 0.25; // altitudes
    constexpr double kHeightStep = 0.1;
    const FitBounds bounds = fit_bounds(readings, ground);
    const auto& covariance = quality.place_covariance;
    const double direction = 0.5 * std::atan2(2 * covariance[0][1], covariance[0][0] - covariance[1][1]);
    const double enough = square(kAsGood) * best.square_sum;
    for (int step = -kSteps; step <= kSteps; ++step) {
        const double along = step * kStep * ground.altitude;
        for (int height = -kHeights; height <= kHeights && step != 0; ++height) {
            const double up = height * kHeightStep * ground.altitude;
            const GridVector place =
                best.dipole.place + GridVector{along * std::cos(direction), along * std::sin(direction), up};
            if (held_within(place, bounds) == place && fit.square_sum_at(place) <= enough) return true;
        }
    }
    return false;
}

int count_lines(const FitReadings& readings)
{
    std::set<std::int32_t> lines;
    for (const FitSegment& segment : readings.segments) lines.insert(segment.line);
    return static_cast<int>(lines.size());
}

} // namespace

double moment_inclination(const GridVector& moment)
{
    return std::atan2(-moment.up, plan_length(moment)) * kDegreesPerRadian;
}

double moment_declination(const GridVector& moment)
{
    return std::atan2(moment.east, moment.north) * kDegreesPerRadian;
}

double lowest_mass(double moment)
{
    return moment / 0.27;
}

double highest_mass(double moment)
{
    return moment / 0.0153;
}

void share_backgrounds(std::vector<DipoleFit>& fits)
{
    constexpr std::size_t kFewest = 5; // fits that say what is usual
    constexpr double kDeviation = 1.4826;
    for (std::size_t curve = 0; curve < CurvedBackgrounds{}.size(); ++curve) {
        std::vector<double> sizes;
        for (const DipoleFit& fit : fits) {
            if (fit.is_fitted()) sizes.push_back(std::abs(fit.background[curve].size));
        }
        if (sizes.size() < kFewest) return;
        const double usual = kDeviation * *median(sizes);
        for (DipoleFit& fit : fits) {
            const CurvedBackground& background = fit.background[curve];
            const double more = square(usual) - square(background.size);
            if (!fit.is_fitted() || more <= 0) continue;
            GridVector variance = {square(fit.error.east), square(fit.error.north), square(fit.error.up)};
            add_moves(variance, square(kOfBackground) * more, background.moves);
            fit.error = {std::sqrt(variance.east), std::sqrt(variance.north), std::sqrt(variance.up)};
        }
    }
}

void doubt_loose_place(DipoleFit& fit, double altitude)
{
    constexpr double kLoose = 0.2; // altitudes
    if (!fit.is_fitted() || fit.is_side_unknown() || plan_length(fit.error) <= kLoose * altitude) return;
    fit.doubts.push_back(FitDoubt::loose_place);
}

void doubt_shared_places(std::vector<DipoleFit>& fits, const std::vector<double>& altitudes)
{
    for (std::size_t at = 0; at < fits.size(); ++at) {
        const GridVector& place = fits[at].dipole.place;
        const bool is_shared = std::any_of(fits.begin(), fits.end(), [&](const DipoleFit& other) {
            return &other != &fits[at] && other.is_fitted() &&
                   plan_length(other.dipole.place - place) < kApartInAltitudes * altitudes[at];
        });
        if (fits[at].is_fitted() && is_shared) fits[at].doubts.push_back(FitDoubt::shared_place);
    }
}

std::string flag_text(const DipoleFit& fit)
{
    std::string text;
    if (fit.is_side_unknown()) text = "side unknown";
    if (fit.is_doubtful()) text += text.empty() ? "doubtful" : ";doubtful";
    return text;
}

namespace {

// How far readings are looked for rests on the altitude.
std::string altitude_advice(const FitGround& ground)
{
    if (ground.has_altitude) return {};
    return " The data have no altitude (Elevation), so that " + format_fixed(kAltitudeWhenUnknown, 0) +
           " m is taken: a larger radius may do.";
}

} // namespace

std::string too_few_readings(const FitReadings& readings, const FitGround& ground)
{
    constexpr std::size_t kFewest = 30;
    constexpr double kLeastTrack = 1.5; // altitudes
    if (readings.count() == 0) return "There is no valid reading near the pick." + altitude_advice(ground);
    if (readings.count() < kFewest) {
        return "Only " + std::to_string(readings.count()) +
               (readings.count() == 1 ? " reading lies" : " readings lie") + " near the pick: a fit needs 30." +
               altitude_advice(ground);
    }
    double longest = 0;
    for (const FitSegment& segment : readings.segments) {
        const std::size_t last = segment.first + segment.count - 1;
        longest = std::max(longest, readings.distance[last] - readings.distance[segment.first]);
    }
    if (longest < kLeastTrack * ground.altitude) {
        return "Only " + format_fixed(longest, 1) + " m of track lie near the pick: a fit needs " +
               format_fixed(kLeastTrack * ground.altitude, 1) + " m." + altitude_advice(ground);
    }
    return {};
}

FitBounds fit_bounds(const FitReadings& readings, const FitGround& ground)
{
    constexpr double kAboveSeabed = 1.5;     // metres
    constexpr double kBelowSeabed = 2;       // altitudes
    constexpr double kLeastBelowSeabed = 6;  // metres
    constexpr double kNearestToSensor = 0.5; // metres, without a seabed
    constexpr double kFarthestFromSensor = 30;
    constexpr double kAside = 1.6; // altitudes
    const GridVector pick = GridVector{ground.pick_east, ground.pick_north, 0} - readings.origin;
    const double aside = kAside * ground.altitude;
    FitBounds bounds{{pick.east - aside, pick.north - aside, 0}, {pick.east + aside, pick.north + aside, 0}};
    if (is_valid_channel(ground.seabed)) {
        bounds.high.up = ground.seabed + kAboveSeabed - readings.origin.up;
        bounds.low.up =
            ground.seabed - std::max(kBelowSeabed * ground.altitude, kLeastBelowSeabed) - readings.origin.up;
    } else {
        bounds.high.up = ground.sensors - kNearestToSensor - readings.origin.up;
        bounds.low.up = ground.sensors - kFarthestFromSensor - readings.origin.up;
    }
    return bounds;
}

std::vector<FittedPlace> searched_places(ProjectedFit& fit, const FitReadings& readings,
                                         const std::vector<double>& values, const FitGround& ground,
                                         std::span<const OpenNeighbour> neighbours)
{
    constexpr std::size_t kRefined = 5;
    constexpr int kStepsOfSearch = 12;
    constexpr int kMostSteps = 60;
    constexpr double kWorthwhile = 4; // times the least sum of squares
    const FitBounds bounds = fit_bounds(readings, ground);
    const double apart = kApartInAltitudes * ground.altitude;
    const SearchReadings thin = thinned(readings, values);
    ProjectedFit coarse(thin.readings, fit.earth(), thin.values, neighbours);

    std::vector<FittedPlace> tried;
    for (const GridVector& start : starts(readings, ground, bounds)) {
        tried.push_back({{start, {}}, coarse.square_sum_at(start), false});
    }
    std::vector<FittedPlace> refined;
    for (const FittedPlace& start : best_apart(std::move(tried), kRefined, apart)) {
        refined.push_back(coarse.refined(start.dipole.place, bounds, kStepsOfSearch));
    }
    refined = best_apart(std::move(refined), kRefined, apart);

    std::vector<FittedPlace> places;
    for (const FittedPlace& place : refined) {
        if (place.square_sum > kWorthwhile * refined.front().square_sum) break;
        places.push_back(fit.refined(place.dipole.place, bounds, kMostSteps));
    }
    return best_apart(std::move(places), kRefined, apart);
}

DipoleFit described_fit(ProjectedFit& fit, const FitReadings& readings, const FitGround& ground,
                        const FittedPlace& best, const std::vector<FittedPlace>& others)
{
    constexpr double kDeviations = 3;
    constexpr double kGoodMatch = 0.9;
    constexpr double kFarFromPick = 1.5; // altitudes
    const FitQuality quality = fit.quality(best);
    const auto count = static_cast<double>(readings.count());
    DipoleFit described;
    described.dipole = {readings.origin + best.dipole.place, best.dipole.moment};
    described.readings = readings.count();
    described.lines = count_lines(readings);
    described.rms = std::sqrt(best.square_sum / count);
    described.r2 = fit.signal() > 0 ? 1 - best.square_sum / fit.signal() : 0;

    const std::size_t nearest = nearest_reading(readings, best.dipole.place);
    described.slant_range = length(readings.place[nearest] - best.dipole.place);
    described.below_sensor = readings.place[nearest].up - best.dipole.place.up;
    if (is_valid_channel(ground.seabed)) described.below_seabed = ground.seabed - described.dipole.place.up;

    const double lag = std::clamp(quality.lag_correlation, 0.0, 0.99);
    const double widened = square(kDeviations) * (1 + lag) / (1 - lag);
    const auto& covariance = quality.place_covariance;
    described.background = quality.background;
    GridVector variance = {widened * covariance[0][0], widened * covariance[1][1], widened * covariance[2][2]};
    for (const CurvedBackground& background : quality.background) {
        const double size = square(kOfBackground * background.size) + widened * square(background.deviation);
        add_moves(variance, size, background.moves);
    }
    described.error = {std::sqrt(variance.east), std::sqrt(variance.north), std::sqrt(variance.up)};
    described.east_north_covariance = widened * covariance[0][1];

    const GridVector from_pick = described.dipole.place - GridVector{ground.pick_east, ground.pick_north, 0};
    const bool has_other = std::any_of(others.begin(), others.end(), [&](const FittedPlace& other) {
        return length(other.dipole.place - best.dipole.place) > kApartInAltitudes * ground.altitude &&
               other.square_sum <= square(kAsGood) * best.square_sum;
    });
    const bool is_one_pass = readings.segments.size() == 1;
    if (described.r2 < kGoodMatch) described.doubts.push_back(FitDoubt::poor_match);
    if (best.at_bound) described.doubts.push_back(FitDoubt::at_bound);
    if (plan_length(from_pick) > kFarFromPick * ground.altitude) described.doubts.push_back(FitDoubt::far_from_pick);
    if (!is_one_pass && (has_other || is_in_long_valley(fit, readings, ground, best, quality))) {
        described.doubts.push_back(FitDoubt::second_solution);
    }
    if (is_one_pass) take_circle(described, fit, readings, ground, best);
    described.misfit = largest_misfit(readings, quality.residuals, std::sqrt(fit.signal() / count));
    return described;
}

} // namespace tarvo

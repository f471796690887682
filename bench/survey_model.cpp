#include "survey_model.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace tarvo::survey {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kTurnsPerDegree = 1.0 / 360.0;

constexpr double kBoatSpeed = 2.2;                  // metres per second
constexpr double kLineSpacing = 8.0;                // metres; the boat turns on a half circle of this width
constexpr double kLineDirection = 40.0;             // degrees from grid east: no heading comes near the jump at 360
constexpr double kShortestLine = 20.0;              // metres
constexpr double kFishDepth = 4.5;                  // metres below the surface
constexpr double kMeanBottom = 9.0;                 // metres below the surface
constexpr double kSourceBurial = 0.3;               // metres below the seabed
constexpr double kSensorArm = 750.0;                // millimetres
constexpr double kSensorOffset = -400.0;            // millimetres: behind the fish's reference point
constexpr Vector kOrigin = {428'060, 5'994'870, 0}; // UTM zone 32 N, in the German Bight

// The Earth's field there, near what the IGRF gives: 49,800 nT, dipping 68.5 degrees, 3.5 degrees east of grid north.
constexpr double kEarthField = 49'800;
constexpr double kInclination = 68.5;
constexpr double kDeclination = 3.5;
constexpr double kDailyVariation = 15; // nT, along the Earth's field

// North, east and down parts of a field from its strength, inclination and declination (Blakely 1995, "Potential
// theory in gravity and magnetic applications", chapter 8).
Vector earth_field(double strength)
{
    const double horizontal = strength * cosine_of_turns(kInclination * kTurnsPerDegree);
    return {horizontal * sine_of_turns(kDeclination * kTurnsPerDegree),
            horizontal * cosine_of_turns(kDeclination * kTurnsPerDegree),
            -strength * sine_of_turns(kInclination * kTurnsPerDegree)};
}

// Slow oscillations of the fish and the seabed; each has its phase in phases_.
enum Oscillation {
    kWander,
    kFastWander,
    kYawing,
    kPitching,
    kFastPitching,
    kRolling,
    kHeave,
    kBottomAlong,
    kBottomAcross,
    kCount
};

double turn_length()
{
    return kPi * kLineSpacing / 2;
}

double planned_line_length(const Plan& plan)
{
    const double path = kBoatSpeed * static_cast<double>(plan.data_lines) / plan.rate;
    return (path - (plan.survey_lines - 1) * turn_length()) / plan.survey_lines;
}

} // namespace

double dot(const Vector& a, const Vector& b)
{
    return a.east * b.east + a.north * b.north + a.up * b.up;
}

Vector sum(const Vector& a, const Vector& b)
{
    return {a.east + b.east, a.north + b.north, a.up + b.up};
}

Vector scaled(const Vector& a, double factor)
{
    return {a.east * factor, a.north * factor, a.up * factor};
}

double length(const Vector& a)
{
    return std::sqrt(dot(a, a));
}

std::uint64_t Random::bits()
{
    state_ += 0x9e3779b97f4a7c15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
    return mixed ^ (mixed >> 31);
}

double Random::uniform()
{
    return static_cast<double>(bits() >> 11) * 0x1p-53;
}

double Random::normal()
{
    // four uniform deviates of 16 bits from each of three draws
    std::uint64_t total = 0;
    for (int draw = 0; draw < 3; ++draw) {
        const std::uint64_t word = bits();
        total += (word & 0xffff) + ((word >> 16) & 0xffff) + ((word >> 32) & 0xffff) + (word >> 48);
    }
    return (static_cast<double>(total) + 6) * 0x1p-16 - 6; // 6: half a step for each of the twelve
}

double sine_of_turns(double turns)
{
    double part = turns - std::floor(turns + 0.5); // -0.5 .. 0.5
    if (part > 0.25) part = 0.5 - part;
    if (part < -0.25) part = -0.5 - part;
    const double angle = 2 * kPi * part;
    const double square = angle * angle;
    double series = 1; // Taylor's, from the term of the 19th power down
    for (int power = 19; power > 1; power -= 2) series = 1 - square / (power * (power - 1)) * series;
    return angle * series;
}

double cosine_of_turns(double turns)
{
    return sine_of_turns(turns + 0.25);
}

Vector dipole_field(const Dipole& dipole, const Vector& position)
{
    constexpr double kNanoteslaScale = 100; // mu0 / (4 pi) = 1e-7 T m / A
    const Vector r = sum(position, scaled(dipole.position, -1));
    const double square = dot(r, r);
    const double per_cube = kNanoteslaScale / (square * std::sqrt(square));
    const Vector along_r = scaled(r, 3 * dot(dipole.moment, r) / square * per_cube);
    return sum(along_r, scaled(dipole.moment, -per_cube));
}

Axes fish_axes(const Attitude& attitude)
{
    const double heading = attitude.heading * kTurnsPerDegree;
    const double pitch = attitude.pitch * kTurnsPerDegree;
    const double roll = attitude.roll * kTurnsPerDegree;
    const double cos_h = cosine_of_turns(heading), sin_h = sine_of_turns(heading);
    const double cos_p = cosine_of_turns(pitch), sin_p = sine_of_turns(pitch);
    const double cos_r = cosine_of_turns(roll), sin_r = sine_of_turns(roll);

    // roll first, then pitch, then heading
    Axes axes;
    axes.u = {cos_h * cos_p, sin_h * cos_p, -sin_p};
    axes.v = {cos_h * sin_p * sin_r - sin_h * cos_r, sin_h * sin_p * sin_r + cos_h * cos_r, cos_p * sin_r};
    axes.w = {cos_h * sin_p * cos_r + sin_h * sin_r, sin_h * sin_p * cos_r - cos_h * sin_r, cos_p * cos_r};
    return axes;
}

Survey::Survey(const Plan& plan)
    : plan_(plan), random_(plan.seed), line_length_(planned_line_length(plan)), earth_(earth_field(kEarthField))
{
    if (line_length_ < kShortestLine) {
        const double path = plan.survey_lines * kShortestLine + (plan.survey_lines - 1) * turn_length();
        const auto needed = static_cast<std::int64_t>(std::ceil(path / kBoatSpeed * plan.rate));
        throw std::invalid_argument(std::to_string(plan.data_lines) + " data lines are too few for " +
                                    std::to_string(plan.survey_lines) + " survey lines: at least " +
                                    std::to_string(needed) + " are needed");
    }
    for (int oscillation = 0; oscillation < kCount; ++oscillation) phases_.push_back(random_.uniform());
    place_sources();
    place_sensors(plan.sensors);
}

Survey::PlanPosition Survey::plan_position(double path) const
{
    const double period = line_length_ + turn_length();
    const int runs = std::min(static_cast<int>(path / period), plan_.survey_lines - 1);
    const double rest = path - runs * period;
    const bool outbound = runs % 2 == 0;
    PlanPosition place{.along = 0, .across = runs * kLineSpacing, .turned = 0, .survey_line = runs + 1};
    if (rest < line_length_) {
        place.along = outbound ? rest : line_length_ - rest;
        place.turned = outbound ? 0 : 1;
        return place;
    }
    const double done = (rest - line_length_) / turn_length(); // 0 .. 1
    const double bulge = kLineSpacing / 2 * sine_of_turns(done / 2);
    place.along = outbound ? line_length_ + bulge : -bulge;
    place.across += kLineSpacing / 2 * (1 - cosine_of_turns(done / 2));
    place.turned = outbound ? done : 1 - done;
    return place;
}

Vector Survey::grid_position(double along, double across, double up) const
{
    const double cosine = cosine_of_turns(kLineDirection * kTurnsPerDegree);
    const double sine = sine_of_turns(kLineDirection * kTurnsPerDegree);
    return sum(kOrigin, {along * cosine - across * sine, along * sine + across * cosine, up});
}

double Survey::bottom_depth(double along, double across) const
{
    return kMeanBottom + 0.6 * sine_of_turns(along / 190 + phases_[kBottomAlong]) +
           0.4 * sine_of_turns(across / 120 + phases_[kBottomAcross]);
}

Fish Survey::fish_at(double seconds) const
{
    const auto swing = [&](Oscillation oscillation, double period) {
        return sine_of_turns(seconds / period + phases_[oscillation]);
    };
    Fish fish;
    fish.path = kBoatSpeed * seconds;
    PlanPosition place = plan_position(fish.path);
    place.across += 0.5 * swing(kWander, 83) + 0.2 * swing(kFastWander, 31);

    fish.survey_line = place.survey_line;
    fish.position = grid_position(place.along, place.across, -(kFishDepth + 0.25 * swing(kHeave, 41)));
    fish.attitude.heading = kLineDirection + 180 * place.turned + 2.5 * swing(kYawing, 17);
    fish.attitude.pitch = 1.5 + 1.2 * swing(kPitching, 23) + 0.4 * swing(kFastPitching, 6.5);
    fish.attitude.roll = 3.0 * swing(kRolling, 9);
    fish.bottom = bottom_depth(place.along, place.across);
    return fish;
}

Vector Survey::field_at(const Vector& position, double seconds) const
{
    constexpr double kSecondsPerDay = 86'400;
    const double variation = kDailyVariation / kEarthField * sine_of_turns(seconds / kSecondsPerDay);
    Vector field = sum(scaled(earth_, 1 + variation), dipole_field(deep_body_, position));
    for (const Dipole& source : sources_) field = sum(field, dipole_field(source, position));
    return field;
}

// Spreads the sources: each takes the one of some random places that is farthest from all earlier sources (Mitchell
// 1991, "Spectrally optimal sampling for distribution ray tracing": best candidates).
void Survey::place_sources()
{
    constexpr int kCandidates = 12;
    const double width = (plan_.survey_lines - 1) * kLineSpacing;
    for (int source = 0; source < plan_.sources; ++source) {
        Dipole best;
        double best_distance = -1;
        for (int candidate = 0; candidate < kCandidates; ++candidate) {
            const double along = line_length_ * (0.12 + 0.76 * random_.uniform());
            const double across = width * random_.uniform();
            const Vector place = grid_position(along, across, -(bottom_depth(along, across) + kSourceBurial));
            double nearest = 1e30;
            for (const Dipole& other : sources_)
                nearest = std::min(nearest, length(sum(place, scaled(other.position, -1))));
            if (nearest > best_distance) {
                best_distance = nearest;
                best.position = place;
            }
        }
        // many small ones, few large ones; induced and remanent moments point anywhere between them
        const double strength = random_.uniform();
        const Vector direction = {random_.normal(), random_.normal(), random_.normal() - 1};
        best.moment = scaled(direction, (10 + 450 * strength * strength) / length(direction));
        sources_.push_back(best);
    }
    constexpr double kDeepBodyDepth = 250;
    constexpr double kDeepBodyMoment = 2e6;
    deep_body_.position = grid_position(0.3 * line_length_, 0.7 * width, -kDeepBodyDepth);
    deep_body_.moment = scaled(earth_field(1), kDeepBodyMoment);
}

// One sensor sits on the fish's axis; several stand evenly around it, the first to port.
void Survey::place_sensors(int sensors)
{
    for (int sensor = 0; sensor < sensors; ++sensor) {
        LeverArm arm{.offset_mm = kSensorOffset};
        if (sensors > 1) {
            arm.arm_mm = kSensorArm;
            arm.rotation_deg = 360.0 * sensor / sensors;
        }
        lever_arms_.push_back(arm);
    }
}

} // namespace tarvo::survey

#pragma once

#include <cstdint>
#include <vector>

// A made-up marine survey: a boat tows a fish back and forth over dipole sources on the seabed.
// Every number comes from +, -, *, / and square roots alone, which IEEE 754 rounds the same way everywhere, so one
// seed gives one survey whatever the compiler and its mathematics library.
namespace tarvo::survey {

// A place or a field in the survey grid: metres, or nT.
struct Vector {
    double east = 0;
    double north = 0;
    double up = 0; // places: above the sea surface
};

double dot(const Vector& a, const Vector& b);
Vector sum(const Vector& a, const Vector& b);
Vector scaled(const Vector& a, double factor);
double length(const Vector& a);

// The generator SplitMix64 (Steele, Lea, Flood 2014, "Fast splittable pseudorandom number generators").
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t bits();
    double uniform(); // 0 <= value < 1
    double normal();  // mean 0, deviation 1: twelve uniform deviates less 6, so never beyond 6

private:
    std::uint64_t state_;
};

// Sine of an angle given in whole turns; good to 1e-12.
double sine_of_turns(double turns);
double cosine_of_turns(double turns);

// A magnetic dipole: its moment in A m2 and its place.
struct Dipole {
    Vector position;
    Vector moment;
};

// The dipole's field in nT: mu0 / (4 pi) * (3 (m . r) r / r^5 - m / r^3), r pointing from the dipole to `position`.
Vector dipole_field(const Dipole& dipole, const Vector& position);

// Degrees. Heading counts from grid east to grid north, a positive pitch lowers the bow, a positive roll raises port.
struct Attitude {
    double heading = 0;
    double pitch = 0;
    double roll = 0;
};

// The fish's own directions in the survey grid: u ahead, v to port, w up at rest.
struct Axes {
    Vector u, v, w;
};
Axes fish_axes(const Attitude& attitude);

// Where a sensor sits beside the fish: its along-track offset, and an arm turned from port (0) upwards (90 degrees).
struct LeverArm {
    double offset_mm = 0;
    double arm_mm = 0;
    double rotation_deg = 0;
};

struct Plan {
    std::uint64_t seed = 1;
    int survey_lines = 12;
    std::int64_t data_lines = 10'000;
    double rate = 10; // data lines per second
    int sensors = 3;
    int sources = 12;
};

// The fish at one moment.
struct Fish {
    int survey_line = 1; // counted from 1; a turn belongs to the line it follows
    double path = 0;     // metres run since the start
    Vector position;
    Attitude attitude;
    double bottom = 0; // metres from the surface to the seabed
};

class Survey {
public:
    // Throws std::invalid_argument when the data lines are too few for the survey lines and the turns between them.
    explicit Survey(const Plan& plan);

    Fish fish_at(double seconds) const;
    Vector field_at(const Vector& position, double seconds) const; // nT

    const std::vector<Dipole>& sources() const { return sources_; }
    const std::vector<LeverArm>& lever_arms() const { return lever_arms_; }

private:
    struct PlanPosition {
        double along, across; // metres from the start of the first line
        double turned;        // half turns: 0 as on the odd lines, 1 as on the even ones
        int survey_line;
    };
    PlanPosition plan_position(double path) const;
    Vector grid_position(double along, double across, double up) const;
    double bottom_depth(double along, double across) const;
    void place_sources();
    void place_sensors(int sensors);

    Plan plan_;
    Random random_;
    double line_length_;         // metres
    Vector earth_;               // nT, undisturbed
    std::vector<double> phases_; // of the slow oscillations, in turns
    std::vector<Dipole> sources_;
    Dipole deep_body_;
    std::vector<LeverArm> lever_arms_;
};

} // namespace tarvo::survey

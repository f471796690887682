// How well and how fast dipoles are fitted and proposed, on made-up surveys whose sources are known: those of
// make_survey, and crowded ones with curved lines, a slow background and sources as near as 7 m to each other.
//
//   target_bench [SEEDS [FIRST]]   so many surveys of each kind (12), by the seeds from FIRST on (101)

#include "picks/pick_placing.h"
#include "processing/median.h"
#include "session/session.h"
#include "survey/survey_residual.h"
#include "survey/survey_targets.h"
#include "survey_files.h"
#include "targets/fit_export.h"
#include "tools/common/console.h"
#include "unattended.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace tarvo;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double milliseconds_since(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// A survey and what lies under it.
struct KnownSurvey {
    survey::Unattended op;
    ConsoleRunDisplay run_display{ConsoleRunDisplay::Progress::hidden};
    ConsolePickDisplay pick_display;
    Session session{op, run_display, pick_display};
    std::vector<Dipole> sources;
    FieldDirection field;

    SurveyState& state() { return session.survey; }
};

Dipole grid_dipole(const survey::Dipole& dipole)
{
    const auto vector = [](const survey::Vector& v) { return GridVector{v.east, v.north, v.up}; };
    return {vector(dipole.position), vector(dipole.moment)};
}

std::unique_ptr<KnownSurvey> loaded_survey(const survey::Plan& plan, const fs::path& folder)
{
    survey::SurveyFiles files;
    files.data_file = (folder / "survey.csv").string();
    files.plan = plan;
    survey::write_survey(files);
    auto known = std::make_unique<KnownSurvey>();
    SurveyState& state = known->state();
    state.parameters.LoggingSampleRate = 10;
    state.parameters.CarryClosingSample = true;
    state.target_settings.FieldInclination = 68.5;
    state.target_settings.FieldDeclination = 3.5;
    state.data_file_name = files.data_file;
    known->session.driver.Command_start_logging(StartButton::load_or_pause);
    const survey::Survey made(plan);
    for (const survey::Dipole& dipole : made.sources()) known->sources.push_back(grid_dipole(dipole));
    known->field = earth_field_of(state, fit_survey(state), nullptr).direction;
    return known;
}

// Sources on the seabed of a field of 260 x 72 m, none nearer than 7 m to another, with moments in any direction.
std::vector<survey::Dipole> crowded_sources(survey::Random& random)
{
    constexpr std::size_t kSources = 12;
    constexpr double kNearest = 7; // metres
    std::vector<survey::Dipole> sources;
    while (sources.size() < kSources) {
        survey::Dipole source;
        source.position = {10 + 240 * random.uniform(), 4 + 64 * random.uniform(), -9 - random.uniform()};
        const survey::Vector direction = {random.normal(), random.normal(), random.normal()};
        const double moment = 10 * std::pow(30.0, random.uniform());
        source.moment = survey::scaled(direction, moment / survey::length(direction));
        const bool is_free = std::none_of(sources.begin(), sources.end(), [&](const survey::Dipole& other) {
            return survey::length(survey::sum(source.position, survey::scaled(other.position, -1))) < kNearest;
        });
        if (is_free) sources.push_back(source);
    }
    return sources;
}

// Ten curved lines 8 m apart, ten readings a second at 2 m/s, 4 to 5 m above the seabed.
std::unique_ptr<KnownSurvey> crowded_survey(std::uint64_t seed, int sensors)
{
    constexpr int kLines = 10;
    constexpr double kStep = 0.2;         // metres
    constexpr double kPlaceNoise = 0.02;  // metres
    constexpr double kFieldNoise = 0.05;  // nT
    constexpr double kBesideSensor = 1.5; // metres
    survey::Random random(seed);
    const std::vector<survey::Dipole> sources = crowded_sources(random);
    auto known = std::make_unique<KnownSurvey>();
    SurveyState& state = known->state();
    state.survey_definitions.number_of_sensors = sensors;
    state.survey_definitions.read_sensor_location = 1;
    state.survey_definitions.sensors.resize(static_cast<std::size_t>(sensors) + 1);
    for (const int slot : {kEast, kNorth, kElevation, kDem}) state.locations.column[static_cast<std::size_t>(slot)] = 0;
    SampleProcessing& run = state.processing;
    reset_sample_store(run.store, state.survey_definitions, state.locations);
    const survey::Vector earth = {0.0224 * 49'800, 0.3658 * 49'800, -0.9304 * 49'800};
    known->field = {{earth.east / 49'800, earth.north / 49'800, earth.up / 49'800}, 49'800};
    double run_length = 0;
    std::int32_t record = 0;
    for (int line = 0; line < kLines; ++line) {
        const double phase = random.uniform();
        for (int step = 0; step <= 1300; ++step) {
            ++record;
            reserve_records(run.store, record);
            const double along = line % 2 == 0 ? kStep * step : 260 - kStep * step;
            const double across = 8.0 * line + 1.5 * survey::sine_of_turns(along / 120 + phase);
            const double up = -4.5 + 0.4 * survey::sine_of_turns(along / 45 + 2 * phase);
            run.store.record_time[record] = 45'000 + record / 864'000.0;
            run.store.distance[record] = run_length;
            run.store.channels[kEast][record] = along;
            run.store.channels[kNorth][record] = across;
            run.store.channels[kElevation][record] = up;
            run.store.channels[kDem][record] = -9;
            run_length += kStep;
            for (int sensor = 1; sensor <= sensors; ++sensor) {
                const survey::Vector place = {along, across + kBesideSensor * (sensor - (sensors + 1) / 2.0), up};
                survey::Vector field = earth;
                for (const survey::Dipole& source : sources)
                    field = survey::sum(field, survey::dipole_field(source, place));
                const double slow = 6 * survey::sine_of_turns(along / 190 + 0.3) +
                                    4 * survey::sine_of_turns(across / 140) +
                                    3 * survey::sine_of_turns(record / 4000.0);
                auto& stored = run.store.sensors[static_cast<std::size_t>(sensor)];
                stored.averages[0][record] = survey::length(field) + slow + kFieldNoise * random.normal();
                stored.position[1][record] = place.east + kPlaceNoise * random.normal();
                stored.position[2][record] = place.north + kPlaceNoise * random.normal();
                stored.position[3][record] = place.up + kPlaceNoise * random.normal();
            }
            if (record == 1) open_first_line(run.lines, 1);
            if (record > 1 && step == 0) open_next_line(run.lines, line + 1, record - 1, 0);
            add_record_to_line(run.lines, record);
            run.store.RecordCount = record;
        }
    }
    run.lines_processed = record;
    for (const survey::Dipole& source : sources) known->sources.push_back(grid_dipole(source));
    return known;
}

std::vector<FitPlace> places_over(KnownSurvey& known)
{
    const TrackTable track = track_table(known.state().processing.store);
    std::vector<FitPlace> places;
    for (const Dipole& source : known.sources) {
        FitPlace place;
        double least = 1e9;
        for (std::int32_t record = 1; record <= track.count; ++record) {
            const double away =
                std::hypot(track.easting[record] - source.place.east, track.northing[record] - source.place.north);
            if (!(away < least)) continue;
            least = away;
            place.record = record;
            place.east = track.easting[record];
            place.north = track.northing[record];
        }
        places.push_back(place);
    }
    return places;
}

struct FitFigures {
    std::vector<double> plan_errors;  // metres
    std::vector<double> slant_errors; // share
    int held = 0;                     // by "+-", on all three axes
    int held_axes = 0;
    int sides_unknown = 0;
    int unflagged_and_off = 0; // by over a metre
    int unflagged = 0;
    int unfitted = 0;
    double milliseconds = 0;
};

void take_fits(FitFigures& figures, KnownSurvey& known)
{
    const FitSurvey fitted = fit_survey(known.state());
    const std::vector<FitPlace> places = places_over(known);
    const auto start = Clock::now();
    const std::vector<DipoleFit> fits = fit_places(fitted, places, known.field, {});
    figures.milliseconds += milliseconds_since(start);
    for (std::size_t at = 0; at < fits.size(); ++at) {
        const DipoleFit& fit = fits[at];
        if (!fit.is_fitted()) {
            ++figures.unfitted;
            continue;
        }
        const GridVector off = fit.dipole.place - known.sources[at].place;
        figures.plan_errors.push_back(plan_length(off));
        const int held = (std::abs(off.east) <= fit.error.east ? 1 : 0) +
                         (std::abs(off.north) <= fit.error.north ? 1 : 0) + (std::abs(off.up) <= fit.error.up ? 1 : 0);
        figures.held += held == 3 ? 1 : 0;
        figures.held_axes += held;
        figures.sides_unknown += fit.is_side_unknown() ? 1 : 0;
        if (!flag_text(fit).empty()) continue;
        ++figures.unflagged;
        figures.unflagged_and_off += plan_length(off) > 1 ? 1 : 0;
    }
}

void print_fits(const char* kind, FitFigures& figures)
{
    std::vector<double>& errors = figures.plan_errors;
    const double count = static_cast<double>(std::max<std::size_t>(errors.size(), 1));
    std::printf(
        "%-34s %4zu fits: median %.3f m, 90 %% within %.3f m, all within %.2f m; +- holds %.0f %% (axes %.0f %%); "
        "%d unflagged, %d of them off by over 1 m; %d sides unknown; %d refused; %.0f ms\n",
        kind, errors.size(), percentile(errors, 0.5).value_or(0), percentile(errors, 0.9).value_or(0),
        percentile(errors, 1).value_or(0), 100 * figures.held / count, 100 * figures.held_axes / (3 * count),
        figures.unflagged, figures.unflagged_and_off, figures.sides_unknown, figures.unfitted, figures.milliseconds);
}

struct ProposalFigures {
    int sources = 0;
    int found = 0; // within half an altitude
    int doubled = 0;
    int wrong = 0;
    double milliseconds = 0;
};

void take_proposals(ProposalFigures& figures, KnownSurvey& known)
{
    SurveyState& state = known.state();
    if (const std::string refusal = update_residual(state); !refusal.empty()) throw std::runtime_error(refusal);
    const FitSurvey fitted = fit_survey(state);
    const auto start = Clock::now();
    const ProposalList list = find_proposals(fitted, proposal_task(state, known.field), {});
    figures.milliseconds += milliseconds_since(start);
    std::vector<int> hits(known.sources.size(), 0);
    for (const Proposal& proposal : list.dipoles) {
        const double reach = altitude_near(fitted, proposal.place.record) / 2;
        bool is_right = false;
        for (std::size_t source = 0; source < known.sources.size(); ++source) {
            if (plan_length(proposal.fit.dipole.place - known.sources[source].place) > reach) continue;
            ++hits[source];
            is_right = true;
            break;
        }
        figures.wrong += is_right ? 0 : 1;
    }
    figures.sources += static_cast<int>(hits.size());
    for (const int hit : hits) {
        figures.found += hit > 0 ? 1 : 0;
        figures.doubled += hit > 1 ? 1 : 0;
    }
}

void add_noise(KnownSurvey& known, double deviation)
{
    survey::Random random(9);
    SampleStore& store = known.state().processing.store;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
            store.sensors[sensor].averages[0][record] += deviation * random.normal();
        }
    }
}

void print_proposals(const char* kind, const ProposalFigures& figures)
{
    std::printf("%-34s %d of %d found, %d false, %d twice; %.0f ms\n", kind, figures.found, figures.sources,
                figures.wrong, figures.doubled, figures.milliseconds);
}

// One fit of 1,500 readings, and one more round of it.
void print_speed(KnownSurvey& known)
{
    const FitSurvey fitted = fit_survey(known.state());
    FitPlace place = places_over(known).front();
    place.radius = 5;
    FitTask task = fit_task(fitted, place, known.field);
    while (task.readings.count() < 1500 && *place.radius < 60) {
        *place.radius += 0.25;
        task = fit_task(fitted, place, known.field);
    }
    auto start = Clock::now();
    const DipoleFit fit = fit_together({task}, {}).front();
    std::printf("first fit of %zu readings: %.1f ms\n", task.readings.count(), milliseconds_since(start));
    ProjectedFit again(task.readings, task.ground.earth, task.readings.field);
    start = Clock::now();
    again.refined(fit.dipole.place - task.readings.origin, fit_bounds(task.readings, task.ground), 30);
    std::printf("a later round of it: %.1f ms\n", milliseconds_since(start));
}

void run(int seeds, std::uint64_t first_seed)
{
    const fs::path folder = fs::temp_directory_path() / "tarvo_target_bench";
    fs::create_directories(folder);
    for (const int sensors : {3, 1}) {
        FitFigures usual;
        FitFigures crowded;
        ProposalFigures proposed, noisy, empty, crowded_proposed;
        for (std::uint64_t seed = first_seed; seed < first_seed + static_cast<std::uint64_t>(seeds); ++seed) {
            const std::unique_ptr<KnownSurvey> known = loaded_survey({.seed = seed, .sensors = sensors}, folder);
            if (seed == first_seed) print_speed(*known);
            take_fits(usual, *known);
            take_proposals(proposed, *known);
            add_noise(*known, 0.3);
            take_proposals(noisy, *known);
            take_proposals(empty, *loaded_survey({.seed = seed, .sensors = sensors, .sources = 0}, folder));
            const std::unique_ptr<KnownSurvey> other = crowded_survey(seed, sensors);
            take_fits(crowded, *other);
            take_proposals(crowded_proposed, *other);
        }
        std::printf("sensors: %d\n", sensors);
        print_fits("make_survey", usual);
        print_fits("crowded", crowded);
        print_proposals("make_survey", proposed);
        print_proposals("make_survey with 0.3 nT of noise", noisy);
        print_proposals("without sources", empty);
        print_proposals("crowded", crowded_proposed);
    }
    fs::remove_all(folder);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const int first_seed = argc > 2 ? std::atoi(argv[2]) : 101;
        run(argc > 1 ? std::max(std::atoi(argv[1]), 1) : 12, static_cast<std::uint64_t>(first_seed));
        return 0;
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "target_bench: %s\n", fault.what());
        return 1;
    }
}

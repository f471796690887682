#include "survey_files.h"

#include "unattended.h"

#include "definitions/definitions_file.h"
#include "picks/pick_file.h"
#include "processing/fixed_time.h"
#include "text/numbers.h"

#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <span>
#include <stdexcept>
#include <string_view>

namespace tarvo::survey {

namespace {

constexpr double kStartTime = 1'750'057'200; // seconds since 1970: 16 June 2025, 07:00
constexpr std::size_t kBlockSize = 1 << 20;

// Deviations of what the instruments add to the truth.
constexpr double kPositionNoise = 0.015;  // metres
constexpr double kDepthNoise = 0.01;      // metres
constexpr double kAngleNoise = 0.08;      // degrees
constexpr double kTotalFieldNoise = 0.03; // nT
constexpr double kComponentNoise = 0.4;   // nT

constexpr std::array<std::string_view, 6> kBadTexts = {"", "*", "NaN", "---", "ERR", "1.2.3"};

struct FishColumn {
    std::size_t slot;
    const char* name;
};
constexpr std::array<FishColumn, 8> kFishColumns = {{{kTime, "time"},
                                                     {kEast, "east"},
                                                     {kNorth, "north"},
                                                     {kDepth, "depth"},
                                                     {kElevation, "altitude"},
                                                     {kHeading, "heading"},
                                                     {kPitch, "pitch"},
                                                     {kRoll, "roll"}}};

// Appends a number with so many decimals, halves up. A tenth of the cost of a general format: nearly all the time of
// a large survey goes into its digits.
void append_fixed(std::string& text, double value, int decimals)
{
    constexpr std::array<double, 4> kScales = {1, 10, 100, 1000};
    auto units = static_cast<std::int64_t>(std::floor(value * kScales[static_cast<std::size_t>(decimals)] + 0.5));
    if (units < 0) {
        text += '-';
        units = -units;
    }
    std::array<char, 24> digits;
    std::size_t first = digits.size();
    int written = 0;
    do {
        if (written == decimals && decimals > 0) digits[--first] = '.';
        digits[--first] = static_cast<char>('0' + units % 10);
        units /= 10;
        ++written;
    } while (units > 0 || written <= decimals);
    text.append(digits.data() + first, digits.size() - first);
}

// The track's nearest point to each source so far.
struct NearestPoint {
    double distance = std::numeric_limits<double>::infinity(); // metres, in plan
    double seconds = 0;
    Fish fish;
};

void keep_nearest(const Survey& survey, const Fish& fish, double seconds, std::vector<NearestPoint>& nearest)
{
    for (std::size_t source = 0; source < nearest.size(); ++source) {
        Vector apart = sum(fish.position, scaled(survey.sources()[source].position, -1));
        apart.up = 0;
        const double distance = length(apart);
        if (distance < nearest[source].distance) nearest[source] = {distance, seconds, fish};
    }
}

Vector sensor_position(const Fish& fish, const Axes& axes, const LeverArm& arm)
{
    constexpr double kMetres = 0.001;
    const double turns = arm.rotation_deg / 360;
    const Vector ahead = scaled(axes.u, arm.offset_mm * kMetres);
    const Vector to_port = scaled(axes.v, arm.arm_mm * kMetres * cosine_of_turns(turns));
    const Vector upwards = scaled(axes.w, arm.arm_mm * kMetres * sine_of_turns(turns));
    return sum(sum(fish.position, ahead), sum(to_port, upwards));
}

// Degrees of a full circle, 0.0 to 359.9 once written with one decimal.
double whole_circle(double degrees)
{
    if (degrees < -0.05) return degrees + 360;
    return degrees < 359.95 ? degrees : degrees - 360;
}

std::string header(const SurveyDefinitions& definitions)
{
    std::string text;
    for (const FieldSlot& slot : definitions.fields)
        if (!is_unused_name(slot.name)) text += (text.empty() ? "" : ",") + slot.name;
    for (const SensorDefinition& sensor : std::span(definitions.sensors).subspan(1))
        for (int component = 1; component <= definitions.components_per_sensor; ++component)
            text += "," + sensor.component_columns[static_cast<std::size_t>(component)];
    return text;
}

// The data file, written in large blocks. Bad fields are drawn apart from the noise, so that the good ones are the same
// with and without them.
class DataFile {
public:
    DataFile(const SurveyFiles& files, const Survey& survey, const std::string& header)
        : files_(files), survey_(survey), file_(files.data_file, std::ios::binary | std::ios::trunc),
          noise_(files.plan.seed + 1), mishaps_(~files.plan.seed)
    {
        text_.reserve(kBlockSize + 4096);
        text_ = header;
        end_line();
        flush(); // a file that cannot be written shows at once
    }

    void write_line(double seconds, const Fish& fish)
    {
        append_fixed(text_, kStartTime + seconds, 3);
        write_fish(fish);
        const Axes axes = fish_axes(fish.attitude);
        for (const LeverArm& arm : survey_.lever_arms())
            write_sensor(survey_.field_at(sensor_position(fish, axes, arm), seconds), axes);
        end_line();
        if (text_.size() >= kBlockSize) flush();
    }

    void close()
    {
        flush();
        file_.close();
        check();
    }

private:
    void write_fish(const Fish& fish)
    {
        const double depth = -fish.position.up;
        const double heading = fish.attitude.heading;
        const double counted = files_.heading == HeadingCount::from_north ? 90 - heading : heading;
        field(noisy(fish.position.east, kPositionNoise), 2);
        field(noisy(fish.position.north, kPositionNoise), 2);
        field(noisy(depth, kDepthNoise), 2);
        field(noisy(fish.bottom - depth, kDepthNoise), 2);
        field(whole_circle(noisy(counted, kAngleNoise)), 1);
        field(noisy(fish.attitude.pitch, kAngleNoise), 1);
        field(noisy(fish.attitude.roll, kAngleNoise), 1);
        if (files_.line_column == LineColumn::written) field(fish.survey_line, 0);
    }

    void write_sensor(const Vector& magnetic_field, const Axes& axes)
    {
        if (files_.components == Components::total_field) {
            field(noisy(length(magnetic_field), kTotalFieldNoise), 3);
            return;
        }
        for (const Vector& axis : {axes.u, axes.v, axes.w}) field(noisy(dot(magnetic_field, axis), kComponentNoise), 3);
    }

    void field(double value, int decimals)
    {
        text_ += ',';
        if (files_.bad_share > 0 && mishaps_.uniform() < files_.bad_share)
            text_ += kBadTexts[mishaps_.bits() % kBadTexts.size()];
        else
            append_fixed(text_, value, decimals);
    }

    double noisy(double value, double deviation) { return value + deviation * noise_.normal(); }

    void end_line() { text_ += "\r\n"; }

    void flush()
    {
        file_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
        check();
    }

    void check() const
    {
        if (!file_) throw std::runtime_error(files_.data_file + " cannot be written");
    }

    const SurveyFiles& files_;
    const Survey& survey_;
    std::ofstream file_;
    std::string text_;
    Random noise_;
    Random mishaps_;
};

SurveyDefinitions definitions_of(const SurveyFiles& files, const Survey& survey)
{
    SurveyDefinitions definitions;
    // depths become heights, so that the sensors' heights and the seabed's count upwards
    definitions.flip_depth_sign = 1;
    for (FieldSlot& slot : definitions.fields) slot.name = "N/A";
    for (const auto& [slot, name] : kFishColumns) definitions.fields[slot].name = name;
    if (files.line_column == LineColumn::written) definitions.fields[kLine].name = "line";

    definitions.number_of_sensors = files.plan.sensors;
    definitions.components_per_sensor = static_cast<int>(files.components);
    definitions.component_templates = {"mag*", "mag*_x", "mag*_y", "mag*_z"};
    definitions.sensors.assign(survey.lever_arms().size() + 1, {});
    for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
        const LeverArm& arm = survey.lever_arms()[sensor - 1];
        definitions.sensors[sensor].lever_arm[SensorDefinition::kOffset] = arm.offset_mm;
        definitions.sensors[sensor].lever_arm[SensorDefinition::kLength] = arm.arm_mm;
        definitions.sensors[sensor].lever_arm[SensorDefinition::kRotation] = arm.rotation_deg;
    }
    fill_using_template_number(definitions);
    return definitions;
}

// One pick per source, where the track passes it.
PickList picks_of(const Survey& survey, const std::vector<NearestPoint>& nearest)
{
    constexpr double kStrongMoment = 150; // A m2: about a tonne of steel
    PickList picks;
    clear_picks(picks);
    for (std::size_t source = 0; source < nearest.size(); ++source) {
        const NearestPoint& point = nearest[source];
        const bool strong = length(survey.sources()[source].moment) >= kStrongMoment;
        const Vector& place = point.fish.position;
        append_pick(picks, {.name = "Target " + std::to_string(source + 1),
                            .type = strong ? 2 : 1,
                            .time = kDaysTo1970 + (kStartTime + point.seconds) / kSecondsPerDay,
                            .location = {0, place.east, place.north, point.fish.path}});
    }
    return picks;
}

} // namespace

void write_survey(const SurveyFiles& files)
{
    const Survey survey(files.plan);
    SurveyDefinitions definitions = definitions_of(files, survey);
    Unattended op;
    DataFile data(files, survey, header(definitions));
    std::vector<NearestPoint> nearest(files.picks == PickFile::written ? survey.sources().size() : 0);
    for (std::int64_t line = 0; line < files.plan.data_lines; ++line) {
        const double seconds = static_cast<double>(line) / files.plan.rate;
        const Fish fish = survey.fish_at(seconds);
        data.write_line(seconds, fish);
        keep_nearest(survey, fish, seconds, nearest);
    }
    data.close();
    write_definitions(definitions_file_name_for(files.data_file), definitions, 1, op);
    PickList picks = picks_of(survey, nearest);
    picks.pick_file_name = pick_file_name_for(files.data_file);
    write_pick_file(picks, op); // an empty list writes nothing
}

} // namespace tarvo::survey

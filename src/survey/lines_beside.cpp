#include "survey/lines_beside.h"

#include "survey/survey_readings.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace tarvo {

namespace {

struct PlanVector {
    double x = 0;
    double y = 0;

    double along(const PlanVector& other) const { return x * other.x + y * other.y; }
};

// The straight way from a line's first position to its last.
struct Chord {
    RecordSpan records; // the line's
    PlanVector start;
    PlanVector direction; // of length 1
    double length = 0;    // metres
    double start_distance = 0;
    double stretch = 1; // metres along the track for one of the chord

    PlanVector from_start(const TrackTable& track, std::int32_t record) const
    {
        return {track.easting[record] - start.x, track.northing[record] - start.y};
    }
    double along(const TrackTable& track, std::int32_t record) const
    {
        return from_start(track, record).along(direction);
    }
    double to_port(const TrackTable& track, std::int32_t record) const
    {
        return from_start(track, record).along({-direction.y, direction.x});
    }
};

std::optional<Chord> chord_of(const TrackTable& track, const SurveyLines& lines, std::int32_t line)
{
    if (line < 1 || line > lines.CurrentLine) return std::nullopt;
    Chord chord;
    chord.records = {lines.first_record(line), std::min(lines.last_record(line), track.count)};
    std::int32_t first = chord.records.first;
    std::int32_t last = chord.records.last;
    while (first <= last && !has_position(track, first)) ++first;
    while (last > first && !has_position(track, last)) --last;
    if (first >= last) return std::nullopt;
    chord.start = {track.easting[first], track.northing[first]};
    const PlanVector whole = chord.from_start(track, last);
    chord.length = std::hypot(whole.x, whole.y);
    if (!(chord.length > 0)) return std::nullopt;
    chord.direction = {whole.x / chord.length, whole.y / chord.length};
    chord.start_distance = track.distance[first];
    chord.stretch = (track.distance[last] - track.distance[first]) / chord.length;
    return chord;
}

// The mean offset of a line's records that lie beside a chord; none when they are too few.
std::optional<double> offset_beside(const TrackTable& track, const Chord& chord, const Chord& other)
{
    if (std::abs(other.direction.along(chord.direction)) < std::numbers::sqrt2 / 2) return std::nullopt;
    double sum = 0;
    std::int32_t count = 0;
    ValueExtent covered;
    for (std::int32_t record = other.records.first; record <= other.records.last; ++record) {
        if (!has_position(track, record)) continue;
        const double along = chord.along(track, record);
        if (along < 0 || along > chord.length) continue;
        covered.include(along);
        sum += chord.to_port(track, record);
        ++count;
    }
    const double half = std::min(chord.length, other.length) / 2;
    if (count == 0 || covered.greatest - covered.least < half) return std::nullopt;
    return sum / count;
}

} // namespace

std::vector<LineBeside> lines_beside(const SampleProcessing& run, std::int32_t line, std::size_t most)
{
    const TrackTable track = track_table(run.store);
    const std::optional<Chord> chord = chord_of(track, run.lines, line);
    std::vector<LineBeside> found;
    for (std::int32_t other = 1; chord && other <= run.lines.CurrentLine; ++other) {
        const std::optional<Chord> other_chord = other == line ? std::nullopt : chord_of(track, run.lines, other);
        if (!other_chord) continue;
        if (const std::optional<double> offset = offset_beside(track, *chord, *other_chord)) {
            found.push_back({other, *offset});
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const LineBeside& a, const LineBeside& b) { return std::abs(a.offset) < std::abs(b.offset); });
    if (found.size() > most) found.resize(most);
    std::stable_sort(found.begin(), found.end(),
                     [](const LineBeside& a, const LineBeside& b) { return a.offset > b.offset; });
    return found;
}

ProfileCurve curve_beside(const SampleProcessing& run, std::int32_t beside, std::int32_t line, const double* values)
{
    const TrackTable track = track_table(run.store);
    const std::optional<Chord> chord = chord_of(track, run.lines, beside);
    const std::optional<Chord> other = chord_of(track, run.lines, line);
    ProfileCurve curve;
    if (!chord || !other || values == nullptr) return curve;
    for (std::int32_t record = other->records.first; record <= other->records.last; ++record) {
        if (!has_position(track, record)) continue;
        const bool has_value = is_valid_sensor(values[record]) && is_in_world(values[record]);
        curve.distance.push_back(chord->start_distance + chord->along(track, record) * chord->stretch);
        curve.value.push_back(has_value ? values[record] : std::numeric_limits<double>::quiet_NaN());
    }
    return curve;
}

std::int32_t record_beside(const SampleProcessing& run, std::int32_t beside, std::int32_t line, double distance)
{
    const TrackTable track = track_table(run.store);
    const std::optional<Chord> chord = chord_of(track, run.lines, beside);
    const std::optional<Chord> other = chord_of(track, run.lines, line);
    if (!chord || !other) return 0;
    std::int32_t nearest = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::int32_t record = other->records.first; record <= other->records.last; ++record) {
        if (!has_position(track, record)) continue;
        const double at = chord->start_distance + chord->along(track, record) * chord->stretch;
        if (std::abs(at - distance) >= least) continue;
        least = std::abs(at - distance);
        nearest = record;
    }
    return nearest;
}

std::string line_beside_text(const SampleProcessing& run, const LineBeside& line)
{
    return "line " + line_name_of(run.lines, line.line) + ", " + format_fixed(std::abs(line.offset), 1) + " m to " +
           (line.offset < 0 ? "starboard" : "port");
}

} // namespace tarvo

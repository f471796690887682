#include "processing/run_warnings.h"

#include "processing/angles.h"
#include "text/file_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarvo {

namespace {

std::string name_of_file(std::span<const std::string> file_names, std::size_t file)
{
    return file < file_names.size() ? std::string(last_part(file_names[file])) : "the data";
}

std::string commonest_reason(const RejectedLines& rejected)
{
    const auto most = std::max_element(rejected.counts.begin(), rejected.counts.end());
    return std::string(kLineFaultTexts[static_cast<std::size_t>(most - rejected.counts.begin())]);
}

std::string count_of(std::int64_t few, std::int64_t all)
{
    return (few == 0 ? "None" : "Only " + grouped_digits(std::to_string(few))) + " of " +
           grouped_digits(std::to_string(all));
}

std::int64_t positioned_records(const SampleStore& store)
{
    const TrackTable track = track_table(store);
    std::int64_t positioned = 0;
    for (std::int32_t record = 1; record <= track.count; ++record) positioned += has_position(track, record) ? 1 : 0;
    return positioned;
}

// Metres on WGS 84 of a thousandth of a degree along a meridian.
double meridian_step(double latitude)
{
    const double phi = latitude * kRadiansPerDegree;
    return 111.132954 - 0.559822 * std::cos(2 * phi) + 0.001175 * std::cos(4 * phi);
}

} // namespace

Warnings misfit_warnings(const SampleProcessing& run, std::span<const std::string> file_names)
{
    Warnings warnings;
    for (std::size_t file = 0; file < run.first_lines.size(); ++file) {
        const FirstLines& first = run.first_lines[file];
        if (2 * first.with_time >= first.lines) continue;
        const std::string name = name_of_file(file_names, file);
        warnings.push_back({WarningAbout::data, name,
                            count_of(first.with_time, first.lines) + " first lines of " + name + " have a time (" +
                                commonest_reason(run.rejected) + "): the definitions may not fit"});
    }
    const std::int64_t records = run.store.RecordCount;
    const bool reads_positions = std::count_if(run.plan.channels.begin(), run.plan.channels.end(), [](const auto& at) {
                                     return at.channel == kEast || at.channel == kNorth;
                                 }) == 2;
    if (records == 0 || !reads_positions || run.store.track_follows_sensor) return warnings;
    const std::int64_t positioned = positioned_records(run.store);
    if (2 * positioned < records) {
        warnings.push_back({WarningAbout::data, "positions",
                            count_of(positioned, records) + " samples have a position: the definitions may not fit"});
    }
    return warnings;
}

Warnings overlap_warnings(const SampleProcessing& run, std::span<const std::string> file_names, std::size_t told)
{
    Warnings warnings;
    for (std::size_t at = told; at < run.overlaps.size(); ++at) {
        const std::string name = name_of_file(file_names, run.overlaps[at].file);
        warnings.push_back({WarningAbout::data, name,
                            name + " begins before " + name_of_file(file_names, run.overlaps[at].earlier) +
                                " ends: their times overlap"});
    }
    return warnings;
}

Warnings grid_warnings(const Projection& grid, const GridCoordinates& position)
{
    constexpr double kStep = 0.001; // degrees
    constexpr double kMostDistortion = 0.012;
    constexpr double kAcrossTheEquator = 9; // degrees, 1,000 km
    const GeographicPlace place = grid.to_geographic(position);
    if (!place.is_known()) return {};
    const std::string& name = grid.name();
    const bool is_utm = name.find("UTM zone") != std::string::npos;
    const bool other_half = is_utm && ((name.ends_with('S') && place.latitude > kAcrossTheEquator) ||
                                       (name.ends_with('N') && place.latitude < -kAcrossTheEquator));
    // Beyond a pole the scale is right again, on the other side of the world.
    constexpr double kPole = 10.1e6; // metres
    const double from_equator = position.northing - (name.ends_with('S') ? 10e6 : 0);
    const bool beyond_pole = is_utm && std::abs(from_equator) > kPole;
    const double step = place.latitude > 0 ? -kStep : kStep;
    const GridCoordinates beside = grid.to_grid({place.longitude, place.latitude + step});
    const double scale = std::hypot(beside.easting - position.easting, beside.northing - position.northing) /
                         meridian_step(place.latitude);
    if (!other_half && !beyond_pole && !(std::abs(scale - 1) > kMostDistortion)) return {};
    return {{WarningAbout::data, name,
             "The positions lie more than 1,000 km off the survey grid " + name + ": its zone may be the wrong one"}};
}

} // namespace tarvo

#include "targets/target_list.h"

#include "picks/pick_times.h"
#include "processing/altitude.h"
#include "processing/fixed_time.h"
#include "targets/fit_export.h"
#include "targets/fit_texts.h"
#include "text/quoted.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tarvo {

namespace {

constexpr int kDegreeDecimals = 9; // a tenth of a millimetre

std::string shortest_or_empty(double value)
{
    return is_valid_channel(value) ? format_shortest(value) : "";
}

std::string fixed_or_empty(double value, int decimals)
{
    return is_valid_channel(value) ? format_fixed(value, decimals) : "";
}

double peak_to_peak_at(const FitSurvey& survey, std::int32_t record)
{
    constexpr double kAltitudes = 1.5;
    const SampleStore& store = survey.store();
    const SurveyLines& lines = survey.run().lines;
    const std::int32_t line = line_of_record(lines, record);
    const double here = altitude(store, record);
    const double reach = kAltitudes * (is_valid_channel(here) && here > 0 ? here : kAltitudeWhenUnknown);
    std::int32_t first = record;
    std::int32_t last = record;
    while (first > lines.first_record(line) && store.distance[record] - store.distance[first - 1] <= reach) --first;
    while (last < std::min(lines.last_record(line), store.RecordCount) &&
           store.distance[last + 1] - store.distance[record] <= reach) {
        ++last;
    }
    double largest = kNull;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        const RecordValues& fields = store.sensors[sensor].averages[0];
        double low = 0;
        double high = 0;
        bool has_value = false;
        for (std::int32_t near = first; near <= last; ++near) {
            if (!is_valid_sensor(fields[near])) continue;
            low = has_value ? std::min(low, fields[near]) : fields[near];
            high = has_value ? std::max(high, fields[near]) : fields[near];
            has_value = true;
        }
        if (has_value) largest = std::max(largest, high - low);
    }
    return largest;
}

// One column of a target: how CSV and GeoJSON write it.
struct Column {
    std::string name;
    std::string value;    // empty: null
    bool is_text = false; // else a number
};

std::vector<std::string> split_at_commas(const std::string& text)
{
    std::vector<std::string> parts(1);
    bool in_quotes = false;
    for (const char c : text) {
        if (c == '"') in_quotes = !in_quotes;
        if (c == ',' && !in_quotes) {
            parts.emplace_back();
        } else if (c != '"') {
            parts.back() += c;
        }
    }
    return parts;
}

std::vector<Column> columns_of(const Target& target, const FitSurvey& survey)
{
    const Pick& pick = target.pick;
    std::vector<Column> columns = {{"name", pick.name, true},
                                   {"type", std::to_string(pick.type)},
                                   {"time", format_fixed(seconds_since_1970(pick.time), 4)},
                                   {"x", shortest_or_empty(pick.location[1])},
                                   {"y", shortest_or_empty(pick.location[2])},
                                   {"distance", shortest_or_empty(pick.location[3])},
                                   {"sample", std::to_string(pick.sample_index >= 1 ? pick.sample_index : -1)},
                                   {"remark", target.remark, true},
                                   {"peak_to_peak", fixed_or_empty(target.peak_to_peak, 3)},
                                   {"altitude", fixed_or_empty(target.altitude, 2)},
                                   {"longitude", fixed_or_empty(target.geographic.longitude, kDegreeDecimals)},
                                   {"latitude", fixed_or_empty(target.geographic.latitude, kDegreeDecimals)}};
    const std::vector<std::string> names = split_at_commas(kFitColumns);
    std::vector<std::string> values(names.size());
    if (target.fit) values = split_at_commas(fit_fields(*target.fit, survey));
    for (std::size_t at = 0; at < names.size(); ++at) columns.push_back({names[at], values[at], names[at] == "flags"});
    return columns;
}

} // namespace

GridCoordinates place_of(const Target& target)
{
    if (target.fit && target.fit->is_fitted()) {
        return {target.fit->dipole.place.east, target.fit->dipole.place.north};
    }
    return {target.pick.location[1], target.pick.location[2]};
}

std::vector<Target> target_list(const PickList& picks, const PickRemarks& remarks, std::span<const DipoleFit> fits,
                                const FitSurvey& survey, const Projection* grid)
{
    std::vector<Target> targets;
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        Target target;
        target.pick = pick_at(picks, pick);
        if (const auto remark = remarks.find(target.pick.name); remark != remarks.end()) target.remark = remark->second;
        if (!fits.empty()) target.fit = fits[static_cast<std::size_t>(pick - 1)];
        if (target.pick.sample_index >= 1 && target.pick.sample_index <= survey.store().RecordCount) {
            target.peak_to_peak = peak_to_peak_at(survey, target.pick.sample_index);
            target.altitude = altitude(survey.store(), target.pick.sample_index);
        }
        const GridCoordinates place = place_of(target);
        if (grid != nullptr && place.is_known()) target.geographic = grid->to_geographic(place);
        targets.push_back(std::move(target));
    }
    return targets;
}

std::string target_csv_text(std::span<const Target> targets, const FitSurvey& survey)
{
    std::string text =
        std::string("name,type,time,x,y,distance,sample,remark,peak_to_peak,altitude,longitude,latitude,") +
        kFitColumns + '\n';
    for (const Target& target : targets) {
        std::string line;
        for (const Column& column : columns_of(target, survey)) line += ',' + csv_quoted(column.value);
        text += line.substr(1) + '\n';
    }
    return text;
}

std::vector<MapFeature> target_features(std::span<const Target> targets, const FitSurvey& survey)
{
    std::vector<MapFeature> features;
    for (const Target& target : targets) {
        MapFeature feature{target.pick.name, target.geographic, {}, target.remark};
        if (target.fit) feature.description += (target.remark.empty() ? "" : "; ") + fit_summary(*target.fit);
        for (Column& column : columns_of(target, survey)) {
            if (column.name == "name") continue;
            feature.properties.push_back({std::move(column.name), std::move(column.value), column.is_text});
        }
        features.push_back(std::move(feature));
    }
    return features;
}

} // namespace tarvo

#include "session/target_files.h"

#include "picks/map_export.h"
#include "processing/altitude.h"
#include "processing/median.h"
#include "session/settings_table.h"
#include "survey/survey_residual.h"
#include "survey/survey_targets.h"
#include "targets/report_map.h"
#include "targets/target_list.h"
#include "targets/target_report.h"
#include "text/file_names.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace tarvo {

namespace {

std::vector<Target> targets_of(const SurveyState& survey, const TargetResults& results)
{
    return target_list(survey.picks, results.remarks, results.fits, results.survey, results.grid);
}

std::string name_of(const std::string& path)
{
    return std::string(last_part(path));
}

// "a.csv, b.csv and 3 more"
std::string file_names_text(const std::vector<std::string>& files)
{
    constexpr std::size_t kMost = 6;
    std::string text;
    for (std::size_t file = 0; file < std::min(files.size(), kMost); ++file) {
        text += (text.empty() ? "" : ", ") + name_of(files[file]);
    }
    if (files.size() > kMost) text += " and " + std::to_string(files.size() - kMost) + " more";
    return text;
}

std::string count_text(std::int64_t count)
{
    return grouped_digits(std::to_string(count));
}

// Three percentiles of the altitude over all records; empty without one.
std::string altitudes_text(const SampleStore& store)
{
    std::vector<double> altitudes;
    for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
        const double value = altitude(store, record);
        if (is_valid_channel(value)) altitudes.push_back(value);
    }
    if (altitudes.empty()) return {};
    const auto metres = [&altitudes](double share) { return readable_number(*percentile(altitudes, share), 2); };
    return metres(0.1) + " / " + metres(0.5) + " / " + metres(0.9) + " m (10, 50 and 90 % lie below)";
}

// 1.4826 x the median step between neighbouring readings of a line / sqrt(2), of all sensors; kNull without any.
double survey_noise(const SampleProcessing& run)
{
    std::vector<double> steps;
    for (std::int32_t line = 1; line <= run.lines.CurrentLine; ++line) {
        const std::int32_t last = std::min(run.lines.last_record(line), run.store.RecordCount);
        for (std::size_t sensor = 1; sensor < run.store.sensors.size(); ++sensor) {
            const RecordValues& field = run.store.sensors[sensor].averages[0];
            for (std::int32_t record = run.lines.first_record(line) + 1; record <= last; ++record) {
                if (!is_valid_sensor(field[record]) || !is_valid_sensor(field[record - 1])) continue;
                steps.push_back(std::abs(field[record] - field[record - 1]));
            }
        }
    }
    const std::optional<double> middle = median(steps);
    return middle ? 1.4826 * *middle / std::sqrt(2.0) : kNull;
}

std::vector<ReportFact> survey_facts(const SurveyState& survey, const TargetResults& results)
{
    const SampleProcessing& run = survey.processing;
    const std::int32_t records = run.store.RecordCount;
    const double length = records > 0 ? run.store.distance[records] : 0;
    std::vector<ReportFact> facts = {
        {"Data", file_names_text(data_files_of(survey))},
        {"Survey grid", results.grid != nullptr ? results.grid->name() : "not named by the definitions"},
        {"Survey lines", count_text(run.lines.CurrentLine)},
        {"Track", format_fixed(length / 1000, 2) + " km"},
        {"Sensors", std::to_string(run.store.number_of_sensors())},
        {"Stored samples", count_text(records)},
        {"Lines read", count_text(run.lines_read)},
        {"Lines rejected", count_text(run.lines_rejected)},
        {"Lines not averaged", count_text(run.lines_not_averaged)}};
    const std::string altitudes = altitudes_text(run.store);
    facts.push_back({"Altitude", altitudes.empty() ? "not known: the data have no Elevation column, so that fits take "
                                                     "5 m and give no depth below the seabed"
                                                   : altitudes});
    if (const double noise = survey_noise(run); is_valid_sensor(noise)) {
        facts.push_back({"Noise", readable_number(noise, 3) + " nT from sample to sample"});
    }
    facts.push_back({"Base station", base_station(survey) != nullptr ? "taken off the residual" : "none"});
    for (const std::string& note : residual_notes(survey)) facts.push_back({"Residual", note});
    return facts;
}

bool counts_for_targets(const Setting& setting)
{
    switch (setting.group) {
    case SettingGroup::samples:
    case SettingGroup::filters:
    case SettingGroup::corrections:
    case SettingGroup::residual: return true;
    default: break;
    }
    constexpr std::string_view kOfTargets[] = {"FieldInclination", "FieldDeclination", "ProposalThreshold"};
    return std::find(std::begin(kOfTargets), std::end(kOfTargets), setting.key) != std::end(kOfTargets);
}

std::vector<ReportFact> setting_facts(const Settings& settings)
{
    std::vector<ReportFact> facts;
    for (const Setting& setting : settings_table()) {
        if (!counts_for_targets(setting)) continue;
        std::string value = setting_text(settings, setting);
        if (value.empty()) value = "found by the program";
        if (is_switch(setting)) value = value == "1" ? "on" : "off";
        facts.push_back({plain_caption(setting), value});
    }
    return facts;
}

} // namespace

std::string target_list_text(const std::string& file_name, const SurveyState& survey, const TargetResults& results)
{
    const std::vector<Target> targets = targets_of(survey, results);
    if (file_name.ends_with(".csv")) return target_csv_text(targets, results.survey);
    const bool is_placed = targets.empty() || std::any_of(targets.begin(), targets.end(), [](const Target& target) {
                               return target.geographic.is_known();
                           });
    if (!is_placed) {
        throw std::runtime_error("longitudes and latitudes are not known: the definitions name no Survey Grid that is");
    }
    const std::vector<MapFeature> features = target_features(targets, results.survey);
    return file_name.ends_with(".kml") ? kml_text(features, name_of(survey.data_file_name)) : geojson_text(features);
}

std::string survey_report_text(const SurveyState& survey, const TargetResults& results)
{
    constexpr double kMapWidth = 920; // pixels
    const std::vector<Target> targets = targets_of(survey, results);
    MapScene map{track_table(survey.processing.store), {nullptr}, targets};
    if (has_residual(survey)) map.residual = proposal_task(survey, results.field.direction).residual;
    const std::string title = survey.data_file_name.empty() ? "a live survey" : name_of(survey.data_file_name);
    const ReportFrame frame{title, survey_facts(survey, results), setting_facts(survey), results.field.source,
                            survey_map(map, kMapWidth)};
    return target_report_text(
        frame, {results.survey, targets, {results.places, results.fits, results.field.direction}, results.proposals});
}

} // namespace tarvo

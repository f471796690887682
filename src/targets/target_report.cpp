#include "targets/target_report.h"

#include "picks/pick_times.h"
#include "targets/fit_texts.h"
#include "targets/target_picture.h"
#include "text/quoted.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tarvo {

namespace {

constexpr const char* kStyle = R"(<style>
body { font: 14px/1.4 sans-serif; color: #202020; max-width: 960px; margin: 1em auto; padding: 0 1em; }
h1 { font-size: 22px; } h2 { font-size: 18px; border-bottom: 1px solid #b8b8b8; } h3 { font-size: 16px; }
table { border-collapse: collapse; margin: 0.5em 0; }
td, th { border: 1px solid #d0d0d0; padding: 2px 8px; text-align: left; vertical-align: top; }
td.number { text-align: right; font-variant-numeric: tabular-nums; }
.target { break-inside: avoid; border-top: 1px solid #b8b8b8; margin-top: 1em; }
.caution { background: #fff4d8; border-left: 4px solid #c08000; padding: 2px 8px; margin: 4px 0; }
.remark { font-style: italic; white-space: pre-wrap; }
.pictures { display: flex; flex-wrap: wrap; gap: 8px; align-items: flex-start; }
svg { max-width: 100%; height: auto; }
@media print { body { margin: 0; font-size: 11px; } a { color: inherit; text-decoration: none; } }
</style>
)";

constexpr const char* kMethod =
    "<p>A magnetic dipole is fitted by least squares to the total field within three altitudes of every target (5 to "
    "60 m), together with those of its neighbours and with a constant and a slope for every line and sensor. The place "
    "is searched for from a grid of starts; the moment follows from it. Plus or minus stands for three standard "
    "deviations, widened where neighbouring residuals hang together and by what a curved background may do. The mass "
    "is that of iron which may have such a moment: remanence lets it vary by a factor of 18. A place with a flag is no "
    "place to rely on: read its cautions first.</p>\n";

std::string element(const char* tag, std::string_view text)
{
    return std::string("<") + tag + '>' + markup_escaped(text) + "</" + tag + ">\n";
}

std::string cell(std::string_view text)
{
    return "<td>" + markup_escaped(text) + "</td>";
}

std::string number_cell(double value, int decimals)
{
    return "<td class=\"number\">" + (is_valid_channel(value) ? grouped_digits(format_fixed(value, decimals)) : "") +
           "</td>";
}

std::string fact_table(const std::vector<ReportFact>& facts)
{
    std::string text = "<table>\n";
    for (const ReportFact& fact : facts) text += "<tr>" + cell(fact.name) + cell(fact.value) + "</tr>\n";
    return text + "</table>\n";
}

std::string anchor_of(std::size_t target)
{
    return "target" + std::to_string(target + 1);
}

std::string readable_flags(const DipoleFit& fit)
{
    if (!fit.is_fitted()) return "no fit";
    std::string flags = flag_text(fit);
    if (const std::size_t between = flags.find(';'); between != std::string::npos) flags.replace(between, 1, ", ");
    return flags;
}

constexpr const char* kTargetHeadings =
    "<tr><th>Target</th><th>Easting</th><th>Northing</th><th>Longitude</th><th>Latitude</th><th>Below sensor, m</th>"
    "<th>Below seabed, m</th><th>Moment, A m2</th><th>Flags</th><th>Remark</th></tr>\n";

std::string fit_cells(const DipoleFit& fit)
{
    if (!fit.is_fitted()) return std::string("<td></td><td></td><td></td>") + cell(readable_flags(fit));
    return number_cell(fit.below_sensor, 2) + number_cell(fit.below_seabed, 2) +
           number_cell(length(fit.dipole.moment), 1) + cell(readable_flags(fit));
}

std::string target_table(std::span<const Target> targets)
{
    std::string text = std::string("<table>\n") + kTargetHeadings;
    for (std::size_t at = 0; at < targets.size(); ++at) {
        const Target& target = targets[at];
        const GridCoordinates place = place_of(target);
        text += "<tr><td><a href=\"#" + anchor_of(at) + "\">" + markup_escaped(target.pick.name) + "</a></td>" +
                number_cell(place.easting, 2) + number_cell(place.northing, 2) +
                number_cell(target.geographic.longitude, 7) + number_cell(target.geographic.latitude, 7) +
                fit_cells(target.fit.value_or(DipoleFit{})) + cell(target.remark) + "</tr>\n";
    }
    return text + "</table>\n";
}

// What the operator wanted of this fit alone.
std::string wishes_text(const FitPlace& place)
{
    std::string text;
    if (place.radius) text += "; readings within " + format_fixed(*place.radius, 1) + " m";
    for (const std::int32_t line : place.lines_left_out) text += "; survey line " + std::to_string(line) + " left out";
    for (const int sensor : place.sensors_left_out) text += "; sensor " + std::to_string(sensor) + " left out";
    return text.empty() ? text : text.substr(2);
}

std::vector<ReportFact> facts_of(const Target& target, const FitPlace& place, const FitSurvey& survey)
{
    std::vector<ReportFact> facts;
    if (target.fit) {
        for (FitNumber& number : fit_numbers(*target.fit, survey)) {
            facts.push_back({std::move(number.name), std::move(number.value)});
        }
    }
    const Pick& pick = target.pick;
    facts.push_back({"Picked at", iso_date_and_time(pick.time) + ", " +
                                      grouped_digits(readable_number(pick.location[1], 2)) + " m E, " +
                                      grouped_digits(readable_number(pick.location[2], 2)) + " m N"});
    if (is_valid_channel(target.peak_to_peak)) {
        facts.push_back({"Peak to peak", format_fixed(target.peak_to_peak, 1) + " nT"});
    }
    if (is_valid_channel(target.altitude)) facts.push_back({"Altitude", format_fixed(target.altitude, 2) + " m"});
    if (const std::string wishes = wishes_text(place); !wishes.empty()) facts.push_back({"Fitted with", wishes});
    return facts;
}

std::string pictures(const ReportScene& scene, std::size_t target)
{
    constexpr double kPlan = 300; // pixels
    constexpr double kProfiles = 600;
    const FitPlace& place = scene.fitted.places[target];
    if (!is_in_world(place.east) || !is_in_world(place.north)) return {};
    const std::vector<FitCurve> curves = fit_curves(scene.survey, scene.fitted, target);
    const SurveyLines& lines = scene.survey.run().lines;
    const TargetScene shown{{place.east, place.north, 0},
                            &scene.fitted.fits[target],
                            curves,
                            [&lines](std::int32_t line) { return survey_line_name(lines, line); }};
    return "<div class=\"pictures\">\n" + target_plan(shown, kPrintColours, kPlan) +
           target_profiles(shown, kPrintColours, kProfiles) + "</div>\n";
}

std::string target_block(const ReportScene& scene, std::size_t at)
{
    const Target& target = scene.targets[at];
    std::string text = "<div class=\"target\" id=\"" + anchor_of(at) + "\">\n" + element("h3", target.pick.name);
    if (!target.remark.empty()) text += "<p class=\"remark\">" + markup_escaped(target.remark) + "</p>\n";
    if (target.fit) {
        for (const std::string& caution : fit_cautions(*target.fit)) {
            text += "<p class=\"caution\">" + markup_escaped(caution) + "</p>\n";
        }
    }
    text += pictures(scene, at);
    return text + fact_table(facts_of(target, scene.fitted.places[at], scene.survey)) + "</div>\n";
}

std::string proposal_rows(const std::vector<Proposal>& proposals, int& number)
{
    std::string text;
    for (const Proposal& proposal : proposals) {
        const DipoleFit& fit = proposal.fit;
        const GridVector place = fit.is_fitted() && proposal.is_dipole
                                     ? fit.dipole.place
                                     : GridVector{proposal.place.east, proposal.place.north, 0};
        text += "<tr>" + cell("Proposal " + std::to_string(++number)) + number_cell(place.east, 2) +
                number_cell(place.north, 2) + number_cell(proposal.peak, 1) + fit_cells(fit) +
                cell(proposal.is_dipole ? "dipole" : "no dipole") + cell(proposal.is_line_end ? "line end" : "") +
                "</tr>\n";
    }
    return text;
}

// That a place is no dipole says little where none could be fitted: how many there are of these, and why.
std::string unfitted_note(const std::vector<Proposal>& proposals)
{
    const auto is_unfitted = [](const Proposal& proposal) { return !proposal.fit.is_fitted(); };
    const auto count = std::count_if(proposals.begin(), proposals.end(), is_unfitted);
    if (count == 0) return {};
    const Proposal& first = *std::find_if(proposals.begin(), proposals.end(), is_unfitted);
    return element("p", "Not fitted and so not judged: " + std::to_string(count) +
                            ", the strongest since: " + first.fit.refusal);
}

std::string proposal_section(const ProposalList& proposals)
{
    std::string text = "<h2>Proposals that nobody has judged</h2>\n" +
                       element("p", "Residual above " + format_fixed(proposals.threshold, 1) + " nT; its noise is " +
                                        format_fixed(proposals.noise, 2) + " nT.");
    if (proposals.dipoles.empty() && proposals.no_dipoles.empty()) return text + element("p", "There are none.");
    int number = 0;
    return text + unfitted_note(proposals.no_dipoles) +
           "<table>\n<tr><th></th><th>Easting</th><th>Northing</th><th>Peak, nT</th><th>Below sensor, m</th>"
           "<th>Below seabed, m</th><th>Moment, A m2</th><th>Flags</th><th>Kind</th><th></th></tr>\n" +
           proposal_rows(proposals.dipoles, number) + proposal_rows(proposals.no_dipoles, number) + "</table>\n";
}

} // namespace

std::string survey_line_name(const SurveyLines& lines, std::int32_t line)
{
    return "Line " + line_name_of(lines, line);
}

std::string target_report_text(const ReportFrame& frame, const ReportScene& scene)
{
    std::string text = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width\">\n" +
                       element("title", "Targets of " + frame.title) + kStyle + "</head>\n<body>\n" +
                       element("h1", "Targets of " + frame.title) + "<h2>Survey</h2>\n" + fact_table(frame.survey);
    if (!frame.map.empty()) text += "<h2>Map</h2>\n" + frame.map;
    text += "<h2>Targets</h2>\n";
    text += scene.targets.empty() ? "<p>No target was picked.</p>\n" : target_table(scene.targets);
    if (scene.proposals != nullptr) text += proposal_section(*scene.proposals);
    for (std::size_t target = 0; target < scene.targets.size(); ++target) text += target_block(scene, target);
    text += std::string("<h2>Method</h2>\n") + kMethod + element("p", "The Earth's field: " + frame.earth_field) +
            "<h2>Settings</h2>\n" + fact_table(frame.settings);
    return text + "</body>\n</html>\n";
}

} // namespace tarvo

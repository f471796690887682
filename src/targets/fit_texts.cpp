#include "targets/fit_texts.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

std::string metres(double value)
{
    return format_fixed(value, 2) + " m";
}

// Three significant digits, no more decimals than two.
std::string rough(double value)
{
    if (value == 0) return "0";
    const int before_point = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
    return grouped_digits(format_fixed(value, std::clamp(3 - before_point, 0, 2)));
}

std::string place_in_plan(const GridVector& place)
{
    return grouped_digits(format_fixed(place.east, 2)) + " m E, " + grouped_digits(format_fixed(place.north, 2)) +
           " m N";
}

std::string place_with_height(const GridVector& place, const FitSurvey& survey)
{
    if (!survey.has_heights()) return place_in_plan(place);
    return place_in_plan(place) + ", vertical " + metres(survey.vertical(place.up));
}

std::string doubt_text(FitDoubt doubt, const DipoleFit& fit)
{
    switch (doubt) {
    case FitDoubt::poor_match:
        return "the dipole explains only " + format_fixed(100 * std::max(fit.r2, 0.0), 0) + " % of the anomaly";
    case FitDoubt::at_bound: return "the search ended at the edge of where a source may lie";
    case FitDoubt::far_from_pick: return "the place lies more than 1.5 altitudes from the pick";
    case FitDoubt::second_solution: return "another place fits nearly as well";
    case FitDoubt::shared_place: return "another target's fit came to the same place";
    case FitDoubt::loose_place: break;
    }
    return "the readings leave the place open to " + metres(plan_length(fit.error)) + " in plan";
}

} // namespace

std::vector<std::string> fit_cautions(const DipoleFit& fit)
{
    if (!fit.is_fitted()) return {"No fit: " + fit.refusal};
    std::vector<std::string> cautions;
    if (fit.is_side_unknown()) {
        cautions.push_back("Side unknown: one pass of one sensor sees a source alike on its left and on its right. The "
                           "slant range holds; the place may be either of the two.");
    }
    for (const FitDoubt doubt : fit.doubts) cautions.push_back("Doubtful: " + doubt_text(doubt, fit) + '.');
    if (fit.misfit) {
        cautions.push_back("Something else is near " + place_in_plan(fit.misfit->place) + ": " +
                           rough(fit.misfit->size) + " nT there are not explained.");
    }
    return cautions;
}

std::vector<FitNumber> fit_numbers(const DipoleFit& fit, const FitSurvey& survey)
{
    if (!fit.is_fitted()) return {};
    const FitNumber slant_range = {"Slant range", metres(fit.slant_range)};
    std::vector<FitNumber> numbers;
    if (fit.is_side_unknown()) numbers.push_back(slant_range);
    numbers.push_back({fit.is_side_unknown() ? "One place" : "Place", place_with_height(fit.dipole.place, survey)});
    if (fit.other_place) numbers.push_back({"Other place", place_with_height(*fit.other_place, survey)});
    numbers.push_back({"Plus or minus", metres(fit.error.east) + " E, " + metres(fit.error.north) + " N, " +
                                            metres(fit.error.up) + " in height"});
    numbers.push_back({"Below the sensor", metres(fit.below_sensor)});
    if (is_valid_channel(fit.below_seabed)) numbers.push_back({"Below the seabed", metres(fit.below_seabed)});
    if (!fit.is_side_unknown()) numbers.push_back(slant_range);
    const GridVector& moment = fit.dipole.moment;
    const double size = length(moment);
    numbers.push_back({"Moment", rough(size) + " A m2, inclination " + format_fixed(moment_inclination(moment), 0) +
                                     ", declination " + format_fixed(moment_declination(moment), 0) + " degrees"});
    numbers.push_back({"Mass of iron", rough(lowest_mass(size)) + " to " + rough(highest_mass(size)) + " kg"});
    numbers.push_back({"Match", "R2 " + format_fixed(fit.r2, 4) + ", rms " + rough(fit.rms) + " nT"});
    numbers.push_back({"Readings", std::to_string(fit.readings) + " on " + std::to_string(fit.lines) +
                                       (fit.lines == 1 ? " line" : " lines")});
    return numbers;
}

std::string fit_summary(const DipoleFit& fit)
{
    if (!fit.is_fitted()) return "no fit";
    std::string flags = flag_text(fit);
    std::replace(flags.begin(), flags.end(), ';', ',');
    const bool has_seabed = is_valid_channel(fit.below_seabed);
    const std::string depth =
        has_seabed ? metres(fit.below_seabed) + " below seabed" : metres(fit.below_sensor) + " below sensor";
    const std::string place = fit.is_side_unknown() ? metres(fit.slant_range) + " away" : depth;
    return (flags.empty() ? "" : flags + ": ") + place + ", " + rough(length(fit.dipole.moment)) + " A m2";
}

} // namespace tarvo

#include "targets/fit_export.h"

#include "processing/fixed_time.h"
#include "text/quoted.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

// Six significant digits.
std::string significant(double value)
{
    constexpr int kDigits = 6;
    if (value == 0) return "0";
    const int before_point = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
    return format_fixed(value, std::clamp(kDigits - before_point, 0, 12));
}

std::string metres_field(double value)
{
    return is_valid_channel(value) ? format_fixed(value, 4) : "";
}

std::string degrees(double value)
{
    return format_fixed(value, 3);
}

std::string vertical_text(const GridVector& place, const FitSurvey& survey)
{
    return survey.has_heights() ? metres_field(survey.vertical(place.up)) : "";
}

constexpr const char* kPlaceColumns = "name,type,time,x,y,";

std::string place_columns_of(const std::string& name, std::int32_t type, double time, double east, double north)
{
    const auto number = [](double value) { return is_valid_channel(value) ? format_shortest(value) : ""; };
    return csv_quoted(name) + ',' + std::to_string(type) + ',' + format_fixed(seconds_since_1970(time), 4) + ',' +
           number(east) + ',' + number(north);
}

std::string place_fields(const GridVector& place, const FitSurvey& survey)
{
    return metres_field(place.east) + ',' + metres_field(place.north) + ',' + vertical_text(place, survey);
}

} // namespace

const char* const kFitColumns = "fit_x,fit_y,fit_z,below_sensor,below_seabed,moment,inclination,declination,mass_low,"
                                "mass_high,rms,r2,lines,readings,error_x,error_y,error_z,slant_range,flags,other_x,"
                                "other_y,other_z";

std::vector<FitPlace> places_of_picks(const PickList& picks)
{
    std::vector<FitPlace> places;
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        const Pick here = pick_at(picks, pick);
        FitPlace place;
        place.east = here.location[1];
        place.north = here.location[2];
        place.record = std::max(here.sample_index, 0);
        places.push_back(place);
    }
    return places;
}

std::string fit_fields(const DipoleFit& fit, const FitSurvey& survey, const std::string& further_flag)
{
    if (!fit.is_fitted()) return std::string(18, ',') + csv_quoted(fit.refusal) + ",,,";
    std::string flags = flag_text(fit);
    if (!further_flag.empty()) flags += (flags.empty() ? "" : ";") + further_flag;
    const GridVector& moment = fit.dipole.moment;
    const double size = length(moment);
    std::string text = place_fields(fit.dipole.place, survey);
    for (const std::string& field :
         {metres_field(fit.below_sensor), metres_field(fit.below_seabed), significant(size),
          degrees(moment_inclination(moment)), degrees(moment_declination(moment)), significant(lowest_mass(size)),
          significant(highest_mass(size)), format_fixed(fit.rms, 4), format_fixed(fit.r2, 6), std::to_string(fit.lines),
          std::to_string(fit.readings), metres_field(fit.error.east), metres_field(fit.error.north),
          metres_field(fit.error.up), metres_field(fit.slant_range), flags}) {
        text += ',' + field;
    }
    return text + ',' + (fit.other_place ? place_fields(*fit.other_place, survey) : ",,");
}

std::string fit_csv_text(const PickList& picks, std::span<const DipoleFit> fits, const FitSurvey& survey)
{
    std::string text = std::string(kPlaceColumns) + kFitColumns + '\n';
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        const Pick here = pick_at(picks, pick);
        text += place_columns_of(here.name, here.type, here.time, here.location[1], here.location[2]) + ',' +
                fit_fields(fits[static_cast<std::size_t>(pick - 1)], survey) + '\n';
    }
    return text;
}

std::string proposal_csv_text(const ProposalList& proposals, const FitSurvey& survey)
{
    std::string text = std::string(kPlaceColumns) + kFitColumns + ",peak,kind\n";
    int number = 0;
    for (const auto* const list : {&proposals.dipoles, &proposals.no_dipoles}) {
        for (const Proposal& proposal : *list) {
            text += place_columns_of("Proposal " + std::to_string(++number), 0, proposal.time, proposal.place.east,
                                     proposal.place.north) +
                    ',' + fit_fields(proposal.fit, survey, proposal.is_line_end ? "line end" : "") + ',' +
                    format_fixed(proposal.peak, 3) + (proposal.is_dipole ? ",dipole\n" : ",no dipole\n");
        }
    }
    return text;
}

} // namespace tarvo

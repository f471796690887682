#pragma once

#include "picks/map_export.h"
#include "picks/pick_list.h"
#include "picks/pick_remarks.h"
#include "ports/projection.h"
#include "targets/dipole_fit.h"
#include "targets/fit_survey.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

// A pick with all that is known about it: what lists and the report are made from.
struct Target {
    Pick pick;
    std::string remark;
    double peak_to_peak = kNull;  // nT: of the sensor that sees the most, within 1.5 altitudes of the pick on its line
    double altitude = kNull;      // metres, at the pick
    std::optional<DipoleFit> fit; // none: nobody asked for it
    GeographicPlace geographic;   // of the fitted place where there is one, else of the pick; not known without a grid
};

// The fitted place in plan where there is one, else the pick's; not known for a pick without one.
GridCoordinates place_of(const Target& target);

// fits: by pick, or empty. grid: nullptr without a survey grid.
std::vector<Target> target_list(const PickList& picks, const PickRemarks& remarks, std::span<const DipoleFit> fits,
                                const FitSurvey& survey, const Projection* grid);

// CSV, lines ended by LF: name,type,time,x,y,distance,sample,remark,peak_to_peak,altitude,longitude,latitude and the
// columns of a fit. Times are seconds since 1970.
std::string target_csv_text(std::span<const Target> targets, const FitSurvey& survey);

// The same columns for maps, with the remark and the fit in a line as description.
std::vector<MapFeature> target_features(std::span<const Target> targets, const FitSurvey& survey);

} // namespace tarvo

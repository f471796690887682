#include "picks/pick_export.h"

#include "picks/pick_times.h"
#include "processing/fixed_time.h"
#include "text/numbers.h"
#include "text/quoted.h"

namespace tarvo {

namespace {

std::string number_or(double value, const char* when_null)
{
    return is_valid_channel(value) ? format_shortest(value) : when_null;
}

std::int32_t sample_or_none(const Pick& pick)
{
    return pick.sample_index >= 1 ? pick.sample_index : -1;
}

std::string csv_line(const Pick& pick)
{
    return csv_quoted(pick.name) + ',' + std::to_string(pick.type) + ',' +
           format_fixed(seconds_since_1970(pick.time), 4) + ',' + number_or(pick.location[1], "") + ',' +
           number_or(pick.location[2], "") + ',' + number_or(pick.location[3], "") + ',' +
           std::to_string(sample_or_none(pick)) + '\n';
}

} // namespace

std::string pick_csv_text(const PickList& picks)
{
    std::string text = "name,type,time,x,y,distance,sample\n";
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) text += csv_line(pick_at(picks, pick));
    return text;
}

std::vector<MapFeature> pick_features(const PickList& picks, const Projection& projection)
{
    std::vector<MapFeature> features;
    for (std::int32_t number = 1; number <= picks.number_of_picks; ++number) {
        const Pick pick = pick_at(picks, number);
        const GridCoordinates place = {pick.location[1], pick.location[2]};
        features.push_back({pick.name,
                            place.is_known() ? projection.to_geographic(place) : GeographicPlace{},
                            {{"type", std::to_string(pick.type)},
                             {"time", iso_date_and_time(pick.time), true},
                             {"easting", number_or(pick.location[1], "")},
                             {"northing", number_or(pick.location[2], "")},
                             {"distance", number_or(pick.location[3], "")},
                             {"sample", std::to_string(sample_or_none(pick))}}});
    }
    return features;
}

} // namespace tarvo

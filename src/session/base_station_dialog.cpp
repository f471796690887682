#include "session/base_station_dialog.h"

#include "intake/base_station_file.h"
#include "survey/survey_residual.h"
#include "text/file_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

std::string readings_text(const BaseStation& base)
{
    std::string text = grouped_digits(std::to_string(base.readings.size()));
    if (base.nulls > 0) text += ", and " + grouped_digits(std::to_string(base.nulls)) + " without a field";
    if (base.repeated > 0) text += ", " + grouped_digits(std::to_string(base.repeated)) + " at the time of another";
    return text;
}

std::string gaps_text(const std::vector<TimeSpan>& gaps)
{
    if (gaps.empty()) return "none over " + format_fixed(kLongestBaseGap, 0) + " s";
    double longest = 0;
    for (const TimeSpan& gap : gaps) longest = std::max(longest, gap.to - gap.from);
    return std::to_string(gaps.size()) + " over " + format_fixed(kLongestBaseGap, 0) + " s, the longest " +
           format_fixed(longest, 0) + " s: no residual there";
}

// Records of the survey that the base says something of.
std::string coverage_text(const SurveyState& survey)
{
    const TrackTable track = track_table(survey.processing.store);
    BaseCursor cursor(*survey.base);
    std::int64_t covered = 0;
    for (std::int32_t record = 1; record <= track.count; ++record) {
        covered += is_valid_sensor(cursor.field_at_date(track.time[record])) ? 1 : 0;
    }
    return grouped_digits(std::to_string(covered)) + " of " + grouped_digits(std::to_string(track.count)) + " samples";
}

} // namespace

BaseStationPage base_station_page(const SurveyState& survey)
{
    BaseStationPage page;
    const std::optional<TimeSpan> track = time_span(track_table(survey.processing.store));
    const std::string survey_span = track ? time_span_text(*track) : "no samples yet";
    page.has_base = survey.base.has_value();
    if (!page.has_base) {
        page.rows = {{"File", "none: the residual keeps the day's changes that are longer than its window"},
                     {"Survey", survey_span}};
        return page;
    }
    const BaseStation& base = *survey.base;
    const std::optional<TimeSpan> span = time_span(base);
    page.gaps = base_gaps(base);
    page.rows = {{"File", std::string(last_part(base.file_name))},
                 {"Readings", readings_text(base)},
                 {"Time", span ? time_span_text(*span) : ""},
                 {"Survey", survey_span},
                 {"Gaps", gaps_text(page.gaps)},
                 {"Covers", coverage_text(survey)},
                 {"Level", format_fixed(survey.residual.base_level, 2) + " nT"}};
    return page;
}

BaseStationCurve base_station_curve(const BaseStation& base)
{
    BaseStationCurve curve;
    for (const BaseReading& reading : base.readings) {
        if (!curve.time.empty() && reading.time - curve.time.back() > kLongestBaseGap) {
            curve.time.push_back((curve.time.back() + reading.time) / 2);
            curve.field.push_back(std::numeric_limits<double>::quiet_NaN());
        }
        curve.time.push_back(reading.time);
        curve.field.push_back(reading.field);
    }
    return curve;
}

bool choose_base_station(SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name = op.choose_file_to_open(
        {"Open the readings of a base station", "Base station files|*.csv;*.txt;*.dat;*.min;*.sec|All files (*.*)|*.*",
         survey.base ? survey.base->file_name : survey.data_file_name, ""});
    if (!file_name) return false;
    BaseStationReading reading = read_base_station(*file_name);
    std::string refusal = std::move(reading.refusal);
    if (refusal.empty()) refusal = take_base_station(survey, std::move(reading.base));
    if (!refusal.empty()) op.show_message(refusal);
    return refusal.empty();
}

void remove_base_station(SurveyState& survey)
{
    survey.base.reset();
    finish_residual(survey);
}

} // namespace tarvo

#include "survey/residual_preview.h"

#include "survey/survey_residual.h"
#include "text/numbers.h"

#include <limits>
#include <utility>

namespace tarvo {

namespace {

constexpr double kGap = std::numeric_limits<double>::quiet_NaN();

void show_nulls_as_gaps(std::vector<double>& values)
{
    for (double& value : values) {
        if (!is_valid_sensor(value)) value = kGap;
    }
}

std::string window_text(const ResidualWindow& window)
{
    std::string text = "Window " + format_fixed(window.width, 1) + " m";
    if (!window.is_automatic) return text;
    return text + (window.has_altitude ? ", by the altitude" : ": the survey has no altitude");
}

} // namespace

ResidualPreview residual_preview(const SurveyState& survey, const ProcessingParameters& parameters, int line,
                                 int sensor)
{
    ResidualPreview preview;
    const SampleProcessing& run = survey.processing;
    if (line < 1 || line > run.lines.CurrentLine || sensor < 1 || sensor > run.store.number_of_sensors()) {
        preview.note = "There is no line yet: load the survey first";
        return preview;
    }
    preview.note = residual_refusal(run.store, run.lines, parameters, base_station(survey));
    if (!preview.note.empty()) return preview;
    const ResidualWindow window = residual_window(run.store, parameters);
    preview.note = window_text(window);
    ResidualProfile profile = residual_profile(run.store, run.lines, line, sensor, parameters, base_station(survey));
    const auto last = profile.first + static_cast<std::int32_t>(profile.distance.size()) - 1;
    preview.distance = std::move(profile.distance);
    preview.field = std::move(profile.reduced);
    preview.background = std::move(profile.background);
    preview.residual = std::move(profile.residual);
    for (std::vector<double>* const values : {&preview.field, &preview.background, &preview.residual}) {
        show_nulls_as_gaps(*values);
    }
    preview.pale.assign(preview.residual.size(), kGap);
    for (std::int32_t record = profile.first; record <= last; ++record) {
        if (!is_window_cut(run.store.distance.data(), record, profile.first, last, window.width)) continue;
        const auto at = static_cast<std::size_t>(record - profile.first);
        preview.pale[at] = preview.residual[at];
        preview.residual[at] = kGap;
    }
    return preview;
}

std::vector<std::string> preview_line_names(const SurveyState& survey)
{
    std::vector<std::string> names;
    const SurveyLines& lines = survey.processing.lines;
    for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
        if (lines.first_record(line) > survey.processing.store.RecordCount) break; // opened, nothing stored
        names.push_back(line_name_of(lines, line));
    }
    return names;
}

int first_preview_line(const SurveyState& survey)
{
    const SurveyLines& lines = survey.processing.lines;
    if (survey.processing.store.RecordCount < 1) return 0;
    if (const std::int32_t current = survey.track_image.current_record; current > 0) {
        return line_of_record(lines, current);
    }
    std::int32_t longest = 1;
    for (std::int32_t line = 2; line <= lines.CurrentLine; ++line) {
        const auto length = [&lines](std::int32_t at) { return lines.last_record(at) - lines.first_record(at); };
        if (length(line) > length(longest)) longest = line;
    }
    return longest;
}

} // namespace tarvo

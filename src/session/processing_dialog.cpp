#include "session/processing_dialog.h"

#include "text/numbers.h"

namespace tarvo {

namespace {

// Everything that the dialog edits.
struct Values {
    ProcessingParameters parameters;
    DisplaySettings settings;
};

enum class Number { whole, single, real };

// A box, the setting behind it and what is said when its text is refused; in the order of the checks.
using Page = ProcessingPage;
struct Box {
    std::string Page::*text;
    const char* key;
    Number number;
    const char* fault;
    double (*value)(const Values&);
};

const Box kBoxes[] = {
    {&Page::Text_logging_scroll_step, "LoggingScrollStep", Number::whole, "The Logging Scroll Step is not valid",
     [](const Values& v) { return static_cast<double>(v.parameters.LoggingScrollStep); }},
    {&Page::Text_sample_rate, "LoggingSampleRate", Number::single, "The sample rate is not valid",
     [](const Values& v) { return static_cast<double>(v.parameters.LoggingSampleRate); }},
    {&Page::Text_line_break_distance, "LoggingLineBreakDistance", Number::single,
     "The line break distance is not valid",
     [](const Values& v) { return static_cast<double>(v.parameters.LoggingLineBreakDistance); }},
    {&Page::Text_line_break_time, "LoggingLineBreakTime", Number::single, "The line break time is not valid",
     [](const Values& v) { return static_cast<double>(v.parameters.LoggingLineBreakTime); }},
    {&Page::Text_average_window, "SmoothWindow", Number::whole, "The averaging window width is not valid",
     [](const Values& v) { return static_cast<double>(v.parameters.SmoothWindow); }},
    {&Page::Text_depth_average_window, "GradientWindow", Number::whole, "The depth averaging window width is not valid",
     [](const Values& v) { return static_cast<double>(v.parameters.GradientWindow); }},
    {&Page::Text_timing_tick, "TimingTick", Number::whole, "The timing tick is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.timing_tick); }},
    {&Page::Text_section_length, "TrackAxisLength", Number::single, "The section length is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.track_axis_length); }},
    {&Page::Text_section_tick_spacing, "TrackAxisTickSpacing", Number::real, "The section tick spacing is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.track_axis_tick_spacing); }},
    {&Page::Text_max_elevation_range, "ElevationMaxRange", Number::real,
     "Warning: The maximum depth range is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.elevation_max_range); }},
    {&Page::Text_max_TMI_range, "TMIMaxRange", Number::real, "Warning: The maximum TMI range is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.tmi_max_range); }},
    {&Page::Text_TMI_tick_spacing, "TMITickSpacing", Number::real, "Warning: The maximum TMI tick spacing is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.tmi_tick_spacing); }},
    {&Page::Text_max_TG_range, "GradientMaxRange", Number::real, "Warning: The maximum TG range is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.gradient_max_range); }},
    {&Page::Text_TG_tick_spacing, "GradientTickSpacing", Number::real,
     "Warning: The maximum TG tick spacing is not valid",
     [](const Values& v) { return static_cast<double>(v.settings.gradient_tick_spacing); }},
};

std::string shown_text(const Box& box, const Values& values)
{
    return format_fixed(box.value(values), box.number == Number::whole ? 0 : 1);
}

std::string exact_text(const Box& box, const Values& values)
{
    const double value = box.value(values);
    return box.number == Number::single ? format_shortest(static_cast<float>(value)) : format_shortest(value);
}

ProcessingPage page_of(const Values& values, std::string (*text_of)(const Box&, const Values&))
{
    ProcessingPage page;
    for (const Box& box : kBoxes) page.*box.text = text_of(box, values);
    page.Check_carry_closing_sample = values.parameters.CarryClosingSample;
    page.Check_circular_heading = values.parameters.CircularHeading;
    page.Check_compass_heading = values.parameters.CompassHeading;
    return page;
}

SettingOutcome take_text(const Box& box, const std::string& text, Values& values)
{
    const std::string_view key = box.key;
    const SettingOutcome outcome = set_processing_parameter(values.parameters, key, text);
    return outcome == SettingOutcome::unknown_key ? set_display_setting(values.settings, key, text) : outcome;
}

// What is said of the first box that does not hold a value of its setting; nullptr when all do.
const char* take_page(const ProcessingPage& page, const Values& current, Values& wanted)
{
    for (const Box& box : kBoxes) {
        const std::string& text = page.*box.text;
        if (trimmed(text) == shown_text(box, current)) continue;
        if (take_text(box, text, wanted) != SettingOutcome::taken) return box.fault;
    }
    wanted.parameters.CarryClosingSample = page.Check_carry_closing_sample;
    wanted.parameters.CircularHeading = page.Check_circular_heading;
    wanted.parameters.CompassHeading = page.Check_compass_heading;
    return nullptr;
}

bool needs_reload(const ProcessingParameters& current, const ProcessingParameters& wanted)
{
    ProcessingParameters rest = wanted; // what needs none, as it stands
    rest.LoggingScrollStep = current.LoggingScrollStep;
    rest.SmoothWindow = current.SmoothWindow;
    rest.GradientWindow = current.GradientWindow;
    return rest != current;
}

} // namespace

ProcessingPage display_processing_parameters(const ProcessingParameters& parameters, const DisplaySettings& settings)
{
    return page_of({parameters, settings}, shown_text);
}

ProcessingPage exact_processing_parameters(const ProcessingParameters& parameters, const DisplaySettings& settings)
{
    return page_of({parameters, settings}, exact_text);
}

ProcessingChanges done_processing_parameters(const ProcessingPage& page, ProcessingParameters& parameters,
                                             DisplaySettings& settings, Operator& op)
{
    ProcessingChanges changes;
    Values wanted = {parameters, settings};
    if (const char* const fault = take_page(page, {parameters, settings}, wanted)) {
        op.show_message(fault);
        return changes;
    }
    parameters.LoggingScrollStep = wanted.parameters.LoggingScrollStep;
    if (needs_reload(parameters, wanted.parameters)) {
        if (!op.ask_yes_no("The data file processing parameter changes require that the data file be reloaded. "
                           "Procced?")) {
            return changes;
        }
        changes.reload = true;
    }
    changes.gradients = wanted.parameters.SmoothWindow != parameters.SmoothWindow ||
                        wanted.parameters.GradientWindow != parameters.GradientWindow;
    changes.redraw = wanted.settings != settings;
    parameters = wanted.parameters;
    settings = wanted.settings;
    changes.status = 0;
    return changes;
}

bool carry_out_changes(const ProcessingChanges& changes, SurveyState& survey, Operator& op)
{
    if (changes.reload && !survey.data_file_name.empty()) return true;
    if (changes.gradients) {
        SampleProcessing& run = survey.processing;
        recalculate_gradient_values(run.store, run.lines, survey.parameters, survey.filters, op);
    }
    return false;
}

} // namespace tarvo

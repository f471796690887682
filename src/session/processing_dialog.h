#pragma once

#include "display/display_settings.h"
#include "ports/operator.h"
#include "processing/processing_parameters.h"
#include "survey/survey_state.h"

#include <string>

namespace tarvo {

// The boxes of Form_processing_parameters.
struct ProcessingPage {
    std::string Text_logging_scroll_step;
    std::string Text_sample_rate;
    std::string Text_line_break_distance;
    std::string Text_line_break_time;
    std::string Text_average_window;
    std::string Text_depth_average_window;
    std::string Text_timing_tick;
    std::string Text_section_length;
    std::string Text_section_tick_spacing;
    std::string Text_max_elevation_range;
    std::string Text_max_TMI_range;
    std::string Text_TMI_tick_spacing;
    std::string Text_max_TG_range;
    std::string Text_TG_tick_spacing;
    bool Check_carry_closing_sample = false;
    bool Check_circular_heading = false;
    bool Check_compass_heading = false;

    bool operator==(const ProcessingPage&) const = default;
};

// The current values as the boxes show them: whole numbers, and reals with one decimal.
ProcessingPage display_processing_parameters(const ProcessingParameters& parameters, const DisplaySettings& settings);

// The same with every digit that the values have.
ProcessingPage exact_processing_parameters(const ProcessingParameters& parameters, const DisplaySettings& settings);

// What has to follow an accepted change.
struct ProcessingChanges {
    int status = -1;        // 0: applied; -1: refused, or No to the reload: the dialog stays open
    bool reload = false;    // the data file
    bool gradients = false; // are to be recalculated
    bool redraw = false;    // track, graphs and colour bars
};

// Done: checks every box and applies what has changed. The first fault is shown and nothing is applied. A change that
// needs the data file reloaded is asked for; No ends it with the scroll step alone applied. A box that still reads what
// it would show for the current value counts as unchanged, so that one decimal does not round 0.25 to 0.2.
ProcessingChanges done_processing_parameters(const ProcessingPage& page, ProcessingParameters& parameters,
                                             DisplaySettings& settings, Operator& op);

// Recalculates the gradients where a change asks for it. True: the data file is to be loaded anew instead.
bool carry_out_changes(const ProcessingChanges& changes, SurveyState& survey, Operator& op);

} // namespace tarvo

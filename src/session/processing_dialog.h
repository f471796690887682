#pragma once

#include "ports/operator.h"
#include "survey/survey_state.h"

#include <functional>
#include <map>
#include <string>

namespace tarvo {

// Texts of the boxes of Form_processing_parameters by their settings' keys; a switch reads 0 or 1.
using ProcessingPage = std::map<std::string, std::string, std::less<>>;

// The current values as the boxes show them: whole numbers, and reals with one decimal.
ProcessingPage display_processing_parameters(const Settings& settings);

// What has to follow an accepted change.
struct ProcessingChanges {
    int status = -1;        // 0: applied; -1: refused, or No to the reload: the dialog stays open
    bool reload = false;    // the data file
    bool gradients = false; // are to be recalculated
    bool residual = false;  // likewise
    bool redraw = false;    // track, graphs and colour bars
};

// Done: checks every box and applies what has changed. The first fault is shown and nothing is applied. A change that
// needs the data file reloaded is asked for; No ends it with what asks for nothing applied alone. A box that still
// reads what it would show for the current value counts as unchanged, so that one decimal does not round 0.25 to 0.2.
// objection: says why settings that are valid by themselves do not suit the survey, which refuses them likewise; empty:
// they do.
using SettingsObjection = std::function<std::string(const Settings& wanted)>;
ProcessingChanges done_processing_parameters(const ProcessingPage& page, Settings& settings, Operator& op,
                                             const SettingsObjection& objection = nullptr);

// The settings that the boxes of a page come to; those of a box that does not hold a value stay as they are.
Settings settings_of_page(const ProcessingPage& page, const Settings& settings);

// "Use all corrections": turns on the switches of that group. True: one was off, and a reload has to follow.
bool use_all_corrections(Settings& settings);

// "Store every line": an interval as long as the data's own, in which no line is left out.
void store_every_line(SurveyState& survey);

// Recalculates gradients and residual where a change asks for it. True: the data file is to be loaded anew instead.
bool carry_out_changes(const ProcessingChanges& changes, SurveyState& survey, Operator& op);

} // namespace tarvo

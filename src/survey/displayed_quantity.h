#pragma once

#include "ports/settings_store.h"
#include "survey/survey_state.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// What is shown of the survey: the quantity that the settings name, in its range and colours.

const Quantity& displayed_quantity(const DisplaySettings& settings);

// The columns of the quantity by sensor from 1, element 0 unused, and by record; null where it has no values yet. Empty
// for the speed.
std::vector<const double*> quantity_columns(const SurveyState& survey, const Quantity& quantity);

// Why the survey has no such quantity; empty when it has, also before anything is loaded.
std::string missing_quantity_text(const SurveyState& survey, const Quantity& quantity);

// The range in use and how it shows. The gradient's runs from 0.
ValueRange shown_range(const SurveyState& survey);
ColourScale shown_colours(const SurveyState& survey);

// Another quantity, by its key, with what it needs: the residual is made for it. Returns why it was refused, in which
// case nothing has changed; empty when it is shown.
std::string choose_quantity(SurveyState& survey, const std::string& key);

// The map of the quantity in use: the settings keep one for quantities of either kind.
void choose_colour_map(DisplaySettings& settings, const std::string& key);
const ColourMap& chosen_colour_map(const DisplaySettings& settings);

// Automatic ranges are those of what was stored when they were made. After values have changed, at the end of a run for
// instance: forgets them all and makes that of the quantity in use anew.
void renew_automatic_range(SurveyState& survey);
// In a run: makes it anew when twice as many samples are stored. True: it is another, and all is to be drawn anew.
bool follow_automatic_range(SurveyState& survey);

// Buttons, Fit and typing act on the range in use; see VScroll_TG_change and fitted_range.
void adjust_shown_range(SurveyState& survey, int index, int value);
bool fit_shown_range(SurveyState& survey); // false: there is no value in view
// "auto", or two numbers with a blank between them; of the gradient the last one counts. Anything else is refused.
SettingOutcome type_shown_range(SurveyState& survey, const std::string& text);

// That the range does not suit the values, which lie far beyond it or use a small part of it; empty when it does.
std::string range_hint(const SurveyState& survey);

// "-2.1 nT/m", "no value": at a record, of a sensor.
std::string quantity_value_text(const SurveyState& survey, std::size_t sensor, std::int32_t record);

} // namespace tarvo

#pragma once

#include "ports/operator.h"
#include "survey/survey_state.h"

class QWidget;

namespace tarvo {

// File > Export: each asks where to and writes the file as a whole; the samples show how far they are. Nobody can touch
// the survey meanwhile.
void export_samples_file(const SurveyState& survey, Operator& op, QWidget* window);
void export_lines_file(const SurveyState& survey, Operator& op);
void export_line_table_file(const SurveyState& survey, Operator& op);
void export_grid_file(const SurveyState& survey, Operator& op); // the displayed quantity as ESRI ASCII grid
void export_track_file(const SurveyState& survey, Operator& op);
void export_picks_csv(const SurveyState& survey, Operator& op);
void export_picks_geojson(const SurveyState& survey, Operator& op);

} // namespace tarvo

#pragma once

#include "survey/survey_state.h"

#include <QRect>

class QPainter;

namespace tarvo {

// What is written over the track picture: the names of the picks, a scale bar at the lower left and the colour legend
// at the lower right; a word in the middle when there is no survey. pixel_ratio: picture pixels to one of the area's.
void draw_track_lettering(QPainter& painter, const QRect& area, double pixel_ratio, const SurveyState& survey);

} // namespace tarvo

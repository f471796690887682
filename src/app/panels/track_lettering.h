#pragma once

#include "survey/survey_state.h"

#include <QColor>
#include <QPalette>
#include <QRect>

class QPainter;

namespace tarvo {

// What is written over the track picture: the names of the picks, a scale bar with a north arrow at the lower left and
// the colour legend at the lower right; a word in the middle when there is no survey. pixel_ratio: picture pixels to
// one of the area's. ink: see lettering_colour.
void draw_track_lettering(QPainter& painter, const QRect& area, double pixel_ratio, const SurveyState& survey,
                          const QColor& ink);

// What the picture is of, along its upper edge: for pictures that leave the window.
void draw_track_caption(QPainter& painter, const QRect& area, const SurveyState& survey, const QColor& ink);

// White, or the text colour of a palette that is dark itself: at night the letters are to be dim, too.
QColor lettering_colour(const QPalette& palette);

} // namespace tarvo

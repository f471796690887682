#pragma once

#include "display/profile_window.h"
#include "survey/survey_state.h"

#include <QColor>
#include <QRect>
#include <QString>

#include <cstdint>
#include <vector>

class QPainter;

namespace tarvo {

// A pick on a colour bar or a graph: an upright line with the pick's name.
struct PickLine {
    std::int32_t pick = 0;
    double x = 0; // pixels
    QString name;
    bool is_current = false;
};

// Those of a stretch that is drawn from `left` on, so many pixels wide; none for an empty stretch.
std::vector<PickLine> pick_lines(const SurveyState& survey, const DistanceRange& stretch, double left, double width);

// The pick whose line is nearest to x within a hand's reach; 0: none.
std::int32_t pick_at_x(const std::vector<PickLine>& lines, double x);

// How lines and names stand out from what is below them.
struct PickLineColours {
    QColor line;
    QColor current;
    QColor edge; // around both; invalid: none
};

void draw_pick_lines(QPainter& painter, const QRect& area, const std::vector<PickLine>& lines,
                     const PickLineColours& colours);
// Along the upper edge of an area. Where picks are crowded, names are left out, the current one's last.
void draw_pick_line_names(QPainter& painter, const QRect& area, const std::vector<PickLine>& lines,
                          const PickLineColours& colours);

// Text with an edge of another colour, so that it can be read over anything.
void draw_outlined(QPainter& painter, const QRect& area, int flags, const QString& text, const QColor& colour,
                   const QColor& edge = Qt::black);

inline constexpr int kLongestPickName = 160; // pixels; longer names end in an ellipsis

} // namespace tarvo

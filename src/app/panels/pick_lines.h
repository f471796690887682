#pragma once

#include "display/profile_window.h"
#include "survey/survey_state.h"

#include <QColor>
#include <QFontMetrics>
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

// A pick's name as it is drawn.
struct PickName {
    std::int32_t pick = 0;
    QString text;
    QRect box;
    bool is_current = false;
};
// Along the upper edge of an area. Where picks are crowded, names are left out, the current one's last.
std::vector<PickName> pick_names(const QRect& area, const std::vector<PickLine>& lines, const QFontMetrics& metrics);

// The pick whose name or line is at a place; 0: none.
std::int32_t pick_at(const std::vector<PickLine>& lines, const std::vector<PickName>& names, const QPointF& place);

// How lines and names stand out from what is below them.
struct PickLineColours {
    QColor line;
    QColor current;
    QColor edge; // around both; invalid: none
};

void draw_pick_lines(QPainter& painter, const QRect& area, const std::vector<PickLine>& lines,
                     const PickLineColours& colours);
void draw_pick_names(QPainter& painter, const std::vector<PickName>& names, const PickLineColours& colours);

// Text with an edge of another colour, so that it can be read over anything.
void draw_outlined(QPainter& painter, const QRect& area, int flags, const QString& text, const QColor& colour,
                   const QColor& edge = Qt::black);

inline constexpr int kLongestPickName = 160; // pixels; longer names end in an ellipsis

} // namespace tarvo

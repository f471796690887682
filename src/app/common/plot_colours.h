#pragma once

#include <QColor>

class QCPAxisRect;
class QPalette;
class QWidget;

namespace tarvo {

// Of a plot's grid and frames: there, and behind the curves.
QColor grid_colour(const QPalette& palette);

// Axes and grid take text colour and font of the widget that holds the plot.
void colour_axes(const QCPAxisRect& rect, const QWidget& holder);

} // namespace tarvo

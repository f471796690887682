#include "app/common/plot_colours.h"

#include <QWidget>

#include <qcustomplot.h>

namespace tarvo {

QColor grid_colour(const QPalette& palette)
{
    constexpr int kFaint = 50; // of 255
    QColor colour = palette.color(QPalette::Text);
    colour.setAlpha(kFaint);
    return colour;
}

void colour_axes(const QCPAxisRect& rect, const QWidget& holder)
{
    const QColor text = holder.palette().color(QPalette::Text);
    const QColor grid = grid_colour(holder.palette());
    for (QCPAxis* const axis : rect.axes()) {
        axis->setBasePen(QPen(text));
        axis->setTickPen(QPen(text));
        axis->setSubTickPen(QPen(text));
        axis->setTickLabelColor(text);
        axis->setLabelColor(text);
        axis->setTickLabelFont(holder.font());
        axis->setLabelFont(holder.font());
        axis->grid()->setPen(QPen(grid, 0, Qt::DotLine));
        axis->grid()->setZeroLinePen(QPen(grid));
    }
}

} // namespace tarvo

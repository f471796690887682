#include "app/dialogs/curve_plot.h"

#include "app/common/plot_colours.h"

#include <QEvent>
#include <QVBoxLayout>

#include <qcustomplot.h>

namespace tarvo {

CurvePlot::CurvePlot(Axis axis, int graphs, QWidget* parent) : QWidget(parent), plot_(new QCustomPlot)
{
    plot_->plotLayout()->clear();
    plot_->setFocusPolicy(Qt::NoFocus);
    auto* const margins = new QCPMarginGroup(plot_);
    for (int graph = 0; graph < graphs; ++graph) {
        auto* const rect = new QCPAxisRect(plot_);
        rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins);
        plot_->plotLayout()->addElement(graph, 0, rect);
        rect->axis(QCPAxis::atLeft)->setLabel(tr("nT"));
        rect->axis(QCPAxis::atLeft)->setNumberFormat(QStringLiteral("f"));
        rect->axis(QCPAxis::atLeft)->setNumberPrecision(1);
        QCPAxis& along = *rect->axis(QCPAxis::atBottom);
        along.setTickLabels(graph + 1 == graphs);
        if (axis == Axis::time) {
            auto ticker = QSharedPointer<QCPAxisTickerDateTime>::create();
            ticker->setDateTimeSpec(Qt::UTC);
            ticker->setDateTimeFormat(QStringLiteral("hh:mm"));
            along.setTicker(ticker);
        }
        rects_.push_back(rect);
    }
    if (axis == Axis::metres) rects_.back()->axis(QCPAxis::atBottom)->setLabel(tr("distance along the track, m"));
    auto* const legend = new QCPLegend;
    rects_.front()->insetLayout()->addElement(legend, Qt::AlignTop | Qt::AlignRight);
    legend->setLayer(QStringLiteral("legend"));
    plot_->legend = legend;
    plot_->setAutoAddPlottableToLegend(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(plot_);
    apply_palette();
}

void CurvePlot::mark(double from, double to)
{
    marked_from_ = from;
    marked_to_ = to;
}

void CurvePlot::set_curves(const std::vector<Curve>& curves)
{
    plot_->clearPlottables();
    plot_->clearItems();
    for (const Curve& curve : curves) {
        QCPAxisRect& rect = *rects_[curve.graph];
        QCPGraph* const graph = plot_->addGraph(rect.axis(QCPAxis::atBottom), rect.axis(QCPAxis::atLeft));
        graph->setPen(QPen(curve.colour, 0));
        graph->setName(curve.name);
        if (!curve.name.isEmpty()) graph->addToLegend();
        graph->setData(QVector<double>(curve.x.begin(), curve.x.end()), QVector<double>(curve.y.begin(), curve.y.end()),
                       true);
    }
    for (QCPAxisRect* const rect : rects_) {
        rect->axis(QCPAxis::atLeft)->rescale();
        rect->axis(QCPAxis::atLeft)->scaleRange(1.1);
        rect->axis(QCPAxis::atBottom)->rescale();
    }
    for (QCPAxisRect* const rect : rects_)
        rect->axis(QCPAxis::atBottom)->setRange(rects_[0]->axis(QCPAxis::atBottom)->range());
    if (marked_to_ > marked_from_) {
        auto* const shade = new QCPItemRect(plot_);
        shade->setClipAxisRect(rects_.front());
        QColor colour = palette().color(QPalette::Highlight);
        colour.setAlpha(50);
        shade->setBrush(colour);
        shade->setPen(Qt::NoPen);
        for (QCPItemPosition* const corner : {shade->topLeft, shade->bottomRight}) {
            corner->setTypeX(QCPItemPosition::ptPlotCoords);
            corner->setTypeY(QCPItemPosition::ptAxisRectRatio);
            corner->setAxisRect(rects_.front());
            corner->setAxes(rects_.front()->axis(QCPAxis::atBottom), rects_.front()->axis(QCPAxis::atLeft));
        }
        shade->topLeft->setCoords(marked_from_, 0);
        shade->bottomRight->setCoords(marked_to_, 1);
    }
    plot_->legend->setVisible(plot_->legend->itemCount() > 1);
    apply_palette();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void CurvePlot::apply_palette()
{
    plot_->setBackground(palette().brush(QPalette::Base));
    for (const QCPAxisRect* const rect : rects_) colour_axes(*rect, *this);
    plot_->legend->setBrush(palette().brush(QPalette::Base));
    plot_->legend->setBorderPen(QPen(grid_colour(palette())));
    plot_->legend->setTextColor(palette().color(QPalette::Text));
    plot_->legend->setFont(font());
}

void CurvePlot::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        apply_palette();
        plot_->replot(QCustomPlot::rpQueuedReplot);
    }
    QWidget::changeEvent(event);
}

} // namespace tarvo

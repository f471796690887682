#pragma once

#include "app/panels/pick_lines.h"

#include <qcustomplot.h>

#include <vector>

namespace tarvo {

// The picks over one of the plots.
class PickLinesItem : public QCPAbstractItem {
public:
    PickLinesItem(QCustomPlot* plot, QCPAxisRect* rect, const SurveyState& survey, bool has_names)
        : QCPAbstractItem(plot), rect_(*rect), survey_(survey), has_names_(has_names)
    {
        setClipAxisRect(rect);
        setAntialiased(false); // lines of one pixel
    }

    PickLineColours colours;

    std::vector<PickLine> lines() const
    {
        const QCPRange range = rect_.axis(QCPAxis::atBottom)->range();
        return pick_lines(survey_, {range.lower, range.upper}, rect_.left(), rect_.width());
    }

    // As the painter of the plot, of the widget's font, has placed them.
    std::vector<PickName> names(const QFontMetrics& metrics) const
    {
        if (!has_names_) return {};
        return pick_names(rect_.rect().adjusted(0, 1, 0, 0), lines(), metrics);
    }

    // A click is judged by the widget, as over the colour bars.
    double selectTest(const QPointF&, bool, QVariant*) const override { return -1; }

protected:
    void draw(QCPPainter* painter) override
    {
        draw_pick_lines(*painter, rect_.rect(), lines(), colours);
        draw_pick_names(*painter, names(painter->fontMetrics()), colours);
    }

private:
    const QCPAxisRect& rect_;
    const SurveyState& survey_;
    bool has_names_;
};

} // namespace tarvo

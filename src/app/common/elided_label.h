#pragma once

#include <QLabel>
#include <QPainter>

namespace tarvo {

// One line that ends in an ellipsis where there is no room for all of it; its tooltip is to have it whole.
class ElidedLabel : public QLabel {
public:
    ElidedLabel()
    {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.drawText(contentsRect(), Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
    }
};

} // namespace tarvo

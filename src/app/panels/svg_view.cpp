#include "app/panels/svg_view.h"

#include <QPainter>

#include <algorithm>

namespace tarvo {

SvgView::SvgView(QWidget* parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void SvgView::show_picture(const std::string& svg)
{
    renderer_.load(QByteArray::fromStdString(svg));
    setVisible(renderer_.isValid());
    updateGeometry();
    update();
}

// Never larger than it was made: letters would become posters.
int SvgView::heightForWidth(int width) const
{
    const QSize size = renderer_.defaultSize();
    if (size.width() < 1) return 0;
    return std::min(width, size.width()) * size.height() / size.width();
}

void SvgView::paintEvent(QPaintEvent*)
{
    if (!renderer_.isValid()) return;
    const int width_shown = std::min(width(), renderer_.defaultSize().width());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer_.render(&painter, QRectF(0, 0, width_shown, heightForWidth(width_shown)));
}

} // namespace tarvo

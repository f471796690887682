#include "app/panels/fit_mark.h"

#include "processing/angles.h"
#include "targets/fit_curves.h"

#include <QPainter>

#include <algorithm>

namespace tarvo {

namespace {

constexpr double kMostPixels = 4000; // a wider ellipse is beyond every screen

void draw_cross(QPainter& painter, const QPointF& middle)
{
    constexpr double kHalf = 6;
    painter.drawLine(middle + QPointF(-kHalf, -kHalf), middle + QPointF(kHalf, kHalf));
    painter.drawLine(middle + QPointF(-kHalf, kHalf), middle + QPointF(kHalf, -kHalf));
}

} // namespace

void draw_fit_mark(QPainter& painter, const FitMark& mark, const PixelTransform& transform, double pixel_ratio)
{
    const double pixels_a_metre = transform.scale * transform.zoom / pixel_ratio;
    const auto at = [&](const GridVector& place) {
        return QPointF((place.east - transform.x_min) * pixels_a_metre,
                       (transform.y_max - place.north) * pixels_a_metre);
    };
    const QPointF place = at(mark.fit.dipole.place);
    const ErrorEllipse ellipse = error_ellipse(mark.fit);
    const double along = std::min(ellipse.long_half * pixels_a_metre, kMostPixels);
    const double across = std::min(ellipse.short_half * pixels_a_metre, kMostPixels);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const QPen& pen : {QPen(Qt::black, 4), QPen(QColor(255, 210, 60), 2)}) { // with an edge, over every colour
        painter.setPen(pen);
        painter.drawLine(at(mark.pick), place);
        draw_cross(painter, place);
        if (mark.fit.other_place) {
            painter.drawLine(at(mark.pick), at(*mark.fit.other_place));
            draw_cross(painter, at(*mark.fit.other_place));
        }
        painter.save();
        painter.translate(place);
        painter.rotate(-ellipse.direction * kDegreesPerRadian);
        painter.drawEllipse(QPointF(), along, across);
        painter.restore();
    }
    painter.restore();
}

} // namespace tarvo

#include "app/dialogs/lever_arm_view.h"

#include "app/common/texts.h"
#include "display/lever_arm_sketch.h"
#include "text/numbers.h"

#include <QPainter>

#include <vector>

namespace tarvo {

namespace {

constexpr int kGap = 12; // between the two views
constexpr double kMargin = 22;

QPointF at(const SketchPoint& point)
{
    return {point.x, point.y};
}

QString length_text(double metres)
{
    return metres < 1 ? to_qt(format_shortest(metres * 1000)) + QStringLiteral(" mm")
                      : to_qt(format_shortest(metres)) + QStringLiteral(" m");
}

// Frame, titles, axes and fish of one view of side x side pixels, the origin at its top left corner.
void draw_view(QPainter& painter, double side, const QString& title, const QString& up_is, const QPalette& colours)
{
    painter.setPen(colours.color(QPalette::Mid));
    painter.setBrush(colours.color(QPalette::Base));
    painter.drawRect(QRectF(0, 0, side, side));
    painter.setPen(QPen(colours.color(QPalette::Mid), 1, Qt::DotLine));
    painter.drawLine(QPointF(side / 2, 0), QPointF(side / 2, side));
    painter.drawLine(QPointF(0, side / 2), QPointF(side, side / 2));
    painter.setPen(colours.color(QPalette::Text));
    painter.drawText(QRectF(4, 2, side, 16), Qt::AlignLeft, title);
    painter.drawText(QRectF(0, 2, side - 4, 16), Qt::AlignRight, up_is);
}

void draw_sensor(QPainter& painter, const QPointF& foot, const QPointF& place, const QColor& colour)
{
    painter.setPen(QPen(colour, 1.5));
    painter.drawLine(foot, place);
    painter.setBrush(colour);
    painter.drawEllipse(place, 4, 4);
}

// The sensor's number beside it, behind the numbers of those that stand at the same place.
void draw_number(QPainter& painter, const std::vector<QPointF>& places, std::size_t sensor, const QColor& colour)
{
    constexpr double kNear = 8;
    double indent = 7;
    for (std::size_t other = 1; other < sensor; ++other) {
        const QPointF apart = places[other] - places[sensor];
        if (apart.manhattanLength() < kNear) indent += 2.0 * painter.fontMetrics().averageCharWidth();
    }
    painter.setPen(colour);
    painter.drawText(places[sensor] + QPointF(indent, -5), QString::number(sensor));
}

} // namespace

LeverArmView::LeverArmView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Picture_lever_arms"));
    setToolTip(tr("Where the sensors sit for the values entered: from above (ahead is up) and from behind; "
                  "port is left in both"));
}

void LeverArmView::show_sensors(const SurveyDefinitions& definitions, int shown_sensor)
{
    definitions_ = definitions;
    shown_sensor_ = shown_sensor;
    update();
}

QSize LeverArmView::sizeHint() const
{
    return {2 * 150 + kGap, 170};
}

QSize LeverArmView::minimumSizeHint() const
{
    return {2 * 110 + kGap, 130};
}

void LeverArmView::paintEvent(QPaintEvent*)
{
    const double bar_height = fontMetrics().height() + 6;
    const double side = std::min((width() - kGap) / 2.0, height() - bar_height) - 1;
    const LeverArmSketch sketch = lever_arm_sketch(definitions_, side, kMargin);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (sketch.sensors.empty()) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, tr("Sensor positions are read from columns"));
        return;
    }
    const QColor quiet = palette().color(QPalette::Text);
    const QColor loud = palette().color(QPalette::Highlight);
    const QPointF fish = at(sketch.fish);
    for (const bool from_above : {true, false}) {
        draw_view(painter, side, from_above ? tr("from above") : tr("from behind"),
                  from_above ? tr("ahead \u2191") : tr("up \u2191"), palette());
        painter.setBrush(palette().color(QPalette::Mid));
        painter.drawEllipse(fish, 5, from_above ? 14 : 5);
        std::vector<QPointF> places;
        for (const LeverArmSketch::Sensor& sensor : sketch.sensors) {
            places.push_back(at(from_above ? sensor.above : sensor.behind));
        }
        for (std::size_t sensor = places.size() - 1; sensor >= 1; --sensor) { // the first one on top
            const QColor& colour = static_cast<int>(sensor) == shown_sensor_ ? loud : quiet;
            const QPointF foot = from_above ? at(sketch.sensors[sensor].foot_above) : fish;
            draw_sensor(painter, foot, places[sensor], colour);
            draw_number(painter, places, sensor, colour);
        }
        painter.translate(side + kGap, 0);
    }
    painter.resetTransform();
    const double bar = sketch.scale_bar * sketch.pixels_per_metre;
    const double y = side + bar_height / 2;
    painter.setPen(QPen(quiet, 2));
    painter.drawLine(QPointF(2, y), QPointF(2 + bar, y));
    painter.drawText(QPointF(bar + 8, y + fontMetrics().ascent() / 2.0 - 1), length_text(sketch.scale_bar));
}

} // namespace tarvo

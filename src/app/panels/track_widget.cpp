#include "app/panels/track_widget.h"

#include "app/common/texts.h"
#include "app/panels/pick_lines.h"
#include "app/panels/track_lettering.h"
#include "survey/survey_readings.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace tarvo {

namespace {

constexpr int kPointingReach = 20; // around the pointer, in pixels of a common screen
constexpr int kNoteMargin = 10;
constexpr int kPickReach = 7; // a ring and a little, in pixels of a common screen

// The core's pixels where they are.
QImage image_over(const Picture& picture)
{
    return {reinterpret_cast<const uchar*>(picture.row(0)), picture.width(), picture.height(),
            static_cast<qsizetype>(picture.width()) * 4, QImage::Format_RGB32};
}

} // namespace

TrackWidget::TrackWidget(SurveyView& view, QWidget* parent) : QWidget(parent), view_(view)
{
    setObjectName(QStringLiteral("Picture_data_track"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setToolTip(tr("The track in plan view, coloured by gradient. Wheel: zoom, drag: move the enlarged view, "
                  "click: make the nearest point or pick current, double click: mark a pick."));
    setToolTipDuration(4000);
    setAccessibleName(tr("Track"));
    connect(&view_, &SurveyView::track_changed, this, qOverload<>(&QWidget::update));
    connect(&view_, &SurveyView::planned_line_changed, this, qOverload<>(&QWidget::update));
}

QPoint TrackWidget::device_pixel(const QPointF& position) const
{
    return (position * devicePixelRatioF()).toPoint();
}

TrackWidget::Pointed TrackWidget::pointed_at(const QPoint& position) const
{
    const SurveyState& survey = view_.survey();
    if (survey.processing.store.RecordCount < 1) return {};
    const QPoint pixel = device_pixel(position);
    return {place_of_pixel(survey.track_image, pixel.x(), pixel.y()),
            record_at_pixel(survey, {pixel.x(), pixel.y()}, kPointingReach * devicePixelRatioF())};
}

void TrackWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const TrackImage& image = view_.survey().track_image;
    if (image.picture.is_empty()) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    QImage picture = image_over(image.picture);
    picture.setDevicePixelRatio(devicePixelRatioF());
    painter.drawImage(0, 0, picture);
    draw_lettering(painter);
    if (!shows_focus_ || !hasFocus()) return;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void TrackWidget::show_fit(const std::optional<FitMark>& mark)
{
    fit_ = mark;
    update();
}

void TrackWidget::draw_lettering(QPainter& painter) const
{
    const QColor ink = lettering_colour(palette());
    if (fit_) draw_fit_mark(painter, *fit_, active_transform(view_.survey().track_image), devicePixelRatioF());
    draw_track_lettering(painter, rect(), devicePixelRatioF(), view_.survey(), ink);
    draw_outlined(painter, rect().adjusted(0, 0, 0, -kNoteMargin), Qt::AlignHCenter | Qt::AlignBottom,
                  view_.planned_line_text(), ink);
}

QImage TrackWidget::picture() const
{
    const SurveyState& survey = view_.survey();
    QImage picture = image_over(survey.track_image.picture).copy();
    if (!survey.display_settings.lettered_pictures) return picture;
    picture.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(&picture);
    painter.setFont(font());
    draw_lettering(painter);
    draw_track_caption(painter, rect(), survey, lettering_colour(palette()));
    painter.end();
    picture.setDevicePixelRatio(1);
    return picture;
}

// A click shows where it went; who comes by the Tab key is to see that the keys are the track's now.
void TrackWidget::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
        shows_focus_ = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    }
    QWidget::focusInEvent(event);
}

void TrackWidget::resizeEvent(QResizeEvent*)
{
    const QSizeF pixels = QSizeF(size()) * devicePixelRatioF();
    view_.resize_track(static_cast<int>(std::ceil(pixels.width())), static_cast<int>(std::ceil(pixels.height())),
                       std::max(1, qRound(devicePixelRatioF())));
}

void TrackWidget::wheelEvent(QWheelEvent* event)
{
    constexpr double kStepsPerDoubling = 360; // three notches of a common wheel
    const QPoint pixel = device_pixel(event->position());
    view_.zoom_about(pixel.x(), pixel.y(), std::exp2(event->angleDelta().y() / kStepsPerDoubling));
    event->accept();
}

void TrackWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return;
    pressed_at_ = device_pixel(event->position());
    dragged_to_ = *pressed_at_;
    dragging_ = false;
}

void TrackWidget::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint pixel = device_pixel(event->position());
    if (pressed_at_) {
        dragging_ |= (pixel - *pressed_at_).manhattanLength() >= QApplication::startDragDistance();
        if (dragging_) {
            view_.drag(pixel.x() - dragged_to_.x(), pixel.y() - dragged_to_.y());
            dragged_to_ = pixel;
        }
        return;
    }
    const Pointed at = pointed_at(event->pos());
    emit pointed(at.record > 0 ? view_.record_readout(at.record) : view_.place_readout(at.place));
}

void TrackWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !pressed_at_) return;
    pressed_at_.reset();
    if (dragging_) return;
    const QPoint pixel = device_pixel(event->position());
    const TrackImage& image = view_.survey().track_image;
    const std::int32_t pick = pick_at_pixel(image.pick_labels, pixel.x(), pixel.y(), kPickReach * image.symbol_scale);
    clicked_a_pick_ = pick > 0;
    if (clicked_a_pick_) {
        emit pick_clicked(pick);
        return;
    }
    const std::int32_t record = pointed_at(event->pos()).record;
    if (record > 0) view_.make_current(record, Recentre::no);
}

void TrackWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    const std::int32_t record = pointed_at(event->pos()).record;
    if (event->button() == Qt::LeftButton && record > 0 && !clicked_a_pick_) emit double_clicked(record);
}

void TrackWidget::contextMenuEvent(QContextMenuEvent* event)
{
    emit menu_wanted(pointed_at(event->pos()), event->globalPos());
}

void TrackWidget::leaveEvent(QEvent*)
{
    emit pointed({});
}

void TrackWidget::keyPressEvent(QKeyEvent* event)
{
    const QPoint middle = device_pixel(QRectF(rect()).center());
    constexpr double kKeyZoom = 1.25;
    if (event->key() == Qt::Key_Plus) {
        view_.zoom_about(middle.x(), middle.y(), kKeyZoom);
    } else if (event->key() == Qt::Key_Minus) {
        view_.zoom_about(middle.x(), middle.y(), 1 / kKeyZoom);
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace tarvo

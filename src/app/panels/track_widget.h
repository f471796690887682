#pragma once

#include "app/panels/fit_mark.h"
#include "app/panels/survey_view.h"

#include <QImage>
#include <QPoint>
#include <QWidget>

#include <optional>

class QPainter;

namespace tarvo {

// Picture_data_track: shows the core's picture as it is, and over it what is lettering: names of picks, scale bar and
// colour legend. Picture pixels are device pixels, whatever the screen's scale.
class TrackWidget : public QWidget {
    Q_OBJECT

public:
    explicit TrackWidget(SurveyView& view, QWidget* parent = nullptr);

    // The place and the stored record under the pointer; record 0: none near it.
    struct Pointed {
        GridPlace place;
        std::int32_t record = 0;
    };
    Pointed pointed_at(const QPoint& position) const;

    void show_fit(const std::optional<FitMark>& mark); // over the track; nullopt: none

    // The track as it is shown, in the screen's pixels: as `lettered_pictures` says with all that is written over it,
    // or bare.
    QImage picture() const;

    QSize sizeHint() const override { return {900, 560}; }
    QSize minimumSizeHint() const override { return {240, 160}; }

signals:
    void pointed(const QString& text); // for the status bar; empty when the pointer has left
    void pick_clicked(std::int32_t pick);
    void double_clicked(std::int32_t record);
    void menu_wanted(const tarvo::TrackWidget::Pointed& at, const QPoint& screen_position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    QPoint device_pixel(const QPointF& position) const;
    void draw_lettering(QPainter& painter) const;

    SurveyView& view_;
    std::optional<FitMark> fit_;
    std::optional<QPoint> pressed_at_; // device pixels; while the left button is down
    QPoint dragged_to_;
    bool dragging_ = false;
    bool shows_focus_ = false;
    bool clicked_a_pick_ = false; // with the last click: a second one marks no new pick there
};

} // namespace tarvo

#pragma once

#include "app/panels/pick_lines.h"
#include "app/panels/survey_view.h"
#include "display/picture.h"

#include <QWidget>

#include <vector>

class QCheckBox;
class QVBoxLayout;

namespace tarvo {

// Picture_TG_colour_bar of one sensor: a click tells where.
class ColourBar : public QWidget {
    Q_OBJECT

public:
    ColourBar(int sensor, QWidget* parent = nullptr);

    Picture picture;    // device pixels, the core's
    double cursor = -1; // the current point, as a share of the width
    std::vector<PickLine> picks;
    bool has_names = false; // of the picks
    QSize pixel_size() const;

    QSize sizeHint() const override { return {360, 20}; }

signals:
    void clicked(double share); // of the bar's width, from the left
    void pick_clicked(std::int32_t pick);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    std::vector<PickName> names() const;
};

// The sensors' colour bars, one below the other, each with a check box that shows or hides the sensor in bars and
// graphs.
class ColourBarPanel : public QWidget {
    Q_OBJECT

public:
    explicit ColourBarPanel(SurveyView& view, QWidget* parent = nullptr);

    void refresh();
    bool is_sensor_shown(int sensor) const;
    void set_locked(bool locked); // the check boxes, by an open pipe

signals:
    void shown_sensors_changed();
    void pick_clicked(std::int32_t pick);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Row {
        QCheckBox* hidden = nullptr;
        ColourBar* bar = nullptr;
        QWidget* line = nullptr;
    };
    void fit_sensors(int count);
    void draw_bars();
    double cursor_share(const SurveyState& survey) const;

    bool locked_ = false;
    void choose_point(double share);

    SurveyView& view_;
    QVBoxLayout* lines_;
    std::vector<Row> rows_; // of sensors 1.. from element 0 on
};

} // namespace tarvo

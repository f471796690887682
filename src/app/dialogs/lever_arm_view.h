#pragma once

#include "definitions/survey_definitions.h"

#include <QWidget>

namespace tarvo {

// Draws where the lever arms put the sensors, seen from above and from behind.
class LeverArmView : public QWidget {
    Q_OBJECT

public:
    explicit LeverArmView(QWidget* parent = nullptr);

    void show_sensors(const SurveyDefinitions& definitions, int shown_sensor); // the shown one stands out

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SurveyDefinitions definitions_;
    int shown_sensor_ = 1;
};

} // namespace tarvo

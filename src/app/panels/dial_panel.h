#pragma once

#include "survey/survey_readings.h"

#include <QWidget>

#include <vector>

class QGridLayout;
class QLabel;

namespace tarvo {

// Read-outs of the current data line while a run goes on, else of the current point.
class DialPanel : public QWidget {
    Q_OBJECT

public:
    explicit DialPanel(QWidget* parent = nullptr);

    void show_readings(const DialReadings& readings);

private:
    QLabel* add_dial(const QString& name, const QString& caption, const QString& tip);
    void fit_sensors(int count);

    QGridLayout* grid_;
    int dials_ = 0;
    QLabel* heading_;
    QLabel* pitch_;
    QLabel* roll_;
    QLabel* depth_;
    QLabel* elevation_;
    QLabel* speed_;
    std::vector<QLabel*> fields_; // of sensors 1.. from element 0 on
};

} // namespace tarvo

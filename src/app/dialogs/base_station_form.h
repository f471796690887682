#pragma once

#include "session/base_station_dialog.h"

#include <QDialog>

class QFormLayout;
class QPushButton;

namespace tarvo {

class CurvePlot;

// Survey > Base station: the readings in use beside the time of the survey.
class BaseStationForm : public QDialog {
    Q_OBJECT

public:
    // survey and op must outlive the dialog.
    BaseStationForm(SurveyState& survey, Operator& op, QWidget* parent = nullptr);

signals:
    void base_changed(); // and with it the residual

private:
    void show_page();
    void change(bool changed);

    SurveyState& survey_;
    Operator& op_;
    QFormLayout* rows_;
    CurvePlot* plot_;
    QPushButton* remove_;
};

} // namespace tarvo

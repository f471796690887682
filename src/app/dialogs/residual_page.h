#pragma once

#include "survey/survey_state.h"

#include <QWidget>

class QComboBox;
class QLabel;

namespace tarvo {

class CurvePlot;

// What the residual of one line comes to under parameters that are not taken yet: field and background above, the
// residual below.
class ResidualPage : public QWidget {
    Q_OBJECT

public:
    // survey must outlive the page.
    explicit ResidualPage(const SurveyState& survey, QWidget* parent = nullptr);

    void show_parameters(const ProcessingParameters& parameters);

private:
    void show_line();

    const SurveyState& survey_;
    ProcessingParameters parameters_;
    QComboBox* line_;
    QComboBox* sensor_;
    CurvePlot* plot_;
    QLabel* note_;
};

} // namespace tarvo

#pragma once

#include "survey/survey_state.h"

#include <QDialog>

namespace tarvo {

// View > Rejected lines: the lines that the newest run has refused up to now, each with its reason.
class RejectedLinesForm : public QDialog {
    Q_OBJECT

public:
    explicit RejectedLinesForm(const SurveyState& survey, QWidget* parent = nullptr);

signals:
    void definitions_wanted();
};

} // namespace tarvo

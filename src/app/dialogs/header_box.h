#pragma once

#include "survey/survey_state.h"

#include <QWidget>

class QLabel;
class QLineEdit;

namespace tarvo {

// The open data file, its header line number (Text_locations_name_line) and the columns found and missing there.
class HeaderBox : public QWidget {
    Q_OBJECT

public:
    explicit HeaderBox(QWidget* parent = nullptr);

    void show_survey(const SurveyState& survey);
    void set_locked(bool locked);
    std::string header_line_text() const;

signals:
    void header_line_edited(); // by the operator, who has left the box or pressed Enter

private:
    QLabel* file_name_;
    QLineEdit* header_line_;
    QLabel* columns_;
};

} // namespace tarvo

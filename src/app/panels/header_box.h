#pragma once

#include "survey/survey_state.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QMenu;
class QToolButton;

namespace tarvo {

// The open data file, its header line number (Text_locations_name_line) and, behind a button, the list of its columns.
class HeaderBox : public QWidget {
    Q_OBJECT

public:
    explicit HeaderBox(QWidget* parent = nullptr);

    void show_survey(const SurveyState& survey);
    void set_locked(bool locked);
    void set_live(bool live); // what is about a file gives its room to the live side's state
    std::string header_line_text() const;

signals:
    void header_line_edited(); // by the operator, who has left the box or pressed Enter

private:
    void show_columns(const SurveyState& survey);

    QLabel* file_name_;
    QLabel* caption_; // of the header line
    QLineEdit* header_line_;
    QToolButton* columns_;
    QMenu* column_list_;
};

} // namespace tarvo

#pragma once

#include "survey/survey_state.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace tarvo {

// Form_save_new_pick: names the offered location and saves it as a pick.
class NewPickForm : public QDialog {
    Q_OBJECT

public:
    NewPickForm(PickWorkflow& work, const SurveyState& survey, Operator& op, QWidget* parent = nullptr);

    void reject() override; // Esc and the window's own button ask before what was typed is lost

private:
    QWidget* make_fields();
    QWidget* make_buttons();
    void show_texts(const PickTexts& texts);
    PickTexts entered_texts() const;

    void save();

    PickWorkflow& work_;
    const SurveyState& survey_;
    Operator& op_;
    PickTexts offered_; // on opening
    PickTexts shown_;   // before the operator typed
    QComboBox* existing_;
    QLineEdit* name_;
    QLineEdit* id_;
    QLineEdit* type_;
};

} // namespace tarvo

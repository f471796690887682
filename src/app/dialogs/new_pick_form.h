#pragma once

#include "picks/pick_workflow.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace tarvo {

// Form_save_new_pick: names the offered location and saves it as a pick.
class NewPickForm : public QDialog {
    Q_OBJECT

public:
    NewPickForm(PickWorkflow& work, const PickList& picks, QWidget* parent = nullptr);

private:
    QWidget* make_fields();
    QWidget* make_buttons();
    void show_texts(const PickTexts& texts);
    PickTexts entered_texts() const;

    PickTexts shown_; // before the operator typed
    void save();

    PickWorkflow& work_;
    const PickList& picks_;
    QComboBox* existing_;
    QLineEdit* name_;
    QLineEdit* id_;
    QLineEdit* type_;
};

} // namespace tarvo

#pragma once

#include "session/processing_dialog.h"

#include <QDialog>

#include <string>
#include <vector>

class QCheckBox;
class QFormLayout;
class QLineEdit;

namespace tarvo {

// Form_processing_parameters: the processing parameters and the ranges of the display.
class ProcessingForm : public QDialog {
    Q_OBJECT

public:
    // parameters, settings and op must outlive the dialog.
    ProcessingForm(ProcessingParameters& parameters, DisplaySettings& settings, Operator& op,
                   QWidget* parent = nullptr);

    // What has to follow, once the dialog was accepted.
    const ProcessingChanges& changes() const { return changes_; }

private:
    struct Box {
        std::string ProcessingPage::*text;
        QLineEdit* edit;
    };
    struct Switch {
        bool ProcessingPage::*is_on;
        QCheckBox* check;
    };

    void add_box(QFormLayout* rows, std::string ProcessingPage::*text, const char* object_name, const QString& caption,
                 const QString& hint);
    void add_switch(QFormLayout* rows, bool ProcessingPage::*is_on, const char* object_name, const QString& caption,
                    const QString& hint);
    QWidget* sample_group();
    QWidget* filter_group();
    QWidget* corrections_group();
    QWidget* display_group();
    void show_current_values();
    ProcessingPage page() const;
    void done_pressed();

    ProcessingParameters& parameters_;
    DisplaySettings& settings_;
    Operator& op_;
    ProcessingChanges changes_;
    std::vector<Box> boxes_;
    std::vector<Switch> switches_;
};

} // namespace tarvo

#pragma once

#include "session/processing_dialog.h"

#include <QDialog>

#include <functional>
#include <vector>

class QFormLayout;

namespace tarvo {

class ResidualPage;
struct Setting;
enum class SettingGroup;

// Form_processing_parameters: a box for every setting that has a group in the settings table.
class ProcessingForm : public QDialog {
    Q_OBJECT

public:
    // survey and op must outlive the dialog.
    ProcessingForm(SurveyState& survey, Operator& op, QWidget* parent = nullptr);

    // What has to follow, once the dialog was accepted.
    const ProcessingChanges& changes() const { return changes_; }

    void reject() override; // Esc and the window's own button ask before what was typed is lost

private:
    struct Box {
        const Setting* setting;
        std::function<QString()> text;
    };

    QWidget* make_parameters();
    QWidget* make_residual();
    QWidget* make_group(SettingGroup group, const QString& title);
    void add_switch(QFormLayout& rows, const Setting& setting);
    void add_choice(QFormLayout& rows, const Setting& setting);
    void add_text_box(QFormLayout& rows, const Setting& setting);
    void show_residual();
    ProcessingPage page() const;
    void done_pressed();

    SurveyState& survey_;
    Settings& settings_; // the survey's
    Operator& op_;
    ProcessingChanges changes_;
    std::vector<Box> boxes_;
    ProcessingPage opened_; // what the boxes held at first
    ResidualPage* residual_ = nullptr;
};

} // namespace tarvo

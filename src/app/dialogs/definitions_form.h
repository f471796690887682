#pragma once

#include "session/definitions_editor.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QStringListModel;
class QTableView;
class QTabWidget;

namespace tarvo {

class DataFieldsPage;
class DataFormatPage;
class PreviewModel;
class SensorsPage;

// Form_define_colum_names: edits a copy of the survey's definitions beside a preview of its data file.
class DefinitionsForm : public QDialog {
    Q_OBJECT

public:
    // survey and op must outlive the dialog.
    DefinitionsForm(SurveyState& survey, Operator& op, QWidget* parent = nullptr);

    // True once accepted definitions differ from those that were in force before.
    bool has_changed_survey() const { return has_changed_survey_; }

    // True when it was closed by the button that also loads the data file.
    bool asks_for_load() const { return asks_for_load_; }

    void reject() override; // Esc and the window's own button ask before what was edited is lost

private:
    QWidget* preview_box();
    QLayout* button_row();
    void add_menu();

    void start_over();
    void show_editor();
    void show_note();
    void show_preview();
    void scroll_to_header();
    void page_edited();
    void sensor_edited();
    void mark_missing();
    void choose_sensor(int sensor);
    void show_sensor(int sensor);
    void sensor_done();
    void fill_templates();
    void switch_data_format(bool in_use);
    void edit_key(const std::string& key, const std::string& value);
    void guess();
    void read_file();
    void save_file();
    bool sensor_is_accepted();
    bool accept_changes();

    SurveyState& survey_;
    Operator& op_;
    DefinitionsEditor editor_;
    int sensor_ = 1;             // on its page
    bool sensor_edited_ = false; // since it came on its page
    bool has_edits_ = false;     // that are not accepted
    bool showing_ = false;       // boxes change by the program, not by the operator
    bool has_changed_survey_ = false;
    bool asks_for_load_ = false;

    QStringListModel* names_; // Combo_names
    PreviewModel* preview_;
    QLabel* note_;
    QTabWidget* tabs_;
    DataFieldsPage* data_fields_;
    SensorsPage* sensors_;
    DataFormatPage* data_format_;
    QSpinBox* header_line_;
    QTableView* table_;
    int shown_header_row_ = 0; // that the table was scrolled to
    QCheckBox* recognised_only_;
    QLabel* rejected_;
    QLabel* warnings_;
    QLabel* caption_;
    QPushButton* done_;
    QPushButton* load_;
};

} // namespace tarvo

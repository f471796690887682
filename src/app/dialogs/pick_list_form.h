#pragma once

#include "app/dialogs/pick_list_model.h"
#include "session/session.h"

#include <QDialog>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QMenuBar;
class QPushButton;
class QTableView;

namespace tarvo {

class PickFilterBar;
class TypeButton;
struct ExportFormat;

// Form_pick_list: the picks as a grid, and the selected one to be edited. It stays open beside the main window.
class PickListForm : public QDialog {
    Q_OBJECT

public:
    // undo: the main window's, which this form offers too.
    PickListForm(Session& session, Operator& op, QAction* undo, QWidget* parent = nullptr);

    void set_fit_summary(std::function<std::string(std::int32_t)> summary);
    void display_pick_list();
    void show_current_pick(); // marked in the grid

    void reject() override; // Esc and the window's own button ask before an edit is lost

signals:
    void type_names_changed(); // a setting, to be kept

private:
    QMenuBar* make_menu(QAction* undo);
    void make_grid();
    QWidget* make_fields();
    QPushButton* make_button(const char* name, const QString& text, const QString& tip, void (PickListForm::*press)());
    void export_picks(const ExportFormat& format);
    void name_types();
    std::vector<std::int32_t> chosen() const; // the picks of the selected rows
    void show_controls();
    void select_row();
    void show_selection();
    void show_texts(const PickTexts& texts);
    void save_edit();
    void cancel_edit();
    void delete_pick();

    Session& session_;
    Operator& op_;
    PickListModel model_;
    PickFilterBar* filter_;
    QTableView* grid_;
    QLabel* file_;
    QLineEdit* name_;
    QLineEdit* id_;
    QLineEdit* type_;
    QLineEdit* remark_;
    TypeButton* type_names_ = nullptr;
    std::vector<QWidget*> editing_;     // can be used while a row is selected
    std::vector<QWidget*> editing_one_; // of a single row
    QAction* write_list_ = nullptr;
};

} // namespace tarvo

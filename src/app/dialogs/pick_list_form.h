#pragma once

#include "app/dialogs/pick_list_model.h"
#include "session/session.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QMenuBar;
class QPushButton;
class QTableView;

namespace tarvo {

// Form_pick_list: the picks as a grid, and the selected one to be edited. It stays open beside the main window.
class PickListForm : public QDialog {
    Q_OBJECT

public:
    // undo: the main window's, which this form offers too.
    PickListForm(Session& session, Operator& op, QAction* undo, QWidget* parent = nullptr);

    void set_fit_summary(std::function<std::string(std::int32_t)> summary);
    void display_pick_list();
    void show_current_pick(); // marked in the grid

private:
    QMenuBar* make_menu(QAction* undo);
    void make_grid();
    QWidget* make_fields();
    QPushButton* make_button(const char* name, const QString& text, const QString& tip, void (PickListForm::*press)());
    void select_row();
    void show_selection();
    void show_texts(const PickTexts& texts);
    void save_edit();
    void cancel_edit();
    void delete_pick();

    Session& session_;
    Operator& op_;
    PickListModel model_;
    QTableView* grid_;
    QLabel* file_;
    QLineEdit* name_;
    QLineEdit* id_;
    QLineEdit* type_;
    QLineEdit* remark_;
    std::vector<QWidget*> editing_; // can be used while a row is selected
    QAction* write_list_ = nullptr;
};

} // namespace tarvo

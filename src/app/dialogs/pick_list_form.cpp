#include "app/dialogs/pick_list_form.h"

#include "app/common/plain_label.h"
#include "app/common/survey_export.h"
#include "app/common/texts.h"
#include "app/dialogs/loss_question.h"
#include "app/dialogs/pick_filter_bar.h"
#include "app/dialogs/type_button.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QVBoxLayout>

namespace tarvo {

PickListForm::PickListForm(Session& session, Operator& op, QAction* undo, QWidget* parent)
    : QDialog(parent), session_(session), op_(op), model_(session.survey, op), filter_(new PickFilterBar),
      grid_(new QTableView), file_(plain_label()), name_(new QLineEdit), id_(new QLineEdit), type_(new QLineEdit),
      remark_(new QLineEdit)
{
    setObjectName(QStringLiteral("Form_pick_list"));
    setWindowTitle(tr("Pick list"));
    make_grid();
    file_->setObjectName(QStringLiteral("Label_pick_file"));
    file_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* const layout = new QVBoxLayout(this);
    layout->setMenuBar(make_menu(undo));
    layout->addWidget(filter_);
    layout->addWidget(grid_, 1);
    layout->addWidget(make_fields());
    layout->addWidget(file_);
    connect(filter_, &PickFilterBar::edited, this, [this] { model_.set_filter(filter_->filter()); });
    resize(1000, 460);                                                // room for names and remarks beside the fits
    session_.pick_work.select_pick_row(session_.survey.current_pick); // opens on it
    display_pick_list();
    grid_->setFocus();
}

QMenuBar* PickListForm::make_menu(QAction* undo)
{
    const auto add = [this](QMenu& menu, const char* name, const QString& text, auto perform) {
        QAction* const action = menu.addAction(text);
        action->setObjectName(QLatin1String(name));
        connect(action, &QAction::triggered, this, perform);
        return action;
    };
    PickWorkflow& work = session_.pick_work;
    auto* const bar = new QMenuBar;
    QMenu& list = *bar->addMenu(tr("&List"));
    add(list, "menu_read_list", tr("&Read list..."),
        [this, &work] { work.menu_read_list(indexed_track(session_.survey)); });
    write_list_ = add(list, "menu_write_list", tr("&Write list"), [&work] { work.menu_write_list(); });
    add(list, "menu_write_list_as", tr("&Save picks as..."), [&work] { work.menu_write_list_as(); });
    list.addSeparator();
    for (const ExportFormat& format : export_formats()) {
        if (format.subject != ExportSubject::picks) continue;
        const std::string name = std::string("menu_list_export_") + format.key;
        add(list, name.c_str(), tr(format.caption), [this, &format] { export_picks(format); });
    }
    list.addSeparator();
    add(list, "menu_close", tr("C&lose"), [this] { close(); });
    QMenu& edit = *bar->addMenu(tr("&Edit"));
    edit.addAction(undo);
    addAction(undo); // its shortcut works here as well
    add(edit, "menu_name_types", tr("&Names of types..."), [this] { name_types(); });
    return bar;
}

// Of several selected rows those alone.
void PickListForm::export_picks(const ExportFormat& format)
{
    const std::vector<std::int32_t> rows = chosen();
    const PickList picks = chosen_picks(session_.survey.picks, rows);
    export_file(format, session_.survey, op_, this, rows.size() > 1 ? &picks : nullptr);
}

void PickListForm::name_types()
{
    std::string& names = session_.survey.pick_settings.PickTypeNames;
    bool is_taken = false;
    const QString text = QInputDialog::getMultiLineText(
        this, tr("Names of types"), tr("A type's number and name on each line, as in \"1 mine\""),
        to_qt(names).replace(QStringLiteral("; "), QStringLiteral("\n")), &is_taken);
    if (!is_taken) return;
    names = pick_types_text(pick_types_of(to_utf8(text)));
    type_names_->set_names(names);
    display_pick_list();
    emit type_names_changed();
}

std::vector<std::int32_t> PickListForm::chosen() const
{
    std::vector<std::int32_t> picks;
    for (const QModelIndex& row : grid_->selectionModel()->selectedRows())
        picks.push_back(model_.pick_of_row(row.row()));
    return picks;
}

void PickListForm::make_grid()
{
    grid_->setObjectName(QStringLiteral("Grid_anomaly_picks"));
    grid_->setToolTip(tr("Click on a header: sort by that column, the list itself keeps its order. Double click on a "
                         "pick: show it on the track. Ctrl and Shift select several, for type, Delete and export."));
    grid_->setToolTipDuration(4000);
    grid_->setModel(&model_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    grid_->setAccessibleName(tr("Picks"));
    grid_->setTabKeyNavigation(false);
    grid_->setAlternatingRowColors(true);
    grid_->horizontalHeader()->setSortIndicatorClearable(true); // a third click: the order of the list
    QHeaderView& columns = *grid_->horizontalHeader();
    columns.setSectionResizeMode(QHeaderView::ResizeToContents);
    columns.setResizeContentsPrecision(0); // the rows in view, of a list of any length
    for (const int column : {0, PickListModel::kRemarkColumn}) {
        columns.setSectionResizeMode(column, QHeaderView::Stretch);
    }
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);
    grid_->sortByColumn(-1, Qt::AscendingOrder);
    grid_->setSortingEnabled(true);
    // Not the current row: the grid takes one with the keyboard, and nobody has chosen it.
    connect(grid_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &PickListForm::select_row);
    connect(&model_, &QAbstractItemModel::modelReset, this, &PickListForm::show_selection);
    connect(grid_, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { session_.pick_work.choose_pick(model_.pick_of_row(index.row())); });
}

QPushButton* PickListForm::make_button(const char* name, const QString& text, const QString& tip,
                                       void (PickListForm::*press)())
{
    auto* const button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, press);
    return button;
}

QWidget* PickListForm::make_fields()
{
    auto* const fields = new QWidget;
    auto* const row = new QHBoxLayout(fields);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add_field = [row](QLineEdit& field, const char* name, const QString& caption, const QString& tip,
                                 int stretch) {
        field.setObjectName(QLatin1String(name));
        field.setToolTip(tip);
        auto* const label = plain_label(caption);
        label->setBuddy(&field);
        row->addWidget(label);
        row->addWidget(&field, stretch);
    };
    add_field(*name_, "Text_anomaly_name", tr("&Name"), tr("Name of the series of the selected pick"), 4);
    add_field(*id_, "Text_anomaly_ID", tr("&ID"), tr("Number in the series, 0 or more"), 1);
    add_field(*type_, "Text_anomaly_type", tr("&Type"), tr("Type number, 0 or more"), 1);
    type_names_ = new TypeButton(*type_);
    type_names_->set_names(session_.survey.pick_settings.PickTypeNames);
    row->addWidget(type_names_);
    add_field(*remark_, "Text_anomaly_remark", tr("Re&mark"), tr("Anything about the pick; kept beside the pick file"),
              4);
    QPushButton* const save = make_button("Command_save_edit", tr("Save"),
                                          tr("Save the edited name, ID and type (Enter)"), &PickListForm::save_edit);
    save->setDefault(true);
    QPushButton* const cancel =
        make_button("Command_cancel_edit", tr("Cancel"), tr("Put the saved texts back"), &PickListForm::cancel_edit);
    QPushButton* const remove = make_button("Command_delete_selected_pick", tr("Delete"),
                                            tr("Delete the selected pick"), &PickListForm::delete_pick);
    QPushButton* const close_button = new QPushButton(tr("Close"));
    close_button->setObjectName(QStringLiteral("Command_close_form"));
    close_button->setToolTip(tr("Close the list (Esc)"));
    close_button->setAutoDefault(false);
    connect(close_button, &QPushButton::clicked, this, &QDialog::close);
    for (QPushButton* const button : {save, cancel, remove, close_button}) row->addWidget(button);
    editing_ = {type_, type_names_, save, cancel, remove};
    editing_one_ = {name_, id_, remark_};
    return fields;
}

void PickListForm::set_fit_summary(std::function<std::string(std::int32_t)> summary)
{
    model_.set_fit_summary(std::move(summary));
}

void PickListForm::display_pick_list()
{
    model_.show_list();
    const std::string& file_name = session_.survey.picks.pick_file_name;
    file_->setText(file_name.empty() ? tr("No pick file yet") : to_qt(file_name));
    file_->setToolTip(plain_tip(to_qt(file_name)));
}

void PickListForm::show_current_pick()
{
    grid_->viewport()->update();
    grid_->horizontalHeader()->setSectionResizeMode(PickListModel::kFitColumn, QHeaderView::ResizeToContents);
}

void PickListForm::select_row()
{
    const std::vector<std::int32_t> rows = chosen();
    show_texts(session_.pick_work.select_pick_row(rows.size() == 1 ? rows.front() : 0));
}

// After the grid was made anew: the pick that is being edited is selected again, wherever its row is now.
void PickListForm::show_selection()
{
    const std::int32_t edited = session_.pick_work.edited_pick();
    const QSignalBlocker quiet(grid_->selectionModel());
    const int row = model_.row_of_pick(edited);
    if (row >= 0) {
        grid_->setCurrentIndex(model_.index(row, 0));
        grid_->scrollTo(model_.index(row, 0));
    }
    show_texts(session_.pick_work.select_pick_row(edited));
}

void PickListForm::show_texts(const PickTexts& texts)
{
    name_->setText(to_qt(texts.name));
    id_->setText(to_qt(texts.id));
    type_->setText(to_qt(texts.type));
    remark_->setText(to_qt(session_.pick_work.remark_of(session_.pick_work.edited_pick())));
    show_controls();
}

void PickListForm::show_controls()
{
    const PickListControls controls = session_.pick_work.list_controls();
    const bool has_several = chosen().size() > 1;
    for (QWidget* const control : editing_) control->setEnabled(controls.editing_enabled || has_several);
    for (QWidget* const control : editing_one_) control->setEnabled(controls.editing_enabled);
    write_list_->setEnabled(controls.writing_enabled);
}

void PickListForm::save_edit()
{
    PickWorkflow& work = session_.pick_work;
    const std::vector<std::int32_t> rows = chosen();
    if (rows.size() > 1) {
        work.set_types(rows, to_utf8(type_->text()));
        return;
    }
    const PickTexts shown = work.Command_cancel_edit();
    const PickTexts wanted = {edited_text(*name_, shown.name), edited_text(*id_, shown.id),
                              edited_text(*type_, shown.type)};
    work.set_remark(work.edited_pick(), edited_text(*remark_, work.remark_of(work.edited_pick())));
    show_texts(work.Command_save_edit(wanted));
    grid_->viewport()->update(); // a remark is no edit of the list
}

void PickListForm::cancel_edit()
{
    show_texts(session_.pick_work.Command_cancel_edit());
}

void PickListForm::delete_pick()
{
    const std::vector<std::int32_t> rows = chosen();
    if (rows.size() > 1) {
        session_.pick_work.delete_picks(rows, indexed_track(session_.survey));
    } else {
        session_.pick_work.Command_delete_selected_pick(indexed_track(session_.survey));
    }
}

void PickListForm::reject()
{
    const PickWorkflow& work = session_.pick_work;
    const PickTexts shown = work.Command_cancel_edit();
    const std::string remark = work.remark_of(work.edited_pick());
    const bool is_edited = PickTexts{edited_text(*name_, shown.name), edited_text(*id_, shown.id),
                                     edited_text(*type_, shown.type)} != shown ||
                           edited_text(*remark_, remark) != remark;
    if (!is_edited || op_.ask_before_loss(kLossQuestion)) QDialog::reject();
}

} // namespace tarvo

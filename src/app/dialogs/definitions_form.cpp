#include "app/dialogs/definitions_form.h"

#include "app/common/column_box.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/dialogs/data_fields_page.h"
#include "app/dialogs/data_format_page.h"
#include "app/dialogs/loss_question.h"
#include "app/dialogs/preview_model.h"
#include "app/dialogs/sensors_page.h"
#include "definitions/definitions_menu.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSpinBox>
#include <QSplitter>
#include <QStringListModel>
#include <QTableView>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

#include <limits>

namespace tarvo {

namespace {

constexpr int kManyColumns = 15; // of a file whose recognised columns may be hard to find among the others
constexpr int kMostWarnings = 4;

} // namespace

DefinitionsForm::DefinitionsForm(SurveyState& survey, Operator& op, QWidget* parent)
    : QDialog(parent), survey_(survey), op_(op), names_(new QStringListModel(this)), preview_(new PreviewModel(this))
{
    setObjectName(QStringLiteral("Form_define_colum_names"));
    setWindowTitle(tr("Survey definitions"));
    names_->setObjectName(QStringLiteral("Combo_names"));
    note_ = plain_label();
    note_->setObjectName(QStringLiteral("Label_note"));
    note_->setWordWrap(true);
    data_fields_ = new DataFieldsPage(names_);
    sensors_ = new SensorsPage(names_);
    tabs_ = new QTabWidget;
    tabs_->addTab(data_fields_, tr("&Data fields"));
    tabs_->addTab(sensors_, tr("S&ensors"));
    data_format_ = new DataFormatPage;
    tabs_->addTab(data_format_, tr("Data fo&rmat"));
    auto* const halves = new QSplitter;
    halves->addWidget(tabs_);
    halves->addWidget(preview_box());
    halves->setChildrenCollapsible(false);
    halves->setStretchFactor(1, 1);
    halves->setSizes({560, 620});

    auto* const layout = new QVBoxLayout(this);
    add_menu();
    layout->addWidget(note_);
    layout->addWidget(halves, 1);
    layout->addLayout(button_row());
    resize(1180, 600);

    connect(data_fields_, &DataFieldsPage::edited, this, &DefinitionsForm::page_edited);
    connect(data_fields_, &DataFieldsPage::define_sensors_pressed, this, [this] { tabs_->setCurrentWidget(sensors_); });
    connect(sensors_, &SensorsPage::page_edited, this, &DefinitionsForm::sensor_edited);
    connect(sensors_, &SensorsPage::templates_edited, this, [this] { sensors_->take_templates(editor_.working); });
    connect(sensors_, &SensorsPage::sensor_chosen, this, &DefinitionsForm::choose_sensor);
    connect(sensors_, &SensorsPage::fill_pressed, this, &DefinitionsForm::fill_templates);
    connect(sensors_, &SensorsPage::done_pressed, this, &DefinitionsForm::sensor_done);
    connect(data_format_, &DataFormatPage::switched, this, &DefinitionsForm::switch_data_format);
    connect(data_format_, &DataFormatPage::key_edited, this, &DefinitionsForm::edit_key);
    connect(data_format_, &DataFormatPage::grid_typed, this,
            [this](const std::string& words) { data_format_->offer_grids(offered_grids(survey_.projections, words)); });
    start_over();
}

void DefinitionsForm::add_menu()
{
    auto* const bar = new QMenuBar;
    QMenu* const file = bar->addMenu(tr("&File"));
    QAction* const read = file->addAction(tr("&Read definitions..."), this, &DefinitionsForm::read_file);
    read->setObjectName(QStringLiteral("menu_file_read"));
    QAction* const save = file->addAction(tr("&Save definitions..."), this, &DefinitionsForm::save_file);
    save->setObjectName(QStringLiteral("menu_file_save"));
    layout()->setMenuBar(bar);
}

QWidget* DefinitionsForm::preview_box()
{
    header_line_ = new QSpinBox;
    header_line_->setObjectName(QStringLiteral("Text_header_line_number"));
    header_line_->setRange(1, std::numeric_limits<int>::max());
    header_line_->setMinimumWidth(70);
    header_line_->setMaximumWidth(90);
    header_line_->setToolTip(tr("The line of the data file that names the columns; a double click on a line takes it"));
    auto* const header_label = plain_label(tr("&Header line"));
    header_label->setBuddy(header_line_);
    auto* const guess = new QPushButton(tr("&Guess anew"));
    guess->setObjectName(QStringLiteral("Command_guess"));
    guess->setToolTip(tr("Propose columns, sensors and data format anew, for this header line"));
    guess->setAutoDefault(false);
    recognised_only_ = new QCheckBox(tr("Recogni&sed columns only"));
    recognised_only_->setObjectName(QStringLiteral("Check_recognised_only"));
    recognised_only_->setToolTip(tr("Leave out the columns that no quantity and no sensor uses"));
    auto* const top = new QHBoxLayout;
    top->addWidget(header_label);
    top->addWidget(header_line_);
    top->addWidget(guess);
    top->addStretch();

    table_ = new QTableView;
    table_->setObjectName(QStringLiteral("Grid_preview"));
    table_->setModel(preview_);
    table_->setTabKeyNavigation(false);
    table_->setSelectionMode(QAbstractItemView::NoSelection);
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 4);
    table_->horizontalHeader()->setMaximumSectionSize(220);
    rejected_ = plain_label();
    rejected_->setObjectName(QStringLiteral("Label_rejected"));
    rejected_->setWordWrap(true); // the dialog is to fit on a screen of 1024 pixels
    auto* const below = new QHBoxLayout;
    below->addWidget(rejected_, 1);
    below->addWidget(recognised_only_);
    warnings_ = plain_label();
    warnings_->setObjectName(QStringLiteral("Label_warnings"));
    warnings_->setWordWrap(true);
    connect(header_line_, &QSpinBox::valueChanged, this, &DefinitionsForm::page_edited);
    connect(guess, &QPushButton::clicked, this, &DefinitionsForm::guess);
    connect(recognised_only_, &QCheckBox::toggled, this, &DefinitionsForm::show_preview);
    connect(table_, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { header_line_->setValue(index.row() + 1); });

    auto* const box = new QGroupBox(tr("The data file's first lines"));
    auto* const layout = new QVBoxLayout(box);
    layout->addLayout(top);
    layout->addWidget(table_, 1);
    layout->addLayout(below);
    layout->addWidget(warnings_);
    return box;
}

QLayout* DefinitionsForm::button_row()
{
    auto* const row = new QHBoxLayout;
    caption_ = plain_label();
    caption_->setObjectName(QStringLiteral("Label_file"));
    row->addWidget(caption_, 1);
    const auto add_button = [&](const char* object_name, const QString& text, const QString& hint) {
        auto* const button = new QPushButton(text);
        button->setObjectName(QLatin1String(object_name));
        button->setToolTip(hint);
        button->setAutoDefault(false);
        row->addWidget(button);
        return button;
    };
    QPushButton* const save = add_button("Command_save_changes", tr("Sa&ve changes"),
                                         tr("Check and accept the definitions, and go on editing"));
    QPushButton* const undo =
        add_button("Command_cancel_changes", tr("C&ancel changes"), tr("Put back what is in force, and go on editing"));
    done_ = add_button("Command_Done", tr("D&one"),
                       tr("Check and accept the definitions, write them beside the data file"));
    load_ = add_button("Command_Done_and_load", tr("Done and &load"),
                       tr("Check and accept the definitions, write them beside the data file, and load it"));
    QPushButton* const cancel = add_button("Command_cancel", tr("Cancel"), tr("Close without taking the changes"));
    connect(save, &QPushButton::clicked, this, [this] {
        if (accept_changes()) show_editor();
    });
    connect(undo, &QPushButton::clicked, this, &DefinitionsForm::start_over);
    connect(done_, &QPushButton::clicked, this, [this] {
        if (accept_changes()) accept();
    });
    connect(load_, &QPushButton::clicked, this, [this] {
        if (!accept_changes()) return;
        asks_for_load_ = true;
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, [this] { QDialog::reject(); });
    return row;
}

void DefinitionsForm::reject()
{
    if (!has_edits_ || op_.ask_before_loss(kLossQuestion)) QDialog::reject();
}

void DefinitionsForm::start_over()
{
    has_edits_ = false;
    editor_ = open_definitions_editor(survey_, op_);
    sensor_ = 1;
    show_editor();
    recognised_only_->setChecked(preview_->preview().columns.count() > kManyColumns);
}

// Shows the working copy; the sensor's page counts as unedited.
void DefinitionsForm::show_editor()
{
    const QScopedValueRollback<bool> guard(showing_, true);
    sensor_ = std::min(sensor_, editor_.working.number_of_sensors);
    sensor_edited_ = false;
    show_preview(); // first: it renews the boxes' columns, which empties the boxes
    header_line_->setValue(editor_.header_line_number);
    data_fields_->show_page(display_definitions(editor_.working));
    sensors_->show_definitions(editor_.working, sensor_);
    data_format_->show_format(editor_);
    mark_missing();
    show_note();
    caption_->setText(to_qt(definitions_caption(editor_.file_name)));
}

// What the guess could not tell stands in the note, its reasons in the note's tip.
void DefinitionsForm::show_note()
{
    const bool is_certain = is_certain_guess(editor_);
    const QString rest = is_certain
                             ? tr("Compare them with the preview and press Done and load, or correct what is wrong.")
                             : tr("Compare them with the preview, correct what is wrong, and press Done.");
    QStringList open;
    QStringList all;
    for (const GuessedChoice& choice : editor_.choices) {
        all += to_qt(choice_text(choice));
        if (choice.is_needed) open += to_qt(choice.key + ": " + choice.reason);
    }
    QString text = tr("These definitions are a guess from what the file holds. %1").arg(rest);
    if (!open.isEmpty()) text += tr("\nOpen: %1").arg(open.join(QStringLiteral("; ")));
    note_->setText(text);
    note_->setToolTip(plain_tip(all.join(QLatin1Char('\n'))));
    note_->setVisible(editor_.origin == DefinitionsEditor::Origin::guess);
    (is_certain ? load_ : done_)->setDefault(true);
    load_->setEnabled(!editor_.first_lines.empty());
}

// What stands before the names may fill the table.
void DefinitionsForm::scroll_to_header()
{
    const std::vector<PreviewLine>& lines = preview_->preview().lines;
    const auto header = std::find_if(lines.begin(), lines.end(), [](const PreviewLine& line) {
        return line.kind != PreviewLineKind::before_header;
    });
    const int row = static_cast<int>(header - lines.begin());
    if (row == shown_header_row_ || header == lines.end()) return;
    shown_header_row_ = row;
    table_->scrollTo(preview_->index(row, 0), QAbstractItemView::PositionAtTop);
}

void DefinitionsForm::show_preview()
{
    preview_->show_preview(preview_of(editor_, survey_.projections), palette());
    const DataPreview& preview = preview_->preview();
    table_->clearSpans();
    for (int row = 0; row < preview_->rowCount(); ++row) {
        const bool whole_line = preview.lines[static_cast<std::size_t>(row)].kind == PreviewLineKind::before_header;
        if (whole_line && preview_->columnCount() > 1) table_->setSpan(row, 0, 1, preview_->columnCount());
    }
    table_->resizeColumnsToContents();
    for (int column = 0; column < preview_->columnCount(); ++column) {
        table_->setColumnHidden(column, recognised_only_->isChecked() && !preview_->is_recognised(column));
    }
    QStringList names = {QStringLiteral("N/A")};
    for (const std::string& name : preview.columns.names()) names += to_qt(name);
    if (names != names_->stringList()) names_->setStringList(names);
    scroll_to_header();

    const QString found = tr("%1 of the %2 data lines shown would be rejected");
    rejected_->setText(preview.lines.empty() ? tr("There is no data file to look at")
                                             : found.arg(preview.lines_rejected).arg(preview.data_lines));
    QStringList warnings;
    for (const Warning& warning : preview.warnings) warnings += to_qt(warning.text);
    if (warnings.size() > kMostWarnings) {
        warnings = warnings.mid(0, kMostWarnings - 1) +
                   QStringList(tr("and %1 more").arg(warnings.size() - kMostWarnings + 1));
    }
    warnings_->setText(warnings.join(QLatin1Char('\n')));
    warnings_->setVisible(!preview.lines.empty() && !warnings.isEmpty());
}

void DefinitionsForm::page_edited()
{
    if (showing_) return;
    has_edits_ = true;
    const QScopedValueRollback<bool> guard(showing_, true);
    const DefinitionsPage page = data_fields_->page();
    const SurveyDefinitions before = editor_.working;
    take_definitions_page(page, editor_.working);
    editor_.header_line_number = header_line_->value();
    const QStringList names_before = names_->stringList();
    show_preview();

    const SurveyDefinitions& now = editor_.working;
    const bool renewed = names_->stringList() != names_before; // which has emptied the boxes
    if (renewed) data_fields_->show_page(page);
    data_format_->show_format(editor_); // the Time column is one of its keys
    if (renewed || now.number_of_sensors != before.number_of_sensors ||
        now.components_per_sensor != before.components_per_sensor ||
        now.read_sensor_location != before.read_sensor_location) {
        sensor_ = std::min(sensor_, now.number_of_sensors);
        sensors_->show_definitions(now, sensor_);
    }
    sensors_->show_grid(now, sensor_);
    mark_missing();
}

void DefinitionsForm::sensor_edited()
{
    if (showing_) return;
    has_edits_ = true;
    sensor_edited_ = true;
    take_sensor_page(sensors_->page(), editor_.working, sensor_);
    show_preview();
    sensors_->show_grid(editor_.working, sensor_);
    mark_missing();
}

void DefinitionsForm::mark_missing()
{
    data_fields_->mark_missing(preview_->preview().columns);
    sensors_->mark_missing(preview_->preview().columns);
}

// The page on show, judged when it was edited: one may look at unfinished sensors without being told of them.
bool DefinitionsForm::sensor_is_accepted()
{
    return !sensor_edited_ || check_sensor_definitions(sensors_->page(), editor_.working, sensor_, op_) == 0;
}

void DefinitionsForm::choose_sensor(int sensor)
{
    if (showing_ || sensor == sensor_) return;
    if (sensor_is_accepted()) show_sensor(sensor);
    sensors_->show_grid(editor_.working, sensor_); // back on the old row when it was not
}

void DefinitionsForm::show_sensor(int sensor)
{
    const QScopedValueRollback<bool> guard(showing_, true);
    sensor_ = sensor;
    sensor_edited_ = false;
    sensors_->show_definitions(editor_.working, sensor_);
    mark_missing();
}

void DefinitionsForm::sensor_done()
{
    if (check_sensor_definitions(sensors_->page(), editor_.working, sensor_, op_) < 0) return;
    show_sensor(std::min(sensor_ + 1, editor_.working.number_of_sensors));
}

void DefinitionsForm::fill_templates()
{
    has_edits_ = true;
    fill_using_template_number(editor_.working);
    show_editor();
}

void DefinitionsForm::switch_data_format(bool in_use)
{
    has_edits_ = true;
    use_data_format(editor_, in_use);
    show_editor();
}

void DefinitionsForm::edit_key(const std::string& key, const std::string& value)
{
    has_edits_ = true;
    const QScopedValueRollback<bool> guard(showing_, true);
    data_format_->show_fault(key, edit_data_format(editor_, key, value));
    show_preview();
    data_fields_->show_page(display_definitions(editor_.working));
    sensors_->show_definitions(editor_.working, sensor_);
    mark_missing();
}

void DefinitionsForm::guess()
{
    has_edits_ = true;
    guess_from_header(editor_);
    show_editor();
}

void DefinitionsForm::read_file()
{
    const auto file_name = menu_file_read(editor_.working, editor_.header_line_number, op_);
    if (!file_name) return;
    editor_.origin = DefinitionsEditor::Origin::file;
    editor_.file_name = *file_name;
    show_editor();
}

void DefinitionsForm::save_file()
{
    if (!sensor_is_accepted() || check_definitions(data_fields_->page(), editor_.working, op_) < 0) return;
    const auto file_name = menu_file_save(editor_.working, editor_.header_line_number, op_);
    if (file_name) editor_.file_name = *file_name;
    show_editor();
}

bool DefinitionsForm::accept_changes()
{
    if (!sensor_is_accepted()) {
        tabs_->setCurrentWidget(sensors_);
        return false;
    }
    const DefinitionsAcceptance acceptance = accept_definitions(editor_, data_fields_->page(), survey_, op_);
    has_changed_survey_ = has_changed_survey_ || acceptance.changed;
    if (acceptance.refused_format) tabs_->setCurrentWidget(data_format_);
    if (acceptance.refused_sensor > 0) {
        tabs_->setCurrentWidget(sensors_);
        show_sensor(acceptance.refused_sensor);
    }
    if (acceptance.status == 0) has_edits_ = false;
    return acceptance.status == 0;
}

} // namespace tarvo

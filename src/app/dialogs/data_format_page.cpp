#include "app/dialogs/data_format_page.h"

#include "app/common/column_box.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStringListModel>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr const char* kGridKey = "Survey Grid";
constexpr QLatin1String kBehindCode("   "); // between a grid's code and its name in the list

// "Time Offset (s)" gives "Box_Time_Offset".
QString object_name_of(std::string_view key)
{
    QString name = QStringLiteral("Box_") + to_qt(std::string(key.substr(0, key.find(" ("))));
    return name.replace(QLatin1Char(' '), QLatin1Char('_'));
}

} // namespace

DataFormatPage::DataFormatPage(QWidget* parent)
    : QWidget(parent), in_use_(new QCheckBox(tr("The file is &written in a form of its own"))), keys_(new QWidget),
      grids_(new QStringListModel(this))
{
    setObjectName(QStringLiteral("Tab_data_format"));
    in_use_->setObjectName(QStringLiteral("Check_data_format"));
    in_use_->setToolTip(tr("For files as loggers write them: clocks and dates, degrees, values that stand for nothing. "
                           "Off: seconds and metres in columns between any separators"));
    connect(in_use_, &QCheckBox::toggled, this, [this](bool in_use) {
        keys_->setEnabled(in_use);
        if (!showing_) emit switched(in_use);
    });

    auto* const form = new QFormLayout(keys_);
    for (const DataFormatKey& key : data_format_keys()) {
        const Row row = make_row(key);
        QWidget* const box = row.choice != nullptr ? static_cast<QWidget*>(row.choice) : row.text;
        box->setObjectName(object_name_of(key.name));
        box->setToolTip(to_qt(std::string(key.help)));
        auto* const both = new QVBoxLayout;
        both->setSpacing(0);
        both->addWidget(box);
        both->addWidget(row.fault);
        auto* const label = plain_label(to_qt(std::string(key.name)));
        label->setBuddy(box);
        label->setToolTip(box->toolTip());
        form->addRow(label, both);
        rows_.push_back(row);
    }
    auto* const area = new QScrollArea;
    area->setWidget(keys_);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(in_use_);
    layout->addWidget(area, 1);
}

DataFormatPage::Row DataFormatPage::make_row(const DataFormatKey& key)
{
    Row row;
    row.key = key.name;
    row.fault = plain_label();
    row.fault->setObjectName(object_name_of(key.name) + QStringLiteral("_fault"));
    row.fault->setWordWrap(true);
    row.fault->hide();
    const std::string name = row.key;
    if (!key.choices.empty()) {
        row.choice = new QComboBox;
        for (const std::string_view choice : key.choices) row.choice->addItem(to_qt(std::string(choice)));
        connect(row.choice, &QComboBox::currentTextChanged, this, [this, name](const QString& text) {
            if (!showing_) emit key_edited(name, to_utf8(text));
        });
        return row;
    }
    row.text = new QLineEdit;
    connect(row.text, &QLineEdit::textChanged, this, [this, name](const QString& text) {
        if (!showing_) emit key_edited(name, to_utf8(text));
    });
    if (name == kGridKey) add_grid_completer(row.text);
    return row;
}

// Grids are searched by code and by words of their names; the code of the one that is chosen goes into the box.
void DataFormatPage::add_grid_completer(QLineEdit* box)
{
    box->setPlaceholderText(tr("UTM 35N, or words such as ETRS89 UTM 32"));
    auto* const completer = new QCompleter(grids_, box);
    completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    box->setCompleter(completer);
    connect(box, &QLineEdit::textEdited, this, [this](const QString& text) { emit grid_typed(to_utf8(text)); });
    connect(
        completer, qOverload<const QString&>(&QCompleter::activated), box,
        [box](const QString& chosen) { box->setText(chosen.section(kBehindCode, 0, 0)); }, Qt::QueuedConnection);
}

void DataFormatPage::offer_grids(const std::vector<GridCode>& grids)
{
    QStringList texts;
    for (const GridCode& grid : grids) texts += to_qt(grid.code) + kBehindCode + to_qt(grid.name);
    grids_->setStringList(texts);
}

void DataFormatPage::show_format(const DefinitionsEditor& editor)
{
    const QScopedValueRollback<bool> guard(showing_, true);
    in_use_->setChecked(editor.working.data_format.has_value());
    keys_->setEnabled(in_use_->isChecked());
    for (const Row& row : rows_) {
        const QString text = to_qt(data_format_box_text(editor, row.key));
        if (row.choice != nullptr) {
            row.choice->setCurrentText(text);
        } else if (row.text->text() != text) {
            row.text->setText(text);
        }
        show_fault(row.key, {});
    }
    for (const FormatFault& fault : editor.format_faults) show_fault(fault.key, fault.reason);
}

void DataFormatPage::show_fault(const std::string& key, const std::string& fault)
{
    for (const Row& row : rows_) {
        if (row.key != key) continue;
        row.fault->setStyleSheet(QStringLiteral("color: %1").arg(warning_colour(*this).name()));
        row.fault->setText(to_qt(fault));
        row.fault->setVisible(!fault.empty());
    }
}

} // namespace tarvo

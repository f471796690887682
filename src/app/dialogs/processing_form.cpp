#include "app/dialogs/processing_form.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/dialogs/loss_question.h"
#include "app/dialogs/residual_page.h"
#include "session/settings_table.h"
#include "survey/survey_residual.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

namespace tarvo {

namespace {

QString caption_of(const Setting& setting)
{
    const QString caption = ProcessingForm::tr(setting.caption);
    const QString unit = to_qt(setting.unit);
    return unit.isEmpty() ? caption : QStringLiteral("%1 (%2)").arg(caption, unit);
}

} // namespace

ProcessingForm::ProcessingForm(SurveyState& survey, Operator& op, QWidget* parent)
    : QDialog(parent), survey_(survey), settings_(survey), op_(op)
{
    setObjectName(QStringLiteral("Form_processing_parameters"));
    setWindowTitle(tr("Processing parameters"));
    auto* const pages = new QTabWidget;
    pages->setObjectName(QStringLiteral("Pages_processing"));
    pages->addTab(make_parameters(), tr("Samples and display"));
    pages->addTab(make_residual(), tr("Residual"));

    auto* const done = new QPushButton(tr("&Done"));
    done->setObjectName(QStringLiteral("Command_Done"));
    done->setToolTip(tr("Check the values and apply them"));
    done->setDefault(true);
    auto* const cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("Command_cancel"));
    cancel->setToolTip(tr("Close without change"));
    cancel->setAutoDefault(false);
    connect(done, &QPushButton::clicked, this, &ProcessingForm::done_pressed);
    connect(cancel, &QPushButton::clicked, this, [this] { QDialog::reject(); });
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(done);
    buttons->addWidget(cancel);

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(pages);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    opened_ = page();
}

void ProcessingForm::reject()
{
    if (page() == opened_ || op_.ask_before_loss(kLossQuestion)) QDialog::reject();
}

QWidget* ProcessingForm::make_parameters()
{
    auto* const left = new QVBoxLayout;
    left->addWidget(make_group(SettingGroup::samples, tr("Samples and survey lines")));
    left->addWidget(make_group(SettingGroup::filters, tr("Filters")));
    left->addWidget(make_group(SettingGroup::corrections, tr("Corrections")));
    left->addStretch();
    auto* const right = new QVBoxLayout;
    right->addWidget(make_group(SettingGroup::display, tr("Display")));
    right->addWidget(make_group(SettingGroup::grid, tr("Grid under the track")));
    right->addStretch();
    auto* const page = new QWidget;
    auto* const columns = new QHBoxLayout(page);
    columns->addLayout(left);
    columns->addLayout(right);
    return page;
}

QWidget* ProcessingForm::make_residual()
{
    auto* const page = new QWidget;
    auto* const rows = new QVBoxLayout(page);
    rows->addWidget(make_group(SettingGroup::residual, tr("Residual field")));
    residual_ = new ResidualPage(survey_);
    rows->addWidget(residual_, 1);
    for (QLineEdit* const edit : page->findChildren<QLineEdit*>()) {
        connect(edit, &QLineEdit::textChanged, this, &ProcessingForm::show_residual);
    }
    for (QCheckBox* const check : page->findChildren<QCheckBox*>()) {
        connect(check, &QCheckBox::toggled, this, &ProcessingForm::show_residual);
    }
    return page;
}

QWidget* ProcessingForm::make_group(SettingGroup group, const QString& title)
{
    auto* const box = new QGroupBox(title);
    auto* const rows = new QFormLayout(box);
    for (const Setting& setting : settings_table()) {
        if (setting.group != group) continue;
        if (is_switch(setting)) {
            add_switch(*rows, setting);
        } else if (!setting.choices.empty()) {
            add_choice(*rows, setting);
        } else {
            add_text_box(*rows, setting);
        }
    }
    return box;
}

void ProcessingForm::add_switch(QFormLayout& rows, const Setting& setting)
{
    auto* const check = new QCheckBox(caption_of(setting));
    check->setObjectName(QLatin1String(setting.box));
    check->setToolTip(to_qt(help_text(setting)));
    check->setChecked(setting_text(settings_, setting) == "1");
    rows.addRow(check);
    boxes_.push_back({&setting, [check] { return QString::number(check->isChecked() ? 1 : 0); }});
}

void ProcessingForm::add_choice(QFormLayout& rows, const Setting& setting)
{
    auto* const choice = new QComboBox;
    choice->setObjectName(QLatin1String(setting.box));
    choice->setToolTip(to_qt(help_text(setting)));
    for (const char* const text : setting.choices) choice->addItem(QLatin1String(text));
    choice->setCurrentText(to_qt(setting_text(settings_, setting)));
    add_plain_row(rows, caption_of(setting), choice);
    boxes_.push_back({&setting, [choice] { return choice->currentText(); }});
}

// The box shows one decimal at most; what that hides stands in the tooltip.
void ProcessingForm::add_text_box(QFormLayout& rows, const Setting& setting)
{
    auto* const edit = new QLineEdit(to_qt(shown_setting_text(settings_, setting)));
    edit->setObjectName(QLatin1String(setting.box));
    edit->setToolTip(
        plain_tip(to_qt(help_text(setting)) + tr("\nNow: %1").arg(to_qt(setting_text(settings_, setting)))));
    edit->setAlignment(Qt::AlignRight);
    edit->setFixedWidth(90);
    add_plain_row(rows, caption_of(setting), edit);
    boxes_.push_back({&setting, [edit] { return edit->text(); }});
}

ProcessingPage ProcessingForm::page() const
{
    ProcessingPage page;
    for (const Box& box : boxes_) page[box.setting->key] = to_utf8(box.text());
    return page;
}

void ProcessingForm::show_residual()
{
    residual_->show_parameters(settings_of_page(page(), settings_).parameters);
}

void ProcessingForm::done_pressed()
{
    changes_ = done_processing_parameters(page(), settings_, op_, [this](const Settings& wanted) {
        return residual_objection(survey_, wanted.parameters);
    });
    if (changes_.status == 0) accept();
}

} // namespace tarvo

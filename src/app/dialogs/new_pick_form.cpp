#include "app/dialogs/new_pick_form.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/dialogs/loss_question.h"
#include "app/dialogs/type_button.h"
#include "picks/pick_texts.h"
#include "text/numbers.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvo {

NewPickForm::NewPickForm(PickWorkflow& work, const SurveyState& survey, Operator& op, QWidget* parent)
    : QDialog(parent), work_(work), survey_(survey), op_(op), offered_(work.new_pick_texts()), existing_(new QComboBox),
      name_(new QLineEdit), id_(new QLineEdit), type_(new QLineEdit)
{
    setObjectName(QStringLiteral("Form_save_new_pick"));
    setWindowTitle(tr("Save a new pick"));
    const PickLocation& place = work_.new_pick_location();
    auto* const where = plain_label(
        tr("At sample %1, %2 m along the track").arg(place.sample_index).arg(to_qt(format_fixed(place.distance, 1))));
    where->setObjectName(QStringLiteral("Label_new_pick_location"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(where);
    layout->addWidget(make_fields());
    layout->addWidget(make_buttons());
    show_texts(offered_);
    name_->setFocus();
    name_->selectAll();
}

QWidget* NewPickForm::make_fields()
{
    existing_->setObjectName(QStringLiteral("Combo_current_pick"));
    existing_->setToolTip(tr("Takes name, ID and type from a pick of the list; \"Next ID\" then continues its series"));
    existing_->setPlaceholderText(tr("Take from a pick"));
    for (const std::string& name : pick_names_in_order(survey_.picks)) existing_->addItem(to_qt(name));
    existing_->setCurrentIndex(-1);
    existing_->setEnabled(existing_->count() > 0);
    connect(existing_, &QComboBox::activated, this,
            [this](int position) { show_texts(pick_texts(survey_.picks, position + 1)); });

    name_->setObjectName(QStringLiteral("Text_anomaly_name"));
    name_->setToolTip(tr("Name of the series, such as Anomaly"));
    id_->setObjectName(QStringLiteral("Text_anomaly_ID"));
    id_->setToolTip(tr("Number in the series, 0 or more"));
    type_->setObjectName(QStringLiteral("Text_anomaly_type"));
    type_->setToolTip(tr("Type number, 0 or more"));
    auto* const fields = new QWidget;
    auto* const rows = new QFormLayout(fields);
    rows->setContentsMargins(0, 0, 0, 0);
    add_plain_row(*rows, tr("&Existing picks"), existing_);
    add_plain_row(*rows, tr("&Name"), name_);
    add_plain_row(*rows, tr("&ID"), id_);
    auto* const type = new QWidget;
    auto* const type_row = new QHBoxLayout(type);
    type_row->setContentsMargins(0, 0, 0, 0);
    type_row->addWidget(type_, 1);
    auto* const names = new TypeButton(*type_);
    type_row->addWidget(names);
    names->set_names(survey_.pick_settings.PickTypeNames);
    add_plain_row(*rows, tr("&Type"), type);
    static_cast<QLabel*>(rows->labelForField(type))->setBuddy(type_);
    return fields;
}

QWidget* NewPickForm::make_buttons()
{
    auto* const buttons = new QDialogButtonBox;
    QPushButton* const next = buttons->addButton(tr("Next ID"), QDialogButtonBox::ActionRole);
    next->setObjectName(QStringLiteral("Command_add_next"));
    next->setToolTip(tr("The next free number of the series"));
    next->setAutoDefault(false);
    QPushButton* const save_button = buttons->addButton(tr("Save"), QDialogButtonBox::AcceptRole);
    save_button->setObjectName(QStringLiteral("Command_save_anomaly"));
    save_button->setToolTip(tr("Save the pick in the list and its file (Enter)"));
    save_button->setDefault(true);
    QPushButton* const close_button = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    close_button->setObjectName(QStringLiteral("Command_close_form"));
    close_button->setToolTip(tr("Save nothing (Esc)"));
    close_button->setAutoDefault(false);
    connect(next, &QPushButton::clicked, this, [this] { show_texts(work_.Command_add_next(entered_texts())); });
    connect(save_button, &QPushButton::clicked, this, &NewPickForm::save);
    connect(close_button, &QPushButton::clicked, this, [this] { QDialog::reject(); });
    return buttons;
}

void NewPickForm::show_texts(const PickTexts& texts)
{
    shown_ = texts;
    name_->setText(to_qt(texts.name));
    id_->setText(to_qt(texts.id));
    type_->setText(to_qt(texts.type));
}

PickTexts NewPickForm::entered_texts() const
{
    return {edited_text(*name_, shown_.name), edited_text(*id_, shown_.id), edited_text(*type_, shown_.type)};
}

void NewPickForm::reject()
{
    if (entered_texts() == offered_ || op_.ask_before_loss(kLossQuestion)) QDialog::reject();
}

// A refusal leaves the form open with what was entered.
void NewPickForm::save()
{
    if (work_.Command_save_anomaly(entered_texts()) == 0) accept();
}

} // namespace tarvo

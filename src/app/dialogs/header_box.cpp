#include "app/dialogs/header_box.h"

#include "app/common/elided_label.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "intake/column_report.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace tarvo {

HeaderBox::HeaderBox(QWidget* parent)
    : QWidget(parent), file_name_(plain_label()), header_line_(new QLineEdit), columns_(new ElidedLabel)
{
    file_name_->setObjectName(QStringLiteral("Label_data_file"));
    header_line_->setObjectName(QStringLiteral("Text_locations_name_line"));
    header_line_->setToolTip(tr("The line of the data file that names the columns, counted from 1"));
    header_line_->setMaximumWidth(header_line_->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + 12);
    columns_->setObjectName(QStringLiteral("Label_columns"));

    auto* const label = plain_label(tr("Header l&ine"));
    label->setBuddy(header_line_);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 0);
    row->addWidget(file_name_);
    row->addSpacing(8);
    row->addWidget(label);
    row->addWidget(header_line_);
    row->addSpacing(8);
    row->addWidget(columns_, 1);
    connect(header_line_, &QLineEdit::editingFinished, this, [this] {
        if (!header_line_->isModified()) return;
        header_line_->setModified(false);
        emit header_line_edited();
    });
}

void HeaderBox::show_survey(const SurveyState& survey)
{
    const QString file_name = to_qt(survey.data_file_name);
    file_name_->setText(file_name.isEmpty() ? tr("No data file") : QFileInfo(file_name).fileName());
    file_name_->setToolTip(plain_tip(file_name));
    header_line_->setText(survey.header_line_text ? to_qt(*survey.header_line_text)
                                                  : QString::number(survey.header_line_number));
    if (survey.header_columns.count() == 0) {
        columns_->clear();
        columns_->setToolTip({});
        return;
    }
    const std::vector<DefinedColumn> report = defined_columns(survey.survey_definitions, survey.header_columns);
    const QString found = to_qt(found_columns_text(report));
    const QString missing = to_qt(missing_columns_text(report));
    const QString found_line = tr("Found: %1").arg(found.isEmpty() ? tr("none") : found);
    columns_->setText(missing.isEmpty() ? found_line : tr("Missing: %1.  %2").arg(missing, found_line));
    QStringList names;
    for (const std::string& name : survey.header_columns.names()) names += to_qt(name);
    columns_->setToolTip(plain_tip(columns_->text() + QStringLiteral("\n\n") +
                                   tr("The file has %n column(s): ", nullptr, survey.header_columns.count()) +
                                   names.join(QStringLiteral(", "))));
}

void HeaderBox::set_locked(bool locked)
{
    header_line_->setEnabled(!locked);
}

std::string HeaderBox::header_line_text() const
{
    return to_utf8(header_line_->text());
}

} // namespace tarvo

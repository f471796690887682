#include "app/panels/header_box.h"

#include "app/common/elided_label.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "intake/column_report.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

namespace tarvo {

HeaderBox::HeaderBox(QWidget* parent)
    : QWidget(parent), file_name_(new ElidedLabel), caption_(plain_label(tr("Header l&ine"))),
      header_line_(new QLineEdit), columns_(new QToolButton), column_list_(new QMenu(columns_))
{
    file_name_->setObjectName(QStringLiteral("Label_data_file"));
    file_name_->setMinimumWidth(fontMetrics().averageCharWidth() * 14);
    header_line_->setObjectName(QStringLiteral("Text_locations_name_line"));
    header_line_->setAccessibleName(tr("Header line"));
    header_line_->setToolTip(tr("The line of the data file that names the columns, counted from 1"));
    header_line_->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 12);
    header_line_->setMaximumHeight(fontMetrics().height() + 6);
    columns_->setObjectName(QStringLiteral("Command_columns"));
    columns_->setAutoRaise(true);
    columns_->setFocusPolicy(Qt::TabFocus);
    columns_->setPopupMode(QToolButton::InstantPopup);
    columns_->setMenu(column_list_);
    column_list_->setObjectName(QStringLiteral("menu_columns"));

    caption_->setBuddy(header_line_);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(file_name_, 1);
    row->addWidget(caption_);
    row->addWidget(header_line_);
    row->addWidget(columns_);
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
    show_columns(survey);
}

void HeaderBox::show_columns(const SurveyState& survey)
{
    column_list_->clear();
    columns_->setEnabled(survey.header_columns.count() > 0);
    if (survey.header_columns.count() == 0) {
        columns_->setText(tr("No columns"));
        columns_->setToolTip({});
        return;
    }
    std::vector<DefinedColumn> report = defined_columns(survey.survey_definitions, survey.header_columns);
    std::stable_partition(report.begin(), report.end(), [](const DefinedColumn& column) { return !column.is_found; });
    const auto missing =
        std::count_if(report.begin(), report.end(), [](const DefinedColumn& column) { return !column.is_found; });
    const auto found = static_cast<std::ptrdiff_t>(report.size()) - missing;
    columns_->setText(missing > 0 ? tr("%1 columns, %2 missing").arg(found).arg(missing) : tr("%1 columns").arg(found));
    for (const DefinedColumn& column : report) {
        const QString text = tr(column.is_found ? "%1: %2" : "Missing: %1: %2");
        const QString line = text.arg(to_qt(column.quantity), to_qt(column.name));
        column_list_->addAction(QString(line).replace('&', QLatin1String("&&")))->setToolTip(plain_tip(line));
    }
    QStringList names;
    for (const std::string& name : survey.header_columns.names()) names += to_qt(name);
    columns_->setToolTip(
        plain_tip(tr("The columns that are used, as a list. The file has %1: ").arg(survey.header_columns.count()) +
                  names.join(QStringLiteral(", "))));
}

void HeaderBox::set_locked(bool locked)
{
    header_line_->setEnabled(!locked);
}

void HeaderBox::set_live(bool live)
{
    for (QWidget* const part : std::initializer_list<QWidget*>{file_name_, caption_, header_line_}) {
        part->setHidden(live);
    }
    setSizePolicy(live ? QSizePolicy::Maximum : QSizePolicy::Preferred, QSizePolicy::Preferred);
}

std::string HeaderBox::header_line_text() const
{
    return to_utf8(header_line_->text());
}

} // namespace tarvo

#include "app/dialogs/rejected_lines_form.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "text/file_names.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace tarvo {

namespace {

QTableWidget* table_of(const SurveyState& survey)
{
    const std::vector<RejectedLine>& lines = survey.processing.rejected.lines;
    auto* const table = new QTableWidget(static_cast<int>(lines.size()), 4);
    table->setObjectName(QStringLiteral("Table_rejected_lines"));
    table->setHorizontalHeaderLabels({RejectedLinesForm::tr("File"), RejectedLinesForm::tr("Line"),
                                      RejectedLinesForm::tr("Reason"), RejectedLinesForm::tr("Text")});
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    int row = 0;
    for (const RejectedLine& line : lines) {
        const bool has_file = line.file < survey.files_read.size();
        const std::string_view file = has_file ? last_part(survey.files_read[line.file]) : std::string_view();
        const std::string texts[] = {std::string(file), std::to_string(line.number),
                                     std::string(line_fault_text(line.fault)), printable_text(line.text)};
        for (int column = 0; column < 4; ++column) {
            auto* const item = new QTableWidgetItem(to_qt(texts[column]));
            if (column == 1) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, column, item);
        }
        ++row;
    }
    table->resizeColumnsToContents();
    return table;
}

} // namespace

RejectedLinesForm::RejectedLinesForm(const SurveyState& survey, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("Form_rejected_lines"));
    setWindowTitle(tr("Rejected lines"));
    const std::string summary = rejections_text(survey.processing.rejected);
    auto* const label = plain_label(summary.empty() ? tr("No line was rejected.") : to_qt(summary));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* const definitions = buttons->addButton(tr("Survey &definitions..."), QDialogButtonBox::ActionRole);
    connect(definitions, &QPushButton::clicked, this, [this] {
        emit definitions_wanted();
        close();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* const rows = new QVBoxLayout(this);
    rows->addWidget(label);
    rows->addWidget(table_of(survey), 1);
    rows->addWidget(buttons);
    resize(760, 480);
}

} // namespace tarvo

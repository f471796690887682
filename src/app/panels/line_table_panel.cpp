#include "app/panels/line_table_panel.h"

#include "app/common/texts.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

namespace tarvo {

void LineTableModel::show_lines(std::vector<LineSummary> lines)
{
    beginResetModel();
    lines_ = std::move(lines);
    texts_.clear();
    texts_.reserve(lines_.size());
    for (const LineSummary& line : lines_) texts_.push_back(line_table_texts(line));
    endResetModel();
}

int LineTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

int LineTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(captions_.size());
}

QVariant LineTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) return {};
    const LineSummary& line = lines_[static_cast<std::size_t>(index.row())];
    const auto column = static_cast<std::size_t>(index.column());
    if (role == Qt::DisplayRole) return to_qt(texts_[static_cast<std::size_t>(index.row())][column]);
    if (role == kSortRole) return line_table_values(line)[column];
    if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant LineTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return LineTablePanel::tr(captions_[static_cast<std::size_t>(section)].c_str());
}

LineTablePanel::LineTablePanel(QWidget* parent)
    : QWidget(parent), model_(new LineTableModel), sorted_(new QSortFilterProxyModel(this)), table_(new QTableView)
{
    setObjectName(QStringLiteral("Frame_survey_lines"));
    model_->setParent(this);
    sorted_->setSourceModel(model_);
    sorted_->setSortRole(LineTableModel::kSortRole);
    table_->setObjectName(QStringLiteral("Grid_survey_lines"));
    table_->setAccessibleName(tr("Survey lines"));
    table_->setToolTip(tr("Click on a header: sort. Click on a line: show it. Ctrl+C: copy the selected lines."));
    table_->setToolTipDuration(4000);
    table_->setModel(sorted_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setTabKeyNavigation(false);
    table_->setAlternatingRowColors(true);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
    table_->horizontalHeader()->setSortIndicatorClearable(true); // a third click: in the order of the survey
    table_->sortByColumn(-1, Qt::AscendingOrder);
    table_->setSortingEnabled(true);
    const auto choose = [this](const QModelIndex& index) {
        const int row = sorted_->mapToSource(index).row();
        if (row < 0) return;
        const LineSummary& line = model_->lines()[static_cast<std::size_t>(row)];
        emit line_chosen(line.first, line.last);
    };
    connect(table_, &QTableView::clicked, this, choose);
    connect(table_, &QTableView::activated, this, choose); // Enter

    auto* const copy = new QPushButton(tr("&Copy"));
    copy->setToolTip(tr("Copy the selected lines, or all, as a table"));
    connect(copy, &QPushButton::clicked, this, &LineTablePanel::copy_rows);
    auto* const save = new QPushButton(tr("&Export..."));
    save->setToolTip(tr("Write the table as CSV"));
    connect(save, &QPushButton::clicked, this, &LineTablePanel::export_wanted);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(copy);
    buttons->addWidget(save);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(table_, 1);
    layout->addLayout(buttons);
}

void LineTablePanel::show_lines(const SurveyState& survey)
{
    model_->show_lines(line_summaries(survey.processing, survey.watch_settings));
    table_->resizeColumnsToContents();
    for (int column = 0; column < model_->columnCount(); ++column) { // what nobody asked for takes no room
        bool is_empty = model_->rowCount() > 0;
        for (int row = 0; row < model_->rowCount() && is_empty; ++row) {
            is_empty = model_->data(model_->index(row, column), Qt::DisplayRole).toString().isEmpty();
        }
        table_->setColumnHidden(column, is_empty);
    }
}

void LineTablePanel::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy_rows();
        return;
    }
    QWidget::keyPressEvent(event);
}

void LineTablePanel::copy_rows() const
{
    std::vector<LineSummary> lines;
    for (int row = 0; row < sorted_->rowCount(); ++row) {
        const QModelIndex index = sorted_->index(row, 0);
        const bool is_wanted =
            !table_->selectionModel()->hasSelection() || table_->selectionModel()->isRowSelected(row, QModelIndex());
        if (is_wanted) lines.push_back(model_->lines()[static_cast<std::size_t>(sorted_->mapToSource(index).row())]);
    }
    QApplication::clipboard()->setText(to_qt(line_table_tabbed(lines)));
}

} // namespace tarvo

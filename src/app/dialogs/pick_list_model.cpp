#include "app/dialogs/pick_list_model.h"

#include "app/common/texts.h"

#include <QFont>

#include <algorithm>
#include <numeric>

namespace tarvo {

PickListModel::PickListModel(const PickList& picks, const std::int32_t& current_pick, Operator& op, QObject* parent)
    : QAbstractTableModel(parent), picks_(picks), current_pick_(current_pick), op_(op)
{
    show_list();
}

void PickListModel::show_list()
{
    beginResetModel();
    grid_ = pick_grid(picks_, op_);
    if (sorted_column_ >= 0 && sorted_column_ < kFitColumn) {
        order_ = sorted_picks(picks_, static_cast<PickColumn>(sorted_column_),
                              sort_order_ == Qt::AscendingOrder ? SortOrder::rising : SortOrder::falling);
    } else {
        order_.resize(static_cast<std::size_t>(picks_.number_of_picks));
        std::iota(order_.begin(), order_.end(), 1);
    }
    endResetModel();
}

std::int32_t PickListModel::pick_of_row(int row) const
{
    return row >= 0 && row < rowCount() ? order_[static_cast<std::size_t>(row)] : 0;
}

int PickListModel::row_of_pick(std::int32_t pick) const
{
    const auto found = std::find(order_.begin(), order_.end(), pick);
    return found == order_.end() ? -1 : static_cast<int>(found - order_.begin());
}

int PickListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int PickListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kRemarkColumn + 1;
}

QVariant PickListModel::data(const QModelIndex& index, int role) const
{
    const auto pick = static_cast<std::size_t>(pick_of_row(index.row()));
    if (pick == 0 || pick >= grid_.size()) return {};
    const auto column = static_cast<std::size_t>(index.column());
    if (index.column() == kFitColumn && role == Qt::DisplayRole) {
        return fit_summary_ ? to_qt(fit_summary_(static_cast<std::int32_t>(pick))) : QString();
    }
    if (index.column() == kRemarkColumn && role == Qt::DisplayRole) {
        const auto remark = picks_.remarks.find(picks_.pick_names[pick]);
        return remark == picks_.remarks.end() ? QString() : to_qt(remark->second);
    }
    if (index.column() >= kFitColumn && role == Qt::TextAlignmentRole) return {};
    if (role == Qt::DisplayRole) return to_qt(grid_[pick][column]);
    if (role == Qt::TextAlignmentRole && static_cast<PickColumn>(column) != PickColumn::name) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (role == Qt::FontRole && static_cast<std::int32_t>(pick) == current_pick_) {
        QFont font;
        font.setBold(true);
        return font;
    }
    return {};
}

QVariant PickListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return pick_of_row(section); // its number in the list
    if (section == kFitColumn) return tr("Fit");
    if (section == kRemarkColumn) return tr("Remark");
    return to_qt(grid_[0][static_cast<std::size_t>(section)]);
}

void PickListModel::sort(int column, Qt::SortOrder order)
{
    sorted_column_ = column;
    sort_order_ = order;
    show_list();
}

} // namespace tarvo

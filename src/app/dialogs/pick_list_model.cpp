#include "app/dialogs/pick_list_model.h"

#include "app/common/texts.h"
#include "text/numbers.h"

#include <QFont>

#include <algorithm>
#include <numeric>

namespace tarvo {

PickListModel::PickListModel(const SurveyState& survey, Operator& op, QObject* parent)
    : QAbstractTableModel(parent), survey_(survey), op_(op)
{
    show_list();
}

void PickListModel::show_list()
{
    beginResetModel();
    grid_ = pick_grid(survey_.picks, op_);
    types_ = pick_types_of(survey_.pick_settings.PickTypeNames);
    order_ = filtered_picks(survey_.picks, survey_.processing.lines, types_, filter_, all_in_order());
    endResetModel();
}

std::vector<std::int32_t> PickListModel::all_in_order() const
{
    if (sorted_column_ >= 0 && sorted_column_ < kFitColumn) {
        return sorted_picks(survey_.picks, static_cast<PickColumn>(sorted_column_),
                            sort_order_ == Qt::AscendingOrder ? SortOrder::rising : SortOrder::falling);
    }
    std::vector<std::int32_t> order(static_cast<std::size_t>(survey_.picks.number_of_picks));
    std::iota(order.begin(), order.end(), 1);
    if (sorted_column_ < 0) return order;
    std::vector<std::pair<double, std::string>> keys(order.size() + 1); // by pick
    for (const std::int32_t pick : order) {
        const std::string shown = further_text(pick, sorted_column_);
        keys[static_cast<std::size_t>(pick)] = {numeric_value(shown).value_or(kNull), shown};
    }
    std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
        const auto& first = keys[static_cast<std::size_t>(a)];
        const auto& second = keys[static_cast<std::size_t>(b)];
        return sort_order_ == Qt::AscendingOrder ? first < second : second < first;
    });
    return order;
}

void PickListModel::set_filter(const PickFilter& filter)
{
    filter_ = filter;
    show_list();
}

// Of the columns behind those of the list.
std::string PickListModel::further_text(std::int32_t pick, int column) const
{
    const PickList& picks = survey_.picks;
    const auto at = static_cast<std::size_t>(pick);
    switch (column) {
    case kFitColumn: return fit_summary_ ? fit_summary_(pick) : std::string();
    case kRemarkColumn: {
        const auto remark = picks.remarks.find(picks.pick_names[at]);
        return remark == picks.remarks.end() ? std::string() : remark->second;
    }
    case kTypeNameColumn: return pick_type_name(types_, picks.pick_types[at]);
    case kLineColumn: return line_of_pick(picks, pick, survey_.processing.lines);
    default: return {};
    }
}

std::string PickListModel::text(std::int32_t pick, int column) const
{
    if (column >= kFitColumn) return further_text(pick, column);
    return grid_[static_cast<std::size_t>(pick)][static_cast<std::size_t>(column)];
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
    return parent.isValid() ? 0 : kColumns;
}

QVariant PickListModel::data(const QModelIndex& index, int role) const
{
    const std::int32_t pick = pick_of_row(index.row());
    if (pick == 0 || static_cast<std::size_t>(pick) >= grid_.size()) return {};
    const bool is_text = index.column() == static_cast<int>(PickColumn::name) || index.column() == kTypeNameColumn ||
                         index.column() == kFitColumn || index.column() == kRemarkColumn;
    if (role == Qt::DisplayRole) return to_qt(text(pick, index.column()));
    if (role == Qt::TextAlignmentRole && !is_text) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::FontRole && pick == survey_.current_pick) {
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
    if (section == kTypeNameColumn) return tr("Type name");
    if (section == kLineColumn) return tr("Line");
    return to_qt(grid_[0][static_cast<std::size_t>(section)]);
}

void PickListModel::sort(int column, Qt::SortOrder order)
{
    sorted_column_ = column;
    sort_order_ = order;
    show_list();
}

} // namespace tarvo

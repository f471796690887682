#pragma once

#include "picks/pick_filter.h"
#include "picks/pick_texts.h"
#include "survey/survey_state.h"

#include <QAbstractTableModel>

#include <vector>

namespace tarvo {

// The rows of Grid_anomaly_picks in the order in which they are shown, those that pass the filter. The list itself is
// never sorted. Behind the columns of the list stand two that are read off the survey.
class PickListModel : public QAbstractTableModel {
public:
    PickListModel(const SurveyState& survey, Operator& op, QObject* parent = nullptr);

    void show_list(); // the whole grid anew
    void set_filter(const PickFilter& filter);

    std::int32_t pick_of_row(int row) const;  // 0: no such row
    int row_of_pick(std::int32_t pick) const; // -1: not shown

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override; // column -1: the order of the list

private:
    static constexpr std::size_t kTypeName = kPickColumns;
    static constexpr std::size_t kLine = kPickColumns + 1;
    static constexpr std::size_t kColumns = kPickColumns + 2;

    std::vector<std::int32_t> all_in_order() const;
    std::string text(std::int32_t pick, std::size_t column) const;
    std::string further_text(std::int32_t pick, std::size_t column) const;

    const SurveyState& survey_;
    Operator& op_;
    PickFilter filter_;
    std::vector<PickType> types_;
    std::vector<PickRow> grid_;       // element 0: the header; then by pick
    std::vector<std::int32_t> order_; // pick of every row
    int sorted_column_ = -1;
    Qt::SortOrder sort_order_ = Qt::AscendingOrder;
};

} // namespace tarvo

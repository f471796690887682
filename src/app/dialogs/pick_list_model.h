#pragma once

#include "picks/pick_filter.h"
#include "picks/pick_texts.h"
#include "survey/survey_state.h"

#include <QAbstractTableModel>

#include <functional>
#include <string>
#include <vector>

namespace tarvo {

// The rows of Grid_anomaly_picks in the order in which they are shown, those that pass the filter. The list itself is
// never sorted. Behind the columns of the list stand those of what goes with it.
class PickListModel : public QAbstractTableModel {
public:
    PickListModel(const SurveyState& survey, Operator& op, QObject* parent = nullptr);

    void show_list(); // the whole grid anew
    void set_filter(const PickFilter& filter);

    // The column behind those of the list, asked for when it is shown.
    void set_fit_summary(std::function<std::string(std::int32_t)> summary) { fit_summary_ = std::move(summary); }

    static constexpr int kFitColumn = static_cast<int>(kPickColumns);
    static constexpr int kRemarkColumn = kFitColumn + 1;
    static constexpr int kTypeNameColumn = kFitColumn + 2;
    static constexpr int kLineColumn = kFitColumn + 3;
    static constexpr int kColumns = kFitColumn + 4;

    std::int32_t pick_of_row(int row) const;  // 0: no such row
    int row_of_pick(std::int32_t pick) const; // -1: not shown

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override; // column -1: the order of the list

private:
    std::vector<std::int32_t> all_in_order() const;
    std::string text(std::int32_t pick, int column) const;
    std::string further_text(std::int32_t pick, int column) const;

    const SurveyState& survey_;
    Operator& op_;
    PickFilter filter_;
    std::vector<PickType> types_;
    std::vector<PickRow> grid_;       // element 0: the header; then by pick
    std::vector<std::int32_t> order_; // pick of every row
    std::function<std::string(std::int32_t)> fit_summary_;
    int sorted_column_ = -1;
    Qt::SortOrder sort_order_ = Qt::AscendingOrder;
};

} // namespace tarvo

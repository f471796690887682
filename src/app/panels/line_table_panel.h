#pragma once

#include "survey/line_table.h"
#include "survey/survey_state.h"

#include <QAbstractTableModel>
#include <QWidget>

#include <vector>

class QSortFilterProxyModel;
class QTableView;

namespace tarvo {

// The survey lines, one a row.
class LineTableModel : public QAbstractTableModel {
public:
    static constexpr int kSortRole = Qt::UserRole; // the number behind a text

    void show_lines(std::vector<LineSummary> lines);
    const std::vector<LineSummary>& lines() const { return lines_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<LineSummary> lines_;
    std::vector<std::vector<std::string>> texts_; // by line and column
    std::vector<std::string> captions_ = line_table_captions();
};

// View > Survey lines: to be sorted by any column, copied, exported, and pressed to see the line.
class LineTablePanel : public QWidget {
    Q_OBJECT

public:
    explicit LineTablePanel(QWidget* parent = nullptr);

    void show_lines(const SurveyState& survey);

signals:
    void line_chosen(std::int32_t first_record, std::int32_t last_record);
    void export_wanted();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void copy_rows() const;

    LineTableModel* model_;
    QSortFilterProxyModel* sorted_;
    QTableView* table_;
};

} // namespace tarvo

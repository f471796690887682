#pragma once

#include "intake/data_preview.h"

#include <QAbstractTableModel>
#include <QPalette>

namespace tarvo {

// The first lines of a data file as a table: one row a line, one column a field; header line and recognised columns
// stand out.
class PreviewModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void show_preview(DataPreview preview, const QPalette& palette);
    const DataPreview& preview() const { return preview_; }
    bool is_recognised(int column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QVariant background(int column, PreviewLineKind kind) const;

    DataPreview preview_;
    QPalette palette_;
    int columns_ = 0;
};

} // namespace tarvo

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

    // What a run reads stands in columns of its own before the fields where there is a data format.
    int columns_read() const { return preview_.is_by_format ? kColumnsRead : 0; }

    bool is_recognised(int column) const; // a quantity or a sensor uses it, or it is one of those read

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    static constexpr int kColumnsRead = 3; // time, east, north

    QVariant background(int column, PreviewLineKind kind) const;
    QString text_at(const PreviewLine& line, int column) const;
    QVariant foreground(const PreviewLine& line, int column) const;
    QString tip_at(const PreviewLine& line, int column) const;
    FieldReading reading_at(const PreviewLine& line, int column) const;

    DataPreview preview_;
    QPalette palette_;
    int columns_ = 0;
};

} // namespace tarvo

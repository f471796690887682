#pragma once

#include "intake/header.h"

#include <QComboBox>

#include <string>

class QStringListModel;

namespace tarvo {

// A box for a column name: typed, or chosen from the columns of the header.
class ColumnBox : public QComboBox {
    Q_OBJECT

public:
    // names is shared by all boxes of a dialog.
    ColumnBox(const QString& object_name, QStringListModel* names, QWidget* parent = nullptr);

    std::string name() const;
    void show_name(const std::string& name);

    // Marks a name that the header does not have.
    void mark_missing(bool missing);

protected:
    void wheelEvent(QWheelEvent* event) override;
};

// True for a name in use that the header does not have.
bool is_missing(const ColumnBox& box, const HeaderColumns& header_columns);

// The colour for what is wrong, readable on this widget's background.
QColor warning_colour(const QWidget& widget);

} // namespace tarvo

#pragma once

#include "picks/pick_filter.h"

#include <QWidget>

class QHBoxLayout;
class QLineEdit;

namespace tarvo {

// What narrows the pick list: a box each for name, type, survey line and the distance along the track.
class PickFilterBar : public QWidget {
    Q_OBJECT

public:
    explicit PickFilterBar(QWidget* parent = nullptr);

    PickFilter filter() const;
    void clear();

signals:
    void edited();

private:
    QLineEdit* add_box(QHBoxLayout& row, const char* name, const QString& caption, const QString& tip, int characters);

    QLineEdit* name_;
    QLineEdit* type_;
    QLineEdit* line_;
    QLineEdit* from_;
    QLineEdit* to_;
};

} // namespace tarvo

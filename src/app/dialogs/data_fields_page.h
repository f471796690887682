#pragma once

#include "app/common/column_box.h"
#include "definitions/definitions_checks.h"
#include "intake/header.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QLayout;
class QLineEdit;
class QSpinBox;

namespace tarvo {

// Tab_data_fields: what the columns hold besides the sensors, factors and signs, and how many sensors there are.
class DataFieldsPage : public QWidget {
    Q_OBJECT

public:
    explicit DataFieldsPage(QStringListModel* names, QWidget* parent = nullptr);

    DefinitionsPage page() const;
    void show_page(const DefinitionsPage& page);
    void mark_missing(const HeaderColumns& header_columns);

signals:
    void edited();
    void define_sensors_pressed();

private:
    QLayout* column_rows(QStringListModel* names);
    QLayout* factor_rows();
    QLayout* sensor_rows();

    std::array<ColumnBox*, number_of_field_slots + 1> columns_ = {}; // from 1
    QLineEdit* coordinate_scale_;
    QLineEdit* elevation_scale_;
    QCheckBox* depth_sign_;
    QSpinBox* sensors_;
    QComboBox* components_;
    QComboBox* location_;
};

} // namespace tarvo

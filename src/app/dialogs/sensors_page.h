#pragma once

#include "app/common/column_box.h"
#include "definitions/definitions_checks.h"
#include "intake/header.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace tarvo {

class LeverArmView;

// Tab_sensors: the grid of all sensors, the templates of their column names, and the page of the sensor chosen in the
// grid with its components, signs and place.
class SensorsPage : public QWidget {
    Q_OBJECT

public:
    explicit SensorsPage(QStringListModel* names, QWidget* parent = nullptr);

    // Shows everything anew: grid, templates and the page of one sensor.
    void show_definitions(const SurveyDefinitions& definitions, int sensor);
    // The grid and the drawing alone, while the page is being edited.
    void show_grid(const SurveyDefinitions& definitions, int sensor);

    SensorPage page() const;
    void take_templates(SurveyDefinitions& definitions) const;
    void mark_missing(const HeaderColumns& header_columns);

signals:
    void page_edited();
    void templates_edited();
    void sensor_chosen(int sensor);
    void fill_pressed();
    void done_pressed();

private:
    QWidget* template_rows();
    QWidget* sensor_rows(QStringListModel* names);
    void show_templates(const SurveyDefinitions& definitions);
    void show_sensor(const SurveyDefinitions& definitions, int sensor);

    void enable_fill();

    QTableWidget* grid_;
    QPushButton* fill_;
    std::array<QLineEdit*, 4> component_templates_ = {}; // 0: TMI, 1..3
    std::array<QLineEdit*, 4> coordinate_templates_ = {};
    std::array<QLabel*, 4> component_labels_ = {};
    std::array<ColumnBox*, 4> components_ = {};
    std::array<QCheckBox*, 4> flips_ = {};
    std::array<ColumnBox*, 4> coordinates_ = {};
    std::array<QLineEdit*, 4> positions_ = {};
    QWidget* coordinate_rows_;
    QWidget* position_rows_;
    QGroupBox* sensor_group_;
    LeverArmView* arms_;
};

} // namespace tarvo

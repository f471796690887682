#include "app/dialogs/sensors_page.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/dialogs/lever_arm_view.h"
#include "definitions/sensor_grid.h"
#include "text/numbers.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr const char* kComponentNames[] = {"TMI", "Tx", "Ty", "Tz"};
constexpr const char* kAxisNames[] = {"", "X", "Y", "Z"};

QGridLayout* bare_grid(QWidget* parent)
{
    auto* const grid = new QGridLayout(parent);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setColumnStretch(1, 1);
    return grid;
}

QLabel* label_for(const QString& text, QWidget* box)
{
    auto* const label = plain_label(text);
    label->setBuddy(box);
    return label;
}

} // namespace

SensorsPage::SensorsPage(QStringListModel* names, QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Tab_sensors"));
    grid_ = new QTableWidget;
    grid_->setObjectName(QStringLiteral("Grid_sensors"));
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setTabKeyNavigation(false);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);
    connect(grid_, &QTableWidget::currentCellChanged, this, [this](int row, int, int previous, int) {
        if (row >= 0 && row != previous) emit sensor_chosen(row + 1);
    });

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(template_rows());
    layout->addWidget(grid_, 1);
    layout->addWidget(sensor_rows(names));
}

QWidget* SensorsPage::template_rows()
{
    fill_ = new QPushButton(tr("F&ill"));
    fill_->setObjectName(QStringLiteral("Command_fill_template"));
    fill_->setToolTip(tr("Name the columns of all sensors after the templates, once all of these are given"));
    fill_->setAutoDefault(false);
    connect(fill_, &QPushButton::clicked, this, &SensorsPage::fill_pressed);
    auto* const group = new QGroupBox(tr("Column names from templates, * being the sensor's number"));
    auto* const row = new QHBoxLayout(group);
    const auto add_box = [&](const QString& object_name, const char* caption) {
        auto* const box = new QLineEdit;
        box->setObjectName(object_name);
        box->setPlaceholderText(to_qt(caption));
        box->setToolTip(tr("Template of the %1 columns, such as Mag*").arg(to_qt(caption)));
        box->setMinimumWidth(50);
        connect(box, &QLineEdit::textEdited, this, &SensorsPage::templates_edited);
        connect(box, &QLineEdit::textChanged, this, &SensorsPage::enable_fill);
        row->addWidget(box);
        return box;
    };
    for (std::size_t j = 0; j <= 3; ++j) {
        component_templates_[j] = add_box(QStringLiteral("Text_component_template_%1").arg(j), kComponentNames[j]);
    }
    for (std::size_t j = 1; j <= 3; ++j) {
        coordinate_templates_[j] = add_box(QStringLiteral("Text_coordinate_template_%1").arg(j), kAxisNames[j]);
    }
    row->addWidget(fill_);
    return group;
}

QWidget* SensorsPage::sensor_rows(QStringListModel* names)
{
    auto* const component_rows = new QWidget;
    auto* const components = bare_grid(component_rows);
    coordinate_rows_ = new QWidget;
    auto* const coordinates = bare_grid(coordinate_rows_);
    position_rows_ = new QWidget;
    auto* const positions = bare_grid(position_rows_);
    const QString position_names[] = {{}, tr("Offset (mm)"), tr("Arm length (mm)"), tr("Rotation (deg)")};
    const QString position_hints[] = {{},
                                      tr("How far ahead of the fish's position the arm begins; negative: behind"),
                                      tr("Length of the arm across the track"),
                                      tr("Direction of the arm: 0 to port, 90 along the vertical channel")};
    for (std::size_t j = 1; j <= 3; ++j) {
        const int row = static_cast<int>(j);
        components_[j] = new ColumnBox(QStringLiteral("Text_TMI_column_name_%1").arg(j), names);
        component_labels_[j] = label_for({}, components_[j]);
        flips_[j] = new QCheckBox(tr("Flip sign"));
        flips_[j]->setObjectName(QStringLiteral("Check_flip_sign_%1").arg(j));
        flips_[j]->setToolTip(tr("The component's polarity: its values change their sign on input"));
        components->addWidget(component_labels_[j], row, 0);
        components->addWidget(components_[j], row, 1);
        components->addWidget(flips_[j], row, 2);

        coordinates_[j] = new ColumnBox(QStringLiteral("Text_TMI_xyz_%1").arg(j), names);
        coordinates_[j]->setToolTip(tr("Column of the sensor's %1 coordinate").arg(to_qt(kAxisNames[j])));
        coordinates->addWidget(label_for(to_qt(kAxisNames[j]), coordinates_[j]), row, 0);
        coordinates->addWidget(coordinates_[j], row, 1);

        positions_[j] = new QLineEdit;
        positions_[j]->setObjectName(QStringLiteral("Text_TMI_xyz_position_%1").arg(j));
        positions_[j]->setToolTip(position_hints[j]);
        positions->addWidget(label_for(position_names[j], positions_[j]), row, 0);
        positions->addWidget(positions_[j], row, 1);

        connect(components_[j], &QComboBox::currentTextChanged, this, &SensorsPage::page_edited);
        connect(flips_[j], &QCheckBox::toggled, this, &SensorsPage::page_edited);
        connect(coordinates_[j], &QComboBox::currentTextChanged, this, &SensorsPage::page_edited);
        connect(positions_[j], &QLineEdit::textChanged, this, &SensorsPage::page_edited);
    }
    auto* const done = new QPushButton(tr("Sensor done"));
    done->setObjectName(QStringLiteral("Command_done_sensor"));
    done->setToolTip(tr("Check this sensor and go to the next one"));
    done->setAutoDefault(false);
    connect(done, &QPushButton::clicked, this, &SensorsPage::done_pressed);

    arms_ = new LeverArmView;
    auto* const boxes = new QVBoxLayout;
    boxes->addWidget(component_rows);
    boxes->addWidget(coordinate_rows_);
    boxes->addWidget(position_rows_);
    boxes->addStretch();
    boxes->addWidget(done, 0, Qt::AlignLeft);
    sensor_group_ = new QGroupBox;
    auto* const layout = new QHBoxLayout(sensor_group_);
    layout->addLayout(boxes, 1);
    layout->addWidget(arms_, 1);
    return sensor_group_;
}

void SensorsPage::show_definitions(const SurveyDefinitions& definitions, int sensor)
{
    show_templates(definitions);
    show_sensor(definitions, sensor);
    show_grid(definitions, sensor);
}

void SensorsPage::show_templates(const SurveyDefinitions& definitions)
{
    const bool vector = definitions.components_per_sensor == 3;
    for (std::size_t j = 0; j <= 3; ++j) {
        component_templates_[j]->setText(to_qt(definitions.component_templates[j]));
        component_templates_[j]->setVisible((j > 0) == vector);
    }
    for (std::size_t j = 1; j <= 3; ++j) {
        coordinate_templates_[j]->setText(to_qt(definitions.coordinate_templates[j]));
        coordinate_templates_[j]->setVisible(definitions.read_sensor_location == 1);
    }
    enable_fill();
}

// A template that is not in use would take the sensors' column names away.
void SensorsPage::enable_fill()
{
    bool enabled = true;
    for (const auto& templates : {component_templates_, coordinate_templates_}) {
        for (const QLineEdit* const box : templates) {
            if (box == nullptr || box->isHidden()) continue;
            enabled = enabled && !is_unused_name(trimmed(to_utf8(box->text())));
        }
    }
    fill_->setEnabled(enabled);
}

void SensorsPage::show_sensor(const SurveyDefinitions& definitions, int sensor)
{
    const SensorPage page = display_sensor_definitions(definitions, sensor);
    const SensorGrid labels = sensor_grid(definitions);
    sensor_group_->setTitle(to_qt(labels.rows.at(static_cast<std::size_t>(sensor) - 1).caption));
    const auto components = static_cast<std::size_t>(definitions.components_per_sensor);
    for (std::size_t j = 1; j <= 3; ++j) {
        components_[j]->show_name(page.Text_TMI_column_name[j]);
        flips_[j]->setChecked(page.flip_sign[j]);
        coordinates_[j]->show_name(page.Text_TMI_xyz[j]);
        positions_[j]->setText(to_qt(page.Text_TMI_xyz_position[j]));
        const bool used = j <= components;
        for (QWidget* const box : {static_cast<QWidget*>(component_labels_[j]), static_cast<QWidget*>(components_[j]),
                                   static_cast<QWidget*>(flips_[j])}) {
            box->setVisible(used);
        }
        if (!used) continue;
        component_labels_[j]->setText(to_qt(labels.columns[j - 1].caption));
        components_[j]->setToolTip(to_qt(labels.columns[j - 1].hint));
    }
    coordinate_rows_->setVisible(definitions.read_sensor_location == 1);
    position_rows_->setVisible(definitions.read_sensor_location == 0);
}

void SensorsPage::show_grid(const SurveyDefinitions& definitions, int sensor)
{
    const QSignalBlocker quiet(grid_);
    const SensorGrid shown = sensor_grid(definitions);
    grid_->setColumnCount(static_cast<int>(shown.columns.size()));
    grid_->setRowCount(static_cast<int>(shown.rows.size()));
    for (int column = 0; column < grid_->columnCount(); ++column) {
        const SensorGrid::Column& labels = shown.columns[static_cast<std::size_t>(column)];
        auto* const caption = new QTableWidgetItem(to_qt(labels.caption));
        caption->setToolTip(to_qt(labels.hint));
        grid_->setHorizontalHeaderItem(column, caption);
        for (int row = 0; row < grid_->rowCount(); ++row) {
            const auto& cells = shown.rows[static_cast<std::size_t>(row)].cells;
            auto* const cell = new QTableWidgetItem(to_qt(cells[static_cast<std::size_t>(column)]));
            cell->setToolTip(to_qt(labels.hint));
            grid_->setItem(row, column, cell);
        }
    }
    for (int row = 0; row < grid_->rowCount(); ++row) {
        const std::string& caption = shown.rows[static_cast<std::size_t>(row)].caption;
        grid_->setVerticalHeaderItem(row, new QTableWidgetItem(to_qt(caption)));
    }
    grid_->setCurrentCell(sensor - 1, std::max(0, grid_->currentColumn()));
    arms_->show_sensors(definitions, sensor);
}

SensorPage SensorsPage::page() const
{
    SensorPage page;
    for (std::size_t j = 1; j <= 3; ++j) {
        page.Text_TMI_column_name[j] = components_[j]->name();
        page.flip_sign[j] = flips_[j]->isChecked();
        page.Text_TMI_xyz[j] = coordinates_[j]->name();
        page.Text_TMI_xyz_position[j] = to_utf8(positions_[j]->text());
    }
    return page;
}

void SensorsPage::take_templates(SurveyDefinitions& definitions) const
{
    for (std::size_t j = 0; j <= 3; ++j) {
        definitions.component_templates[j] = to_utf8(component_templates_[j]->text());
        if (j > 0) definitions.coordinate_templates[j] = to_utf8(coordinate_templates_[j]->text());
    }
}

void SensorsPage::mark_missing(const HeaderColumns& header_columns)
{
    for (std::size_t j = 1; j <= 3; ++j) {
        for (ColumnBox* const box : {components_[j], coordinates_[j]}) {
            box->mark_missing(is_missing(*box, header_columns));
        }
    }
}

} // namespace tarvo

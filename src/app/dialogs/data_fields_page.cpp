#include "app/dialogs/data_fields_page.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tarvo {

namespace {

QString hint_of_slot(FieldSlotIndex slot)
{
    switch (slot) {
    case kTime: return DataFieldsPage::tr("Seconds, growing from line to line. Lines without it are rejected.");
    case kEast: return DataFieldsPage::tr("Easting of the fish in metres (after the coordinate scale)");
    case kNorth: return DataFieldsPage::tr("Northing of the fish in metres (after the coordinate scale)");
    case kDepth: return DataFieldsPage::tr("Depth of the fish below the surface");
    case kElevation: return DataFieldsPage::tr("Elevation or altitude of the fish");
    case kDem:
        return DataFieldsPage::tr("Height of the terrain or seabed; worked out from depth and elevation if absent");
    case kHeading: return DataFieldsPage::tr("Heading of the fish in degrees");
    case kPitch: return DataFieldsPage::tr("Pitch of the fish in degrees");
    case kRoll: return DataFieldsPage::tr("Roll of the fish in degrees");
    case kLine: return DataFieldsPage::tr("Survey line number: a new number begins a new line");
    }
    return {};
}

QGroupBox* group_of(const QString& title, QLayout* layout)
{
    auto* const group = new QGroupBox(title);
    group->setLayout(layout);
    return group;
}

} // namespace

DataFieldsPage::DataFieldsPage(QStringListModel* names, QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Tab_data_fields"));
    auto* const right = new QVBoxLayout;
    right->addWidget(group_of(tr("Factors and signs"), factor_rows()));
    right->addWidget(group_of(tr("Sensors"), sensor_rows()));
    right->addStretch();
    auto* const groups = new QHBoxLayout(this);
    auto* const columns = new QVBoxLayout;
    columns->addWidget(group_of(tr("Columns"), column_rows(names)));
    columns->addStretch();
    groups->addLayout(columns, 1);
    groups->addLayout(right, 1);
}

QLayout* DataFieldsPage::column_rows(QStringListModel* names)
{
    auto* const rows = new QFormLayout;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        auto* const box = new ColumnBox(QStringLiteral("Text_locations_column_%1").arg(slot), names);
        box->setToolTip(hint_of_slot(kFieldSlots[slot].slot) + tr("\nN/A: the data do not have it."));
        connect(box, &QComboBox::currentTextChanged, this, &DataFieldsPage::edited);
        add_plain_row(*rows, to_qt(kFieldSlots[slot].name), box);
        columns_[slot] = box;
    }
    return rows;
}

QLayout* DataFieldsPage::factor_rows()
{
    coordinate_scale_ = new QLineEdit;
    coordinate_scale_->setObjectName(QStringLiteral("Text_data_scale"));
    coordinate_scale_->setToolTip(tr("Factor that turns eastings and northings into metres"));
    elevation_scale_ = new QLineEdit;
    elevation_scale_->setObjectName(QStringLiteral("Text_elevation_scale"));
    elevation_scale_->setToolTip(tr("Factor that turns depths and elevations into metres"));
    depth_sign_ = new QCheckBox(tr("Fli&p the depth sign"));
    depth_sign_->setObjectName(QStringLiteral("Check_fish_depth_sign"));
    depth_sign_->setToolTip(tr("Depths, and a DEM read from a column, change their sign"));
    connect(coordinate_scale_, &QLineEdit::textChanged, this, &DataFieldsPage::edited);
    connect(elevation_scale_, &QLineEdit::textChanged, this, &DataFieldsPage::edited);
    connect(depth_sign_, &QCheckBox::toggled, this, &DataFieldsPage::edited);

    auto* const rows = new QFormLayout;
    add_plain_row(*rows, tr("&Coordinate scale"), coordinate_scale_);
    add_plain_row(*rows, tr("Elevation scale"), elevation_scale_);
    rows->addRow(depth_sign_);
    return rows;
}

QLayout* DataFieldsPage::sensor_rows()
{
    sensors_ = new QSpinBox;
    sensors_->setObjectName(QStringLiteral("Text_num_mag"));
    sensors_->setRange(1, kMostSensors);
    sensors_->setToolTip(tr("How many magnetometer sensors the fish carries"));
    components_ = new QComboBox;
    components_->setObjectName(QStringLiteral("Text_num_sensors"));
    components_->addItem(tr("1: total field (TMI)"), 1);
    components_->addItem(tr("3: vector (Tx, Ty, Tz)"), 3);
    components_->setToolTip(tr("What each sensor measures"));
    location_ = new QComboBox;
    location_->setObjectName(QStringLiteral("Combo_sensor_location_determination"));
    location_->addItems({tr("From the fish and lever arms"), tr("Read from columns")});
    location_->setToolTip(tr("Where the position of each sensor comes from"));
    auto* const define = new QPushButton(tr("Def&ine sensors..."));
    define->setObjectName(QStringLiteral("Command_define_sensors"));
    define->setToolTip(tr("Go to the sensors' columns, signs and lever arms"));
    define->setAutoDefault(false);
    connect(sensors_, &QSpinBox::valueChanged, this, &DataFieldsPage::edited);
    connect(components_, &QComboBox::currentIndexChanged, this, &DataFieldsPage::edited);
    connect(location_, &QComboBox::currentIndexChanged, this, &DataFieldsPage::edited);
    connect(define, &QPushButton::clicked, this, &DataFieldsPage::define_sensors_pressed);

    auto* const rows = new QFormLayout;
    add_plain_row(*rows, tr("&Number of sensors"), sensors_);
    add_plain_row(*rows, tr("Co&mponents of each"), components_);
    add_plain_row(*rows, tr("Sensor posi&tions"), location_);
    rows->addRow(define);
    return rows;
}

DefinitionsPage DataFieldsPage::page() const
{
    DefinitionsPage page;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        page.Text_locations_column[slot] = columns_[slot]->name();
    }
    page.Text_data_scale = to_utf8(coordinate_scale_->text());
    page.Text_elevation_scale = to_utf8(elevation_scale_->text());
    page.Check_fish_depth_sign = depth_sign_->isChecked();
    page.Text_num_mag = std::to_string(sensors_->value());
    page.Text_num_sensors = to_utf8(components_->currentData().toString());
    page.Combo_sensor_location_determination = location_->currentIndex();
    return page;
}

void DataFieldsPage::show_page(const DefinitionsPage& page)
{
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        columns_[slot]->show_name(page.Text_locations_column[slot]);
    }
    coordinate_scale_->setText(to_qt(page.Text_data_scale));
    elevation_scale_->setText(to_qt(page.Text_elevation_scale));
    depth_sign_->setChecked(page.Check_fish_depth_sign);
    sensors_->setValue(to_qt(page.Text_num_mag).toInt());
    components_->setCurrentIndex(components_->findData(to_qt(page.Text_num_sensors).toInt()));
    location_->setCurrentIndex(page.Combo_sensor_location_determination);
}

void DataFieldsPage::mark_missing(const HeaderColumns& header_columns)
{
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        columns_[slot]->mark_missing(is_missing(*columns_[slot], header_columns));
    }
}

} // namespace tarvo

#include "app/panels/dial_panel.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "text/numbers.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr int kDialColumns = 3;
constexpr int kMostFields = 12; // more sensors than that do not fit

QString reading(double value, int decimals, const QString& unit)
{
    const bool is_known = is_valid_channel(value);
    return to_qt(readable_number(value, decimals)) + (is_known ? unit : QString());
}

} // namespace

DialPanel::DialPanel(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this))
{
    setObjectName(QStringLiteral("Frame_dials"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    grid_->setContentsMargins(6, 4, 6, 4);
    grid_->setHorizontalSpacing(4);
    grid_->setVerticalSpacing(4);
    for (int column = 0; column < kDialColumns; ++column) grid_->setColumnStretch(column, 1);
    heading_ = add_dial(QStringLiteral("Dial_heading"), tr("Heading"), tr("Heading of the fish, degrees"));
    pitch_ = add_dial(QStringLiteral("Dial_pitch"), tr("Pitch"), tr("Pitch of the fish, degrees"));
    roll_ = add_dial(QStringLiteral("Dial_roll"), tr("Roll"), tr("Roll of the fish, degrees"));
    depth_ = add_dial(QStringLiteral("Dial_depth"), tr("Depth"), tr("Depth of the fish, metres"));
    elevation_ = add_dial(QStringLiteral("Dial_elevation"), tr("Elevation"), tr("Elevation of the fish, metres"));
    speed_ = add_dial(QStringLiteral("Dial_speed"), tr("Speed"), tr("Speed over ground, metres a second"));
    fit_sensors(1);
    show_readings({});
}

QLabel* DialPanel::add_dial(const QString& name, const QString& caption, const QString& tip)
{
    auto* const dial = new QWidget;
    dial->setToolTip(tip);
    auto* const title = plain_label(caption);
    auto* const value = plain_label();
    value->setObjectName(name);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont large = value->font();
    large.setPointSizeF(large.pointSizeF() * 1.15);
    large.setBold(true);
    value->setFont(large);
    // Fixed room: no reading widens the window.
    value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("-00,000.00 nT")));
    auto* const column = new QVBoxLayout(dial);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(title);
    column->addWidget(value);
    grid_->addWidget(dial, dials_ / kDialColumns, dials_ % kDialColumns);
    ++dials_;
    return value;
}

void DialPanel::fit_sensors(int count)
{
    const auto wanted = static_cast<std::size_t>(std::min(count, kMostFields));
    while (fields_.size() > wanted) {
        delete fields_.back()->parentWidget();
        fields_.pop_back();
        --dials_;
    }
    while (fields_.size() < wanted) {
        const auto number = static_cast<int>(fields_.size()) + 1;
        fields_.push_back(add_dial(QStringLiteral("Dial_field_%1").arg(number), tr("Sensor %1").arg(number),
                                   tr("Total field of sensor %1, nanotesla").arg(number)));
    }
}

void DialPanel::show_readings(const DialReadings& readings)
{
    const QString degrees = QStringLiteral("\u00b0");
    const QString metres = QStringLiteral(" m");
    heading_->setText(reading(readings.heading, 1, degrees));
    pitch_->setText(reading(readings.pitch, 1, degrees));
    roll_->setText(reading(readings.roll, 1, degrees));
    depth_->setText(reading(readings.depth, 2, metres));
    elevation_->setText(reading(readings.elevation, 2, metres));
    speed_->setText(reading(readings.speed, 2, QStringLiteral(" m/s")));
    fit_sensors(static_cast<int>(readings.total_field.size()) - 1);
    for (std::size_t sensor = 1; sensor <= fields_.size(); ++sensor) {
        fields_[sensor - 1]->setText(reading(readings.total_field[sensor], 2, QStringLiteral(" nT")));
    }
}

} // namespace tarvo

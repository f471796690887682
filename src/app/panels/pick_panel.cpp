#include "app/panels/pick_panel.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/panels/arrow_scroll_bar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tarvo {

PickPanel::PickPanel(QWidget* parent) : QWidget(parent), label_(plain_label()), picks_(new QComboBox)
{
    setObjectName(QStringLiteral("Frame_picks"));
    label_->setObjectName(QStringLiteral("Label_current_pick"));
    picks_->setObjectName(QStringLiteral("Combo_current_pick"));
    picks_->setAccessibleName(tr("Current pick"));
    picks_->setToolTip(tr("The picks in the order of the list; the chosen one is shown in the middle"));
    picks_->setPlaceholderText(tr("Choose a pick"));
    picks_->setMinimumContentsLength(10); // longer names have the list
    picks_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(picks_, &QComboBox::activated, this, [this](int position) { emit pick_chosen(position + 1); });

    auto* const choice = new QHBoxLayout;
    choice->addWidget(label_);
    choice->addWidget(picks_, 1);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->setSpacing(4);
    rows->addLayout(choice);
    auto* const work = new QHBoxLayout;
    work->addWidget(make_moving(), 1);
    work->addWidget(make_actions());
    rows->addLayout(work);
    rows->addStretch(1);
    show_controls({});
}

QWidget* PickPanel::make_actions()
{
    actions_ = new QWidget;
    actions_->setObjectName(QStringLiteral("Frame_selected_anomaly_action"));
    auto* const remove = new QPushButton(tr("Delete"));
    remove->setObjectName(QStringLiteral("Command_delete_selected_anomaly"));
    remove->setToolTip(tr("Delete the current pick (Del)"));
    connect(remove, &QPushButton::clicked, this, &PickPanel::delete_pressed);
    auto* const row = new QHBoxLayout(actions_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(remove);
    return actions_;
}

QWidget* PickPanel::make_moving()
{
    moving_ = new QWidget;
    moving_->setObjectName(QStringLiteral("Frame_move_anomalies"));
    shift_ = new ArrowScrollBar;
    shift_->setObjectName(QStringLiteral("HScroll_shift_anomaly"));
    shift_->setAccessibleName(tr("Move the current pick"));
    shift_->setToolTip(
        tr("Moves the current pick along the track: one sample with the arrows (Left, Right), ten beside "
           "the handle (Shift+Left, Shift+Right), up to a hundred with the handle"));
    shift_->setRange(-kLargestShift, kLargestShift);
    shift_->setSingleStep(kSmallShiftStep);
    shift_->setPageStep(kLargeShiftStep);
    shift_->setTracking(false); // the handle counts where it is let go
    shift_->setFocusPolicy(Qt::StrongFocus);
    shift_->setMinimumWidth(120);
    connect(shift_, &QScrollBar::valueChanged, this, [this](int samples) {
        if (samples == 0) return;
        shift_->setValue(0);
        emit shifted(samples);
    });
    auto* const caption = plain_label(tr("&Move"));
    caption->setBuddy(shift_);
    auto* const row = new QHBoxLayout(moving_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(caption);
    row->addWidget(shift_, 1);
    return moving_;
}

void PickPanel::show_controls(const PickControls& controls)
{
    const QSignalBlocker quiet(picks_);
    picks_->clear();
    for (const std::string& name : controls.names) picks_->addItem(to_qt(name));
    picks_->setCurrentIndex(controls.selected);
    picks_->setEnabled(controls.choosing_enabled);
    label_->setText(to_qt(controls.label));
    label_->setEnabled(controls.choosing_enabled);
    actions_->setEnabled(controls.actions_enabled);
    can_move_ = controls.moving_enabled;
    moving_->setEnabled(can_move_ && !moving_locked_);
}

void PickPanel::stop_moving()
{
    const bool has_focus = shift_->hasFocus();
    shift_->setEnabled(false); // ends what the pressed arrow goes on repeating
    shift_->setEnabled(true);
    if (has_focus) shift_->setFocus();
}

void PickPanel::set_file_name(const QString& name)
{
    label_->setToolTip(plain_tip(name.isEmpty() ? tr("These picks have no file yet") : tr("Pick file: %1").arg(name)));
}

void PickPanel::set_moving_locked(bool locked)
{
    moving_locked_ = locked;
    moving_->setEnabled(can_move_ && !moving_locked_);
}

} // namespace tarvo

#include "app/panels/run_bar.h"

#include "app/common/icons.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "survey/run_settings.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSlider>

namespace tarvo {

RunBar::RunBar(IconSet& icons, QWidget* parent)
    : QWidget(parent), icons_(icons), pace_(new QComboBox), speed_(new QSlider(Qt::Horizontal))
{
    start_[0] = make_start_button(StartButton::replay_or_stop, tr("Show the file line by line; during a run: end it"));
    start_[1] = make_start_button(StartButton::load_or_pause,
                                  tr("Read the whole file and draw at the end; during a run: pause or go on"));
    pace_->setObjectName(QStringLiteral("Combo_pace"));
    pace_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    pace_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    pace_->setAccessibleName(tr("Pace of the replay"));
    pace_->setToolTip(tr("Pace of a replay: by the slider, or the data's own time, so many times as fast"));
    for (const char* const key : kReplayPaces) {
        const QString text = QLatin1String(key);
        pace_->addItem(pace_of_text(key) ? text + QStringLiteral(" \u00d7") : tr("by slider"), text);
    }
    connect(pace_, &QComboBox::activated, this, [this] {
        show_pace(to_utf8(pace_->currentData().toString()));
        emit pace_chosen(to_utf8(pace_->currentData().toString()));
    });
    speed_->setObjectName(QStringLiteral("HScroll_speed"));
    speed_->setAccessibleName(tr("Speed of the replay"));
    speed_->setRange(0, 100);
    speed_->setPageStep(10);
    speed_->setFocusPolicy(Qt::StrongFocus);
    speed_->setFixedWidth(60);
    speed_->setToolTip(tr("Speed of the replay: to the right faster, at the end without any delay"));
    connect(speed_, &QSlider::valueChanged, this, &RunBar::speed_changed);

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(start_[0]);
    row->addWidget(start_[1]);
    row->addWidget(pace_);
    row->addWidget(speed_);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    show_controls({}, {});
    reset_speed();
}

QPushButton* RunBar::make_start_button(StartButton index, const QString& tip)
{
    auto* const button = new QPushButton;
    button->setObjectName(QStringLiteral("Command_start_logging_%1").arg(static_cast<int>(index)));
    button->setToolTip(tip);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("Resume Replay")) + 34);
    connect(button, &QPushButton::clicked, this, [this, index] { emit start_pressed(index); });
    return button;
}

void RunBar::show_controls(const RunControls& controls, const RunFlags& run)
{
    start_[0]->setText(to_qt(controls.start_caption));
    start_[1]->setText(to_qt(controls.pause_caption));
    const bool can_pause = run.file_run_active() && !run.run_paused;
    icons_.set(*start_[0], run.file_run_active() ? QStringLiteral("stop") : QStringLiteral("replay"));
    icons_.set(*start_[1], can_pause        ? QStringLiteral("pause")
                           : run.run_paused ? QStringLiteral("replay")
                                            : QStringLiteral("load"));
    for (QPushButton* const button : start_) button->setEnabled(controls.start_enabled);
}

void RunBar::show_pace(const std::string& key)
{
    pace_->setCurrentIndex(pace_->findData(to_qt(key)));
    speed_->setEnabled(!pace_of_text(key));
}

void RunBar::reset_speed()
{
    speed_->setValue(speed_->maximum());
}

} // namespace tarvo

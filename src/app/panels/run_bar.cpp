#include "app/panels/run_bar.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "survey/survey_readings.h"
#include "text/numbers.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>

namespace tarvo {

namespace {

constexpr int kProgressSteps = 1000; // a file's length may be beyond what a progress bar counts

QString count_text(std::int64_t count)
{
    return to_qt(grouped_digits(std::to_string(count)));
}

} // namespace

RunBar::RunBar(QWidget* parent) : QWidget(parent), speed_(new QSlider(Qt::Horizontal)), progress_(new QProgressBar)
{
    start_[0] = make_start_button(StartButton::replay_or_stop, tr("Show the file line by line; during a run: end it"));
    start_[1] = make_start_button(StartButton::load_or_pause,
                                  tr("Read the whole file and draw at the end; during a run: pause or go on"));
    speed_->setObjectName(QStringLiteral("HScroll_speed"));
    speed_->setRange(0, 100);
    speed_->setPageStep(10);
    speed_->setFocusPolicy(Qt::StrongFocus);
    speed_->setMinimumWidth(110);
    speed_->setToolTip(tr("Speed of the replay: to the right faster, at the end without any delay"));
    connect(speed_, &QSlider::valueChanged, this, &RunBar::speed_changed);
    progress_->setObjectName(QStringLiteral("ProgressBar_data_load"));
    progress_->setRange(0, kProgressSteps);
    progress_->setFormat(QString());
    progress_->setMinimumWidth(190);
    progress_->setToolTip(tr("How much of the file has been read, how fast, and how long the rest will take"));

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->addWidget(start_[0]);
    row->addWidget(start_[1]);
    auto* const speed_label = plain_label(tr("Sp&eed"));
    speed_label->setBuddy(speed_);
    row->addWidget(speed_label);
    row->addWidget(speed_);
    row->addWidget(progress_, 1);
    lines_read_ =
        add_counter(*row, QStringLiteral("Text_num_lines_read"), tr("lines read"), tr("Data lines read in this run"));
    samples_ = add_counter(*row, QStringLiteral("Text_num_data"), tr("samples"), tr("Averaged samples stored"));
    rejected_ =
        add_counter(*row, QStringLiteral("Text_num_reject"), tr("rejected"), tr("Data lines that could not be used"));
    not_averaged_ =
        add_counter(*row, QStringLiteral("Text_num_not_averaged"), tr("not averaged"),
                    tr("Lines not averaged: valid ones that closed a bin and went into none, see Corrections "
                       "in the processing parameters"));
    line_ = add_counter(*row, QStringLiteral("Text_current_line"), tr("survey line"), tr("The current survey line"));
    reset_speed();
    show_counters({});
}

QPushButton* RunBar::make_start_button(StartButton index, const QString& tip)
{
    auto* const button = new QPushButton;
    button->setObjectName(QStringLiteral("Command_start_logging_%1").arg(static_cast<int>(index)));
    button->setToolTip(tip);
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("Resume Replay")) + 24);
    connect(button, &QPushButton::clicked, this, [this, index] { emit start_pressed(index); });
    return button;
}

QLabel* RunBar::add_counter(QHBoxLayout& row, const QString& name, const QString& caption, const QString& tip)
{
    auto* const value = plain_label();
    value->setObjectName(name);
    value->setToolTip(tip);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont bold = value->font();
    bold.setBold(true);
    value->setFont(bold);
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("00,000")));
    auto* const label = plain_label(caption);
    label->setToolTip(tip);
    row.addSpacing(6);
    row.addWidget(value);
    row.addWidget(label);
    return value;
}

void RunBar::show_controls(const RunControls& controls)
{
    start_[0]->setText(to_qt(controls.start_caption));
    start_[1]->setText(to_qt(controls.pause_caption));
    for (QPushButton* const button : start_) button->setEnabled(controls.start_enabled);
}

void RunBar::show_counters(const RunCounters& counters)
{
    lines_read_->setText(count_text(counters.lines_read));
    samples_->setText(count_text(counters.samples_stored));
    rejected_->setText(count_text(counters.lines_rejected));
    not_averaged_->setText(count_text(counters.lines_not_averaged));
    line_->setText(to_qt(line_name(counters.current_line_number)));

    const double share = counters.file_length > 0 ? static_cast<double>(counters.characters_consumed) /
                                                        static_cast<double>(counters.file_length)
                                                  : 0.0;
    progress_->setValue(static_cast<int>(share * kProgressSteps));
    if (!clock_.isValid()) clock_.start();
    rate_.update(counters, static_cast<double>(clock_.elapsed()) / 1000.0);
    const bool is_going = counters.lines_read > 0 && counters.characters_consumed > 0;
    progress_->setFormat(is_going ? QStringLiteral("%p%   ") + to_qt(rate_.text()) : QString());
}

// The counters are those of a run and stand at 0 behind it.
void RunBar::show_totals(std::int64_t lines_read, std::int32_t samples_stored)
{
    progress_->setFormat(tr("%1 lines, %2 samples").arg(count_text(lines_read), count_text(samples_stored)));
}

void RunBar::reset_speed()
{
    speed_->setValue(speed_->maximum());
}

} // namespace tarvo

#include "app/panels/run_strip.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "survey/survey_readings.h"
#include "text/numbers.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

constexpr int kProgressSteps = 1000; // a file's length may be beyond what a progress bar counts

QString count_text(std::int64_t count)
{
    return to_qt(grouped_digits(std::to_string(count)));
}

// In a place that grows with the number and does not shrink, so that what stands beside it rests.
void show_in_place(QLabel& label, const QString& text)
{
    label.setText(text);
    label.setMinimumWidth(std::max(label.minimumWidth(), label.fontMetrics().horizontalAdvance(text) + 2));
}

} // namespace

RunStrip::RunStrip(QWidget* parent) : QWidget(parent), progress_(new QProgressBar)
{
    progress_->setObjectName(QStringLiteral("ProgressBar_data_load"));
    progress_->setAccessibleName(tr("Progress of the run"));
    progress_->setRange(0, kProgressSteps);
    progress_->setFormat(QString());
    progress_->setMinimumWidth(progress_->fontMetrics().horizontalAdvance(QStringLiteral("stopped while computing")) +
                               12);
    progress_->setMaximumHeight(progress_->fontMetrics().height() + 4);
    progress_->setToolTip(tr("How much of the file has been read, how fast, and how long the rest will take"));

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(progress_, 1);
    lines_read_ =
        add_counter(*row, QStringLiteral("Text_num_lines_read"), tr("lines"), tr("Data lines read in this run"));
    samples_ = add_counter(*row, QStringLiteral("Text_num_data"), tr("samples"), tr("Averaged samples stored"));
    rejected_ =
        add_counter(*row, QStringLiteral("Text_num_reject"), tr("rejected"), tr("Data lines that could not be used"));
    not_averaged_ =
        add_counter(*row, QStringLiteral("Text_num_not_averaged"), tr("not averaged"),
                    tr("Lines not averaged: valid ones that closed a bin and went into none, see Corrections "
                       "in the processing parameters"));
    short_lines_ = add_counter(*row, QStringLiteral("Text_num_short_lines"), {},
                               tr("Survey lines that were dropped, for they have too few samples: see Minimum line "
                                  "records in the processing parameters"));
    line_ = add_counter(*row, QStringLiteral("Text_current_line"), {},
                        tr("The survey line of the newest sample in a run, else of the current point"));
    show_counters({});
}

QLabel* RunStrip::add_counter(QHBoxLayout& row, const QString& name, const QString& caption, const QString& tip)
{
    auto* const value = plain_label();
    value->setObjectName(name);
    value->setTextFormat(Qt::PlainText);
    value->setToolTip(tip);
    value->setAccessibleName(tip);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont bold = value->font();
    bold.setBold(true);
    value->setFont(bold);
    value->setMinimumWidth(QFontMetrics(bold).horizontalAdvance(QStringLiteral("00,000")));
    row.addWidget(value);
    if (caption.isEmpty()) return value;
    auto* const label = plain_label(caption);
    label->setTextFormat(Qt::PlainText);
    label->setToolTip(tip);
    row.addWidget(label);
    return value;
}

void RunStrip::show_numbers(const RunCounters& counters)
{
    show_in_place(*lines_read_, count_text(counters.lines_read));
    show_in_place(*samples_, count_text(counters.samples_stored));
    show_in_place(*rejected_, count_text(counters.lines_rejected));
    show_in_place(*not_averaged_, count_text(counters.lines_not_averaged));
    short_lines_->setVisible(counters.short_lines_dropped > 0);
    short_lines_->setText(counters.short_lines_dropped == 1
                              ? tr("1 short line dropped")
                              : tr("%1 short lines dropped").arg(count_text(counters.short_lines_dropped)));
    show_line(counters.current_line_number);
}

void RunStrip::set_live(bool live)
{
    progress_->setHidden(live);
    setSizePolicy(live ? QSizePolicy::Maximum : QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void RunStrip::show_line(double number)
{
    const bool has_line = is_valid_channel(number);
    show_in_place(*line_, tr("line %1").arg(has_line ? to_qt(line_name(number)) : QStringLiteral("\u2013")));
}

void RunStrip::show_counters(const RunCounters& counters)
{
    show_numbers(counters);
    if (!counters.finishing.empty()) {
        progress_->setValue(static_cast<int>(counters.finished * kProgressSteps));
        progress_->setFormat(to_qt(counters.finishing) + QStringLiteral("..."));
        return;
    }
    const double share = counters.file_length > 0 ? static_cast<double>(counters.characters_consumed) /
                                                        static_cast<double>(counters.file_length)
                                                  : 0.0;
    progress_->setValue(static_cast<int>(share * kProgressSteps));
    if (!clock_.isValid()) clock_.start();
    rate_.update(counters, static_cast<double>(clock_.elapsed()) / 1000.0);
    const bool is_going = counters.lines_read > 0 && counters.characters_consumed > 0;
    const QString text = is_going ? QStringLiteral("%p%   ") + to_qt(rate_.text()) : QString();
    const bool fits = progress_->fontMetrics().horizontalAdvance(text) < progress_->width();
    progress_->setFormat(fits ? text : QStringLiteral("%p%"));
    progress_->setAccessibleDescription(text);
}

void RunStrip::show_totals(const RunCounters& totals)
{
    show_numbers(totals);
    if (totals.stopped_at && *totals.stopped_at >= 1) {
        progress_->setFormat(tr("stopped while computing"));
    } else if (totals.stopped_at) {
        progress_->setValue(static_cast<int>(*totals.stopped_at * kProgressSteps));
        progress_->setFormat(tr("stopped at %1%").arg(std::floor(*totals.stopped_at * 100)));
    } else {
        progress_->setValue(kProgressSteps);
        progress_->setFormat(tr("finished"));
    }
}

} // namespace tarvo
